// Lines as pictures, joints included, and what a call allocates.
#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/session.h"

namespace {

using namespace support;
using Points = std::vector<KT_DCI_Point>;
using Picture = std::vector<std::string>;

void draw_anywhere(const Session& session, const Points& points) {
  session.actions().call<KT_Action::Draw_2DI_Polyline>(
      session.rendition, static_cast<int>(points.size()), points.data());
}

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
      draw_anywhere(session, points);
      EXPECT_TRUE(shows(*session.color, picture, session.legend())) << name_of(variant);
    }
  }
}

// Where a pixel was blended twice it would show.
TEST(Polylines, BlendTheirJointsOnce) {
  Session session({.variant = Variant::rgb_alpha, .size = {8, 6}});
  session.material().color = {255, 255, 255, 128};
  draw_anywhere(session, {{1, 1, 0}, {5, 2, 0}, {2, 5, 0}, {0, 5, 0}});
  EXPECT_TRUE(shows(*session.color,
                    {"###.....", "...#....", "....#...", "...###..", ".##.....", "........"},
                    {{'#', 0xFF978F87}}));
}

// White on black, so that a pixel's grey is 255 * weight / 256. The last point of a run is left to
// the segment that begins there, also where that is at the clip.
TEST(Polylines, AreAntialiasedUpToTheHardClip) {
  struct Case {
    int alpha;
    KT_Int_Rectangle clip;
    Points points;
    Picture picture;
  };
  const Case cases[] = {
      {255, {0, 7, 0, 3}, {{1, 1, 0}, {6, 1, 0}}, {"........", ".oooooo.", ".######.", ".oooooo."}},
      {255,
       {2, 5, 1, 3},
       {{-9, 1, 0}, {90, 1, 0}},
       {"........", "..oooo..", "..####..", "........"}},
      {128,
       {0, 7, 1, 2},
       {{1, 1, 0}, {4, 1, 0}, {40, 1, 0}},
       {"........", ".-------", ".+++++++", "........"}},
  };
  const auto grey = [](unsigned weight) { return 0xFF000000 | (255 * weight / 256) * 0x010101; };
  for (const Case& c : cases) {
    Session session({.size = {8, 4}});
    session.material().color = {255, 255, 255, static_cast<std::uint8_t>(c.alpha)};
    session.misc().advanced_options.bits = KT_Advanced_Options::antialias_bit;
    session.color->fill(0xFF000000);
    session.display().hard_clip = c.clip;
    draw_anywhere(session, c.points);
    EXPECT_TRUE(shows(*session.color, c.picture,
                      {{'#', grey(256)}, {'o', grey(47)}, {'+', grey(128)}, {'-', grey(24)}}));
  }
}

TEST(Polylines, OfFewPointsNeedNoHeap) {
  Random random(5);
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {40, 30}});
    Points points;
    const std::vector<KT_RGB32> colors(64, {1, 2, 3, 128});
    for (int i = 0; i < 64; ++i) {
      points.push_back({random.range(-9, 50), random.range(-9, 40), random.range(0, 65535)});
    }
    for (const unsigned bits : {0U, 8U, KT_Advanced_Options::antialias_bit}) {
      session.misc().advanced_options.bits = bits;
      const long before = heap::allocated();
      draw_anywhere(session, points);
      session.actions().call<KT_Action::Draw_2DI_Colorized_Polyline>(
          session.rendition, 64, points.data(), colors.data(), false);
      session.actions().call<KT_Action::Draw_2DI_Gouraud_Polyline>(session.rendition, 64,
                                                                   points.data(), colors.data());
      EXPECT_EQ(heap::allocated(), before) << name_of(variant) << bits;
    }
    EXPECT_TRUE(session.color->touched(0, 0) || session.color->touched(20, 10));
  }
}

}  // namespace
