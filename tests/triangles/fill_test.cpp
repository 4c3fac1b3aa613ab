// Which pixels a triangle covers and in which colour, as pictures.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/session.h"

namespace {

using namespace support;
using Picture = std::vector<std::string>;

TEST(Fill, CoversByTheFillRule) {
  const std::pair<std::vector<KT_DCI_Point>, Picture> cases[] = {
      // Flat top: the lowest row is full, the highest row is not drawn.
      {{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {"......", "#.....", "##....", "###...", "####.."}},
      // Flat bottom: steps are compared.
      {{{0, 4, 0}, {4, 4, 0}, {0, 0, 0}}, {"......", "###...", "##....", "#.....", "......"}},
      {{{1, 1, 0}, {5, 1, 0}, {3, 2, 0}}, {"......", "......", "......", ".####.", "......"}},
      // Steps of 5/3, rising and falling.
      {{{0, 0, 0}, {5, 3, 0}, {0, 3, 0}}, {"......", "......", "###...", "##....", "......"}},
      {{{5, 0, 0}, {0, 3, 0}, {5, 3, 0}}, {"......", "......", "..###.", "...##.", "......"}},
      // The middle point on the long edge; all points in one row.
      {{{0, 0, 0}, {2, 2, 0}, {4, 4, 0}}, Picture(5, "......")},
      {{{0, 2, 0}, {5, 2, 0}, {3, 2, 0}}, Picture(5, "......")},
      {{{1, 0, 0}, {5, 0, 0}, {1, 4, 0}, {5, 4, 0}},
       {"......", ".####.", ".####.", ".####.", ".####."}},
  };
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {6, 5}, .origin = {-30, 7}});
    for (const auto& [points, picture] : cases) {
      Strip strip = strip_of(points);
      for (KT_DCI_Point& p : strip.points) p = {p.x - 30, p.y + 7, 0};
      for (const Layer layer : all_layers) {
        session.clear();
        draw(session, layer, Kind::flat, strip);
        EXPECT_TRUE(shows(*session.color, picture, session.legend()))
            << describe(variant, layer, Kind::flat);
      }
    }
  }
}

// A dropped triangle takes its colour along; so do triangles that the hard clip cuts.
TEST(Fill, ColoursGoWithTriangles) {
  const KT_RGB32 a{1, 1, 1, 200}, b{2, 2, 2, 100}, c{3, 3, 3, 0};
  const Legend legend{{'a', a.word()}, {'b', b.word()}, {'c', c.word()}};
  Strip strip{{{0, 0, 0}, {2, 0, 0}, {4, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {a, b, c}, false};
  for (const Variant variant : {Variant::rgb, Variant::rgb_z}) {
    Session session({.variant = variant, .size = {6, 4}});
    draw(session, Layer::float_inside, Kind::colorized, strip);
    EXPECT_TRUE(shows(*session.color, {".ccc..", ".bcc..", "..bc..", "..bb.."}, legend));
    session.clear();
    session.display().hard_clip = {1, 5, 1, 2};
    draw(session, Layer::float_any, Kind::colorized, strip);
    EXPECT_TRUE(shows(*session.color, {"......", ".bcc..", "..bc..", "......"}, legend));
  }
}

// A pattern of 5 by 2 pixels, its origin at buffer (3, 1): bit 0 is leftmost, a set bit a hole.
TEST(Fill, PatternsKeepTheirPhase) {
  const std::uint8_t bits[] = {0b00011, 0, 0b10000, 0};
  const KT_User_Pattern pattern{bits, 5, 2, 2};
  const std::tuple<int, unsigned, Picture> cases[] = {
      {74, 0, {"##.####.##..", "###..###....", "##.####.##.."}},
      {74, 1, {"##+####+##..", "###++###++..", "##+####+##.."}},
      {74, 2, {"..#....#....", "...##...##..", "..#....#...."}},
      {74, 3, {"++#++++#++..", "+++##+++##..", "++#++++#++.."}},
      {0, 0, Picture(3, "............")},
      {0, 1, Picture(3, "++++++++++..")},
      {64, 2, Picture(3, "............")},
      {64, 3, Picture(3, "++++++++++..")},
  };
  // A rectangle as two triangles; the clip leaves columns 1 to 8.
  const Strip strip = strip_of({{0, 0, 9}, {10, 0, 9}, {0, 3, 9}, {10, 3, 9}});
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {12, 3}});
    session.face().user_pattern = &pattern;
    session.misc().pattern_origin = {3, 1};
    for (auto [face_pattern, options, picture] : cases) {
      session.face().face_pattern = face_pattern;
      session.misc().pattern_options = options;
      for (const bool clipped : {false, true}) {
        SCOPED_TRACE(testing::Message() << name_of(variant) << ", pattern " << face_pattern
                                        << ", options " << options << ", clipped " << clipped);
        session.clear();
        session.display().hard_clip = {clipped ? 1 : 0, clipped ? 8 : 11, 0, 2};
        for (std::string& row : picture) {
          if (clipped) row[0] = row[9] = '.';
        }
        draw(session, Layer::int_any, Kind::flat, strip);
        EXPECT_TRUE(shows(*session.color, picture, session.legend()));
        if (session.depth) {  // a hole writes no depth
          EXPECT_TRUE(shows(*session.depth, picture, {{'#', 9}, {'+', 9}}));
        }
      }
    }
  }
}

// Colours 10, 13 and 16: by the scan's test a shaded triangle, by the clipped road's a flat one.
TEST(Fill, NearFlatTestsDiffer) {
  using Greens = std::set<std::uint32_t>;
  for (const Variant variant :
       {Variant::rgb_alpha, Variant::rgb, Variant::rgb_alpha_z, Variant::rgb_z}) {
    Session session({.variant = variant, .size = {20, 20}});
    Strip strip = strip_of({{0, 0, 0}, {19, 0, 0}, {0, 19, 0}}, {0, 10, 0, 255});
    const auto greens = [&](int left, std::uint8_t green_1, std::uint8_t green_2) {
      strip.colors[1].green = green_1;
      strip.colors[2].green = green_2;
      session.clear();
      session.display().hard_clip.left = left;
      draw(session, Layer::int_any, Kind::gouraud, strip);
      Greens found;
      for (const std::uint32_t pixel : session.color->pixels()) {
        if (pixel != session.color->untouched()) found.insert(pixel >> 8 & 255);
      }
      return found;
    };
    EXPECT_EQ(greens(0, 13, 16), (Greens{10, 11, 12, 13, 14, 15, 16})) << name_of(variant);
    EXPECT_EQ(greens(1, 13, 16), Greens{10}) << name_of(variant);
    EXPECT_GT(greens(1, 13, 17).size(), 4U) << name_of(variant);
    EXPECT_EQ(greens(0, 7, 13), Greens{10}) << name_of(variant);
    EXPECT_GT(greens(1, 7, 13).size(), 1U) << name_of(variant);
  }
}

}  // namespace
