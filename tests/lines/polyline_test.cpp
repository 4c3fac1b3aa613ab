// Lines as pictures, joints included, and what a call allocates.
#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/session.h"

namespace {

using namespace support;
using enum KT_Action;
using Points = std::vector<KT_DCI_Point>;
using Picture = std::vector<std::string>;

// Half a step in the first row, whole steps, the rest in the last one; a list goes without its
// last point where it has a joint there.
TEST(Polylines, LookAsTheyShould) {
  const Picture steep = {"...#.", "...#.", "..#..", "..#..", "..#..",
                         ".#...", ".#...", ".#...", "#....", "#...."};
  const std::pair<Points, Picture> cases[] = {
      {{{1, 0, 0}, {6, 2, 0}}, {".....##.", "...##...", ".##....."}},
      {{{1, 0, 0}, {16, 3, 0}},
       {"..............###.", ".........#####....", "....#####.........", ".###.............."}},
      {{{0, 0, 0}, {10, 1, 0}}, {".....######.", "#####......."}},
      {{{0, 0, 0}, {3, 9, 0}}, steep},
      {{{3, 9, 0}, {0, 0, 0}}, steep},
      {{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}}, {"...", ".#.", "..."}},
      {{{0, 0, 0}, {0, 0, 0}, {2, 0, 0}}, {"###."}},
      {{{1, 0, 0}}, {"..."}},
      {{{-1000000, -1000000, 0}, {1000000, 1000000, 0}}, {"...#", "..#.", ".#..", "#..."}},
      {{{-1000000, 40, 0}, {40, 1000000, 0}}, {"....", "...."}},
  };
  for (const Variant variant : all_variants) {
    for (const auto& [points, picture] : cases) {
      const KT_Int_XY size{static_cast<int>(picture[0].size()), static_cast<int>(picture.size())};
      Session session({.variant = variant, .size = size});
      session.call<Draw_2DI_Polyline>(points);
      EXPECT_TRUE(shows(*session.color, picture, session.legend())) << name_of(variant);
    }
  }
}

TEST(Polylines, AsStripEdgesLeaveNoDepthOffsetBehind) {
  Session session({.variant = Variant::rgb_z});
  session.face().face_depth_offset = 7;
  session.misc().advanced_options.bits = KT_Advanced_Options::edge_bit;
  draw(session, Layer::int_any, Kind::flat, strip_of({{1, 1, 9}, {9, 1, 9}, {3, 6, 9}}));
  EXPECT_TRUE(session.color->touched(5, 1));
  EXPECT_EQ(session.renderer().edge_depth_offset, 0);
}

TEST(Polylines, OfFewPointsNeedNoHeap) {
  Random random(5);
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {40, 30}});
    Points points = {{0, 0, 0}, {20, 10, 0}};
    const std::vector<KT_RGB32> colors(64, {1, 2, 3, 128});
    for (int i = 2; i < 64; ++i) {
      points.push_back({random.range(-9, 50), random.range(-9, 40), random.range(0, 65535)});
    }
    for (const unsigned bits : {0U, 8U, KT_Advanced_Options::antialias_bit}) {
      session.misc().advanced_options.bits = bits;
      EXPECT_EQ(session.call<Draw_2DI_Polyline>(points) +
                    session.call<Draw_2DI_Colorized_Polyline>(points, colors.data(), false) +
                    session.call<Draw_2DI_Gouraud_Polyline>(points, colors.data()),
                0)
          << name_of(variant) << bits;
    }
    EXPECT_TRUE(session.color->touched(0, 0));
  }
}

}  // namespace
