// Which pixels a triangle covers and in which colour, as pictures.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/session.h"

namespace {

using namespace support;
using Picture = std::vector<std::string>;

struct Fill_Case {
  const char* name;
  std::vector<KT_DCI_Point> points;
  Picture picture;
};

const Fill_Case fill_cases[] = {
    {"flat top: the lowest row is full, the highest row is not drawn",
     {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}},
     {"......", "#.....", "##....", "###...", "####.."}},
    {"flat bottom: steps are compared",
     {{0, 4, 0}, {4, 4, 0}, {0, 0, 0}},
     {"......", "###...", "##....", "#.....", "......"}},
    {"one row",
     {{1, 1, 0}, {5, 1, 0}, {3, 2, 0}},
     {"......", "......", "......", ".####.", "......"}},
    {"a rising step of 5/3",
     {{0, 0, 0}, {5, 3, 0}, {0, 3, 0}},
     {"......", "......", "###...", "##....", "......"}},
    {"a falling step of 5/3",
     {{5, 0, 0}, {0, 3, 0}, {5, 3, 0}},
     {"......", "......", "..###.", "...##.", "......"}},
    {"the middle point on the long edge", {{0, 0, 0}, {2, 2, 0}, {4, 4, 0}}, Picture(5, "......")},
    {"all in one row", {{0, 2, 0}, {5, 2, 0}, {3, 2, 0}}, Picture(5, "......")},
    {"a strip of two",
     {{1, 0, 0}, {5, 0, 0}, {1, 4, 0}, {5, 4, 0}},
     {"......", ".####.", ".####.", ".####.", ".####."}},
};

TEST(Fill, CoversByTheFillRule) {
  for (const Variant variant : all_variants) {
    for (const KT_Int_XY origin : {KT_Int_XY{0, 0}, KT_Int_XY{-30, 7}}) {
      Session session({.variant = variant, .size = {6, 5}, .origin = origin});
      const Legend legend{{'#', session.own_color()}};
      for (const Fill_Case& c : fill_cases) {
        SCOPED_TRACE(std::string(name_of(variant)) + ": " + c.name);
        Strip strip = strip_of(c.points);
        for (KT_DCI_Point& p : strip.points) p.x += origin.x, p.y += origin.y;
        for (const Layer layer : all_layers) {
          session.clear();
          draw(session, layer, Kind::flat, strip);
          EXPECT_TRUE(shows(*session.color, c.picture, legend));
        }
      }
    }
  }
}

// A dropped triangle takes its colour along; with one colour for all, nothing moves.
TEST(Fill, ColoursGoWithTriangles) {
  const KT_RGB32 a{1, 1, 1, 200}, b{2, 2, 2, 100}, c{3, 3, 3, 0};
  for (const Variant variant : {Variant::rgb, Variant::rgb_z}) {
    Session session({.variant = variant, .size = {6, 5}});
    const Legend legend{{'a', a.word()}, {'b', b.word()}, {'c', c.word()}};
    Strip square{{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {a, b}, false};
    for (const Layer layer : all_layers) {
      session.clear();
      draw(session, layer, Kind::colorized, square);
      EXPECT_TRUE(
          shows(*session.color, {"......", "abbb..", "aabb..", "aaab..", "aaaa.."}, legend));
    }
    session.clear();
    const Strip dropped{{{0, 0, 0}, {2, 0, 0}, {4, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {a, b, c}, false};
    draw(session, Layer::int_inside, Kind::colorized, dropped);
    EXPECT_TRUE(shows(*session.color, {"......", ".ccc..", ".bcc..", "..bc..", "..bb.."}, legend));
    // Cut by the hard clip, each triangle comes with its own colour too.
    session.clear();
    session.display().hard_clip = {1, 5, 1, 2};
    draw(session, Layer::int_any, Kind::colorized, dropped);
    EXPECT_TRUE(shows(*session.color, {"......", "......", ".bcc..", "..bc..", "......"}, legend));
    square.single_color = true;
    draw(session, Layer::int_any, Kind::colorized, square);
    EXPECT_TRUE(shows(*session.color, {"......", "......", ".aaa..", ".aaa..", "......"}, legend));
  }
}

TEST(Fill, TooFewPointsDrawNothing) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant});
    for (const Kind kind : all_kinds) {
      for (std::size_t count = 0; count < 3; ++count) {
        Strip strip = strip_of({{0, 0, 0}, {9, 0, 0}, {0, 7, 0}});
        strip.points.resize(count);
        for (const Layer layer : all_layers) {
          if (count == 2 || layer == Layer::float_any || layer == Layer::int_any)
            draw(session, layer, kind, strip);
        }
      }
    }
    EXPECT_TRUE(shows(*session.color, Picture(8, "............"), {}));
  }
}

struct Pattern_Case {
  int face_pattern;
  unsigned options;
  Picture picture;  // '#' ordinary, '+' contrast
};

// A pattern of 5 by 2 pixels, its origin at buffer (3, 1): bit 0 is leftmost, a set bit a hole.
TEST(Fill, PatternsKeepTheirPhase) {
  const std::uint8_t bits[] = {0b00011, 0, 0b10000, 0};
  const KT_User_Pattern pattern{bits, 5, 2, 2};
  const Pattern_Case cases[] = {
      {74, 0, {"##.####.##..", "###..###....", "##.####.##.."}},
      {74, 1, {"##+####+##..", "###++###++..", "##+####+##.."}},
      {74, 2, {"..#....#....", "...##...##..", "..#....#...."}},
      {74, 3, {"++#++++#++..", "+++##+++##..", "++#++++#++.."}},
      {0, 0, Picture(3, "............")},
      {0, 1, Picture(3, "++++++++++..")},
      {64, 2, Picture(3, "............")},
      {64, 3, Picture(3, "++++++++++..")},
      {64, 1, Picture(3, "##########..")},
  };
  // A rectangle as two triangles; the clip leaves columns 1 to 8.
  const Strip strip = strip_of({{0, 0, 9}, {10, 0, 9}, {0, 3, 9}, {10, 3, 9}});
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {12, 3}});
    session.face().user_pattern = &pattern;
    session.misc().pattern_origin = {3, 1};
    const Legend legend{{'#', session.own_color()}, {'+', session.contrast_color()}};
    for (const Pattern_Case& c : cases) {
      SCOPED_TRACE(testing::Message() << name_of(variant) << ", pattern " << c.face_pattern
                                      << ", options " << c.options);
      session.face().face_pattern = c.face_pattern;
      session.misc().pattern_options = c.options;
      for (const bool clipped : {false, true}) {
        session.clear();
        session.display().hard_clip = {clipped ? 1 : 0, clipped ? 8 : 11, 0, 2};
        Picture picture = c.picture;
        for (std::string& row : picture) {
          if (clipped) row.front() = row[9] = '.';
        }
        draw(session, Layer::int_any, Kind::flat, strip);
        EXPECT_TRUE(shows(*session.color, picture, legend)) << (clipped ? "clipped" : "whole");
        if (!session.depth) continue;
        for (std::string& row : picture) {
          for (char& pixel : row) pixel = pixel == '.' ? '.' : 'z';
        }
        EXPECT_TRUE(shows(*session.depth, picture, {{'z', 9}})) << "a hole writes no depth";
      }
    }
  }
}

// Colours 10, 13 and 16: by the scan's test a shaded triangle, by the clipped road's a flat one.
TEST(Fill, NearFlatTestsDiffer) {
  for (const Variant variant :
       {Variant::rgb_alpha, Variant::rgb, Variant::rgb_alpha_z, Variant::rgb_z}) {
    SCOPED_TRACE(name_of(variant));
    Session session({.variant = variant, .size = {20, 20}});
    Strip strip = strip_of({{0, 0, 0}, {19, 0, 0}, {0, 19, 0}});
    strip.colors = {{0, 10, 0, 255}, {0, 13, 0, 255}, {0, 16, 0, 255}};
    const auto greens = [&](KT_Int_Rectangle clip) {
      session.clear();
      session.display().hard_clip = clip;
      draw(session, Layer::int_any, Kind::gouraud, strip);
      std::set<std::uint32_t> found;
      for (const std::uint32_t pixel : session.color->pixels()) {
        if (pixel != session.color->untouched()) found.insert(pixel >> 8 & 255);
      }
      return found;
    };
    const std::set<std::uint32_t> flat{10};
    EXPECT_EQ(greens({0, 19, 0, 19}), (std::set<std::uint32_t>{10, 11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(greens({1, 19, 0, 19}), flat);
    strip.colors[2].green = 13;  // within 3 of the first point: flat on both roads
    EXPECT_EQ(greens({0, 19, 0, 19}), flat);
    strip.colors[2].green = 17;  // 4 from its neighbour: shaded on both
    EXPECT_GT(greens({1, 19, 0, 19}).size(), 4U);
    // The other way round: point 1 is near point 0, point 2 too, but they differ by 6.
    strip.colors = {{0, 10, 0, 255}, {0, 7, 0, 255}, {0, 13, 0, 255}};
    EXPECT_EQ(greens({0, 19, 0, 19}), flat);
    EXPECT_GT(greens({1, 19, 0, 19}).size(), 1U);
  }
}

}  // namespace
