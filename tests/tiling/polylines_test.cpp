// Polylines in double precision: which inner calls they become.
#include "tests/tiling/inner_calls.h"

namespace {

using namespace tiling_test;
using Lines = Inner_Calls;

KT_Int_Rectangle hard_clip(const Recorded_Call& call) {
  return call.rendition->display_context->hard_clip;
}

TEST_F(Lines, InsideAreOneCallOfRoundedPoints) {
  const auto calls =
      draw<Draw_2DD_Polyline>({{-0.5, 0.5, -0.5}, {0.5, -0.51, 65534.5}, {1e9, -1e9, 3e9}});
  ASSERT_EQ(calls.size(), 1U);
  const KT_Point_D expected[] = {
      {-1000, 501, 0}, {-999, 499, 65535}, {999999000, -999999500, INT32_MIN}};
  for (std::size_t n = 0; n < 3; ++n) {
    const KT_Point_D& p = calls[0].points[n];
    EXPECT_TRUE(p.x == expected[n].x && p.y == expected[n].y && p.z == expected[n].z) << n;
  }
  EXPECT_EQ(hard_clip(calls[0]), (KT_Int_Rectangle{0, 39, 0, 29}));
  EXPECT_EQ(rendition->display_context->hard_clip.left, origin.x);
  EXPECT_EQ(draw<Draw_2DD_Polyline>({}).size(), 1U) << "of no points";

  // The hard clip is held in the window bound by bound.
  display().hard_clip = {origin.x - 7, origin.x + 99, origin.y + 50, origin.y - 1};
  const auto held = draw<Draw_2DD_Polyline>({at(1, 1), at(2, 2)});
  EXPECT_EQ(hard_clip(held.at(0)), (KT_Int_Rectangle{0, 39, 29, 0}));
}

// Head, inside runs and tail of a line that leaves and comes back, with a segment across between.
TEST_F(Lines, AreOneCallAStretch) {
  const std::vector<KT_Point_D> points = {
      at(1, 0), at(2, 0),         at(3 * reach, 0),  at(3 * reach, 9), at(-3 * reach, 9), at(5, 9),
      at(6, 9), at(0, 3 * reach), at(-9, 3 * reach), at(7, 7),         at(8, 8)};
  const std::size_t counts[] = {3, 2, 4, 3};
  // A piece begins with the colour of its first segment.
  const std::vector<KT_RGB32> colors(points.size());
  const std::ptrdiff_t segments[] = {0, 3, 4, 8};
  for (bool single : {false, true}) {
    const auto calls = draw<Draw_2DD_Colorized_Polyline>(points, colors.data(), single);
    ASSERT_EQ(calls.size(), 4U);
    for (std::size_t n = 0; n < 4; ++n) {
      EXPECT_EQ(calls[n].points.size(), counts[n]) << n;
      EXPECT_EQ(calls[n].colors - colors.data(), single ? 0 : segments[n]) << n;
      EXPECT_EQ(calls[n].single_color, single);
    }
    EXPECT_EQ(columns(calls[0]), (std::vector<double>{1, 2, reach}));
    EXPECT_EQ(columns(calls[1]), (std::vector<double>{reach, -reach}));
    EXPECT_EQ(calls[2].points[3].y, reach);
    EXPECT_EQ(calls[3].points[0].y, reach);
    EXPECT_EQ(calls[3].points[2].x, 8);
  }
  // Outside: no call at all.
  EXPECT_TRUE(
      draw<Draw_2DD_Polyline>({at(2 * reach, 0), at(3 * reach, 9), at(0, 9 * reach)}).empty());
}

TEST_F(Lines, ColorsOfPointsAreCutWithThem) {
  const KT_RGB32 colors[] = {{0, 0, 0, 0}, {0, 0, 100, 0}, {0, 0, 80, 0}, {0, 0, 240, 0}};
  const auto calls =
      draw<Draw_2DD_Gouraud_Polyline>({at(-2 * reach, 0), at(0, 0), at(5, 5), at(4 * reach, 5)},
                                      static_cast<const KT_RGB32*>(colors));
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(levels(calls[0]), (std::vector<int>{50, 100, 80, 120}));

  // The same far out, in a list too long for the stack.
  std::vector<KT_Point_D> many(80, at(3, 3));
  std::vector<KT_RGB32> shades(80, {0, 0, 7, 0});
  many[79] = at(2 * reach, 3);
  shades[79].red = 107;
  const auto last =
      draw<Draw_2DD_Gouraud_Polyline>(many, static_cast<const KT_RGB32*>(shades.data()));
  ASSERT_EQ(last.size(), 1U);
  EXPECT_EQ(levels(last[0]).at(78), 7);
  EXPECT_EQ(levels(last[0]).at(79), 57);
}

}  // namespace
