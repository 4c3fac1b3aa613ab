// Polylines in double precision: which inner calls they become.
#include "tests/tiling/inner_calls.h"

namespace {

using namespace tiling_test;
using Lines = Inner_Calls;

KT_Int_Rectangle hard_clip(const Recorded_Call& call) {
  return call.rendition->display_context->hard_clip;
}

KT_RGB32 grey(std::uint8_t value) {
  return {value, value, value, 255};
}

TEST_F(Lines, InsideAreOneCallOfRoundedPoints) {
  const auto calls =
      draw<Draw_2DD_Polyline>({{-0.5, 0.5, -0.5}, {0.5, -0.51, 65534.5}, {1e9, -1e9, 3e9}});
  ASSERT_EQ(calls.size(), 1U);
  const KT_Point_D expected[] = {
      {-1000, 501, 0}, {-999, 499, 65535}, {999999000, -999999500, INT32_MIN}};
  EXPECT_TRUE(std::equal(expected, expected + 3, calls[0].points.begin(),
                         [](const KT_Point_D& a, const KT_Point_D& b) {
                           return a.x == b.x && a.y == b.y && a.z == b.z;
                         }));
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
  const std::vector<double> expected[] = {
      {1, 2, reach}, {reach, -reach}, {-reach, 5, 6, 4}, {-6, 7, 8}};
  // A piece begins with the colour of its first segment.
  const std::vector<KT_RGB32> colors(points.size(), grey(4));
  const std::ptrdiff_t segments[] = {0, 3, 4, 8};
  for (bool single : {false, true}) {
    const auto calls = draw<Draw_2DD_Colorized_Polyline>(points, colors.data(), single);
    ASSERT_EQ(calls.size(), 4U);
    for (std::size_t n = 0; n < 4; ++n) {
      EXPECT_EQ(columns(calls[n]).size(), expected[n].size());
      if (n < 2) {
        EXPECT_EQ(columns(calls[n]), expected[n]) << n;
      }
      EXPECT_EQ(calls[n].colors - colors.data(), single ? 0 : segments[n]) << n;
      EXPECT_EQ(calls[n].single_color, single);
    }
    EXPECT_EQ(calls[2].points[3].y, reach);
    EXPECT_EQ(calls[3].points[0].y, reach);
    EXPECT_EQ(calls[3].points[2].x, 8);
  }
  EXPECT_EQ(draw<Draw_2DD_Polyline>(points).size(), 4U);
  // Outside: no call at all.
  EXPECT_TRUE(draw<Draw_2DD_Polyline>({at(2 * reach, 0), at(3 * reach, 9)}).empty());
  EXPECT_TRUE(
      draw<Draw_2DD_Polyline>({at(2 * reach, 0), at(3 * reach, 9), at(0, 9 * reach)}).empty());
}

TEST_F(Lines, ColorsOfPointsAreCutWithThem) {
  const KT_RGB32 colors[] = {grey(0), grey(100), grey(80), grey(240)};
  const auto calls =
      draw<Draw_2DD_Gouraud_Polyline>({at(-2 * reach, 0), at(0, 0), at(5, 5), at(4 * reach, 5)},
                                      static_cast<const KT_RGB32*>(colors));
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(levels(calls[0]), (std::vector<int>{50, 100, 80, 120}));

  // The same far out, in a list too long for the stack.
  std::vector<KT_Point_D> many(80, at(3, 3));
  std::vector<KT_RGB32> shades(80, grey(7));
  many[79] = at(2 * reach, 3);
  shades[79] = grey(107);
  const auto last =
      draw<Draw_2DD_Gouraud_Polyline>(many, static_cast<const KT_RGB32*>(shades.data()));
  ASSERT_EQ(last.size(), 1U);
  ASSERT_EQ(last[0].points.size(), 80U);
  EXPECT_EQ(levels(last[0])[78], 7);
  EXPECT_EQ(levels(last[0])[79], 57);
}

TEST_F(Lines, WithoutMemoryAreRefusedWhole) {
  std::vector<KT_Point_D> points(80, at(3, 3));
  points[5] = at(2 * reach, 3);
  const std::vector<KT_RGB32> colors(80);
  const long before = heap::live();
  for (int granted = 0; granted < 12; ++granted) {
    for (auto how : {heap::Refusal::by_null, heap::Refusal::by_exception}) {
      bool refused = false;
      {
        heap::Exhausted exhausted(granted, how);
        try {
          actions().call<Draw_2DD_Gouraud_Polyline>(rendition, 80, points.data(), colors.data());
        } catch (const std::bad_alloc&) {
          refused = true;
        }
      }
      EXPECT_TRUE(refused || granted > 3) << granted;
      renderer().device_origin = origin;  // where an exception has passed through it stays zero
      support::Recorded_Calls::take();
      EXPECT_EQ(heap::live(), before) << granted;
    }
  }
}

TEST_F(Lines, OfFewPointsNeedNoHeap) {
  std::vector<KT_Point_D> points(64, at(3, 3));
  points[5] = at(2 * reach, 3);
  const std::vector<KT_RGB32> colors(65);
  // The integer action does nothing here; recording would allocate.
  actions().bind<Draw_2DI_Gouraud_Polyline>(
      &renderer(),
      [](KT_Renderer_Data*, const KT_Rendition&, int, const KT_DCI_Point*, const KT_RGB32*) {});
  long allocated[3];
  for (const std::size_t count : {0U, 1U, 2U}) {
    points.resize(count + 63, at(3, 3));
    const long before = heap::allocated();
    draw<Draw_2DD_Gouraud_Polyline>(points, colors.data());
    allocated[count] = heap::allocated() - before;
  }
  EXPECT_EQ(allocated[0], allocated[1]) << "but for the rendition of the call";
  EXPECT_EQ(allocated[2] - allocated[1], 3) << "points, outcodes and colours";
}

}  // namespace
