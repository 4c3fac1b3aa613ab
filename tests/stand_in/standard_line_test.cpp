// Wide and dashed lines of the general routines, on the module's own actions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/support/session.h"

namespace {

using support::Configuration;
using support::Session;
using support::Variant;

constexpr KT_Int_XY size = {64, 48};

Configuration configuration_of(Variant variant) {
  Configuration configuration;
  configuration.variant = variant;
  configuration.size = size;
  configuration.origin = {-7, 5};
  return configuration;
}

struct Lines : Session {
  explicit Lines(Variant variant = Variant::rgb) : Session(configuration_of(variant)) {}

  KT_Line_Attributes& line() { return rendition.edit(&KT_Rendition_Data::line_attributes); }
  /// Points are given from the window's left bottom on.
  static std::vector<KT_DCI_Point> placed(std::vector<KT_DCI_Point> points) {
    for (KT_DCI_Point& p : points) {
      p.x -= 7;
      p.y += 5;
    }
    return points;
  }
  void draw(const std::vector<KT_DCI_Point>& points) {
    const auto at = placed(points);
    actions().call<KT_Action::Draw_2DI_Polyline>(rendition, static_cast<int>(at.size()), at.data());
  }
  /// A row of pixels as text.
  std::string row(int y) const {
    std::string text;
    for (int x = 0; x < size.x; ++x) text += color->touched(x, y) ? '#' : '.';
    return text;
  }
};

double distance(double x, double y, const KT_DCI_Point& from, const KT_DCI_Point& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = ((x - from.x) * dx + (y - from.y) * dy) / (dx * dx + dy * dy);
  const double part = std::clamp(along, 0.0, 1.0);
  return std::hypot(x - from.x - part * dx, y - from.y - part * dy);
}

double distance(int x, int y, const std::vector<KT_DCI_Point>& line) {
  double least = 1e9;
  for (std::size_t n = 0; n + 1 < line.size(); ++n) {
    least = std::min(least, distance(x, y, line[n], line[n + 1]));
  }
  return least;
}

const std::vector<std::vector<KT_DCI_Point>> sample_lines = {
    {{10, 20, 0}, {50, 20, 0}},
    {{31, 6, 0}, {31, 40, 0}},
    {{12, 12, 0}, {45, 33, 0}},
    {{50, 10, 0}, {14, 25, 0}, {48, 38, 0}},
    {{15, 15, 0}, {30, 35, 0}, {33, 12, 0}, {50, 34, 0}},
    {{20, 12, 0}, {44, 12, 0}, {44, 36, 0}, {20, 36, 0}, {20, 12, 0}},
    {{20, 20, 0}, {40, 20, 0}, {22, 20, 0}},                           // back on itself
    {{20, 20, 0}, {21, 20, 0}, {21, 21, 0}, {22, 22, 0}, {40, 30, 0}}  // short beside wide
};

TEST(Wide_Lines, CoverWhatIsNear) {
  for (int weight : {2, 3, 4, 7, 12}) {
    for (const auto& line : sample_lines) {
      Lines lines;
      lines.line().line_weight = weight;
      lines.line().line_corner_style = KT_Line_Style::round_corner;
      lines.line().line_end_style_a = lines.line().line_end_style_b = KT_Line_Style::round_end;
      lines.draw(line);
      for (int y = 0; y < size.y; ++y) {
        for (int x = 0; x < size.x; ++x) {
          const double beyond = distance(x, y, line) - weight / 2.0;
          const bool drawn = lines.color->touched(x, y);
          ASSERT_FALSE(beyond < -1 && !drawn) << weight << " misses " << x << ", " << y;
          ASSERT_FALSE(beyond > 1 && drawn) << weight << " spills on " << x << ", " << y;
        }
      }
    }
  }
}

// Where segments meet they share an edge, so that blending takes place once a pixel.
TEST(Wide_Lines, BlendEachPixelOnce) {
  for (std::size_t n : {0U, 1U, 2U, 3U, 4U, 5U}) {
    for (std::int32_t style : {KT_Line_Style::mitred_corner, KT_Line_Style::bevelled_corner,
                               KT_Line_Style::round_corner}) {
      Lines lines(Variant::rgb_alpha);
      lines.material().color.alpha = 100;
      lines.line().line_weight = 5;
      lines.line().line_corner_style = style;
      lines.line().line_end_style_b = KT_Line_Style::round_end;
      lines.draw(sample_lines[n]);
      // The middle of a segment is drawn whichever way the ends' corners are rounded.
      const KT_DCI_Point& from = sample_lines[n][0];
      const KT_DCI_Point& to = sample_lines[n][1];
      const std::uint32_t once = lines.color->at((from.x + to.x) / 2, (from.y + to.y) / 2);
      ASSERT_NE(once, lines.color->untouched()) << "line " << n << ", style " << style;
      int twice = 0;
      for (std::uint32_t pixel : lines.color->pixels()) {
        twice += pixel != once && pixel != lines.color->untouched();
      }
      EXPECT_EQ(twice, 0) << "line " << n << ", style " << style;
    }
  }
}

TEST(Wide_Lines, HaveEndsAndCornersByStyle) {
  const auto width_at = [](std::int32_t end, int x) {
    Lines lines;
    lines.line().line_weight = 7;
    lines.line().line_end_style_a = end;
    lines.draw({{20, 20, 0}, {40, 20, 0}});
    int rows = 0;
    for (int y = 0; y < size.y; ++y) rows += lines.color->touched(x, y);
    return rows;
  };
  EXPECT_EQ(width_at(KT_Line_Style::flat_end, 19), 0);
  EXPECT_EQ(width_at(KT_Line_Style::flat_end, 20), 7);
  EXPECT_EQ(width_at(KT_Line_Style::square_end, 17), 7);
  EXPECT_EQ(width_at(KT_Line_Style::square_end, 16), 0);
  EXPECT_GE(width_at(KT_Line_Style::round_end, 17), 1);
  EXPECT_LT(width_at(KT_Line_Style::round_end, 17), 6);

  const auto reaches = [](std::int32_t corner, int outward) {
    Lines lines;
    lines.line().line_weight = 9;
    lines.line().line_corner_style = corner;
    lines.draw({{10, 10, 0}, {30, 10, 0}, {30, 30, 0}});
    return lines.color->touched(30 + outward, 10 - outward);
  };
  EXPECT_TRUE(reaches(KT_Line_Style::mitred_corner, 4));
  EXPECT_FALSE(reaches(KT_Line_Style::mitred_corner, 5));
  EXPECT_FALSE(reaches(KT_Line_Style::round_corner, 4));
  EXPECT_TRUE(reaches(KT_Line_Style::round_corner, 2));
  EXPECT_FALSE(reaches(KT_Line_Style::bevelled_corner, 3));
}

TEST(Wide_Lines, CarryDepthAndColors) {
  Lines lines(Variant::rgb_z);
  lines.line().line_weight = 5;
  const auto points = Lines::placed({{10, 20, 1000}, {50, 20, 41000}});
  const KT_RGB32 colors[2] = {{0, 0, 0, 255}, {200, 100, 40, 255}};
  lines.actions().call<KT_Action::Draw_2DI_Gouraud_Polyline>(lines.rendition, 2, points.data(),
                                                             colors);
  EXPECT_NEAR(lines.depth->at(30, 22), 21000, 1500);
  EXPECT_NEAR(KT_RGB32::from_word(lines.color->at(30, 18)).blue, 100, 6);
  EXPECT_NEAR(KT_RGB32::from_word(lines.color->at(48, 20)).red, 38, 4);

  lines.clear(20000);
  lines.actions().call<KT_Action::Draw_2DI_Colorized_Polyline>(lines.rendition, 2, points.data(),
                                                               colors + 1, true);
  EXPECT_EQ(lines.color->at(20, 20), colors[1].word());
  EXPECT_FALSE(lines.color->touched(40, 20)) << "behind what is there";
}

TEST(Wide_Lines, AreOutlinedByTheMaterial) {
  Lines lines;
  const KT_RGB32 outline = {1, 2, 3, 255};
  lines.material().basic_material = KD_Outlined_Material(2, outline, {9, 9, 9, 255});
  lines.draw({{10, 20, 0}, {50, 20, 0}});
  EXPECT_EQ(lines.color->at(30, 20), lines.own_color());
  for (int y : {18, 19, 21, 22}) EXPECT_EQ(lines.color->at(30, y), outline.word()) << y;
  EXPECT_FALSE(lines.color->touched(30, 16));
  EXPECT_FALSE(lines.color->touched(30, 24));
}

TEST(Dashes, HaveTheLengthsOfTheirPattern) {
  const std::string pictures[] = {
      "########....########....########....####", "#...#...#...#...#...#...#...#...#...#...",
      "########...#...########...#...########..", "########...#...#...########...#...#...##",
      "################......################..", "#.......#.......#.......#.......#.......",
      "################...####...##############", "################...####...####...#######"};
  for (int pattern = 1; pattern <= 8; ++pattern) {
    const std::string& picture = pictures[pattern - 1];
    for (Variant variant : support::all_variants) {
      Lines lines(variant);
      lines.line().line_pattern = pattern;
      lines.draw({{3, 7, 5}, {42, 7, 5}});
      EXPECT_EQ(lines.row(7).substr(3, 40), picture) << support::name_of(variant);
      lines.clear();
      lines.draw({{5, 4, 5}, {5, 43, 5}});
      for (int y = 4; y < 44; ++y) {
        ASSERT_EQ(lines.color->touched(5, y), picture[static_cast<std::size_t>(y - 4)] == '#');
      }
    }
    Lines wide;
    wide.line().line_pattern = pattern;
    wide.line().line_weight = 2;
    wide.draw({{0, 20, 0}, {63, 20, 0}});
    for (int x = 0; x < 63; ++x) {
      ASSERT_EQ(wide.color->touched(x, 20), picture[static_cast<std::size_t>(x / 2)] == '#')
          << pattern << " at " << x;
    }
  }
}

TEST(Dashes, KeepTheirPhaseThroughPointsAndFromFarAway) {
  for (int weight : {1, 3}) {
    Lines whole;
    Lines parts;
    for (Lines* lines : {&whole, &parts}) {
      lines->line().line_pattern = 3;
      lines->line().line_weight = weight;
    }
    whole.draw({{2, 20, 0}, {60, 20, 0}});
    parts.draw(
        {{2, 20, 0}, {3, 20, 0}, {9, 20, 0}, {9, 20, 0}, {12, 20, 0}, {40, 20, 0}, {60, 20, 0}});
    EXPECT_TRUE(support::same_pixels(parts.color->pixels(), whole.color->pixels(), size.x));
  }
  Lines lines;
  lines.line().line_pattern = 1;
  lines.draw({{-1000000000, 20, 0}, {1000000000, 20, 0}});
  for (int x = 0; x < size.x; ++x) {
    ASSERT_EQ(lines.color->touched(x, 20), (x + 1000000000) % 12 < 8) << x;
  }
}

TEST(Dashes, AreColoredAsTheSolidLine) {
  const auto points = Lines::placed({{4, 20, 0}, {24, 20, 0}, {54, 20, 0}});
  const KT_RGB32 colors[3] = {{10, 20, 30, 255}, {90, 220, 130, 255}, {10, 90, 250, 255}};
  for (int kind : {0, 1}) {
    Lines solid;
    Lines dashed;
    dashed.line().line_pattern = -4;
    for (Lines* lines : {&solid, &dashed}) {
      if (kind == 0) {
        lines->actions().call<KT_Action::Draw_DCI_Colorized_Polyline>(lines->rendition, 3,
                                                                      points.data(), colors, false);
      } else {
        lines->actions().call<KT_Action::Draw_DCI_Gouraud_Polyline>(lines->rendition, 3,
                                                                    points.data(), colors);
      }
    }
    for (int x = 4; x < 54; ++x) {
      ASSERT_EQ(dashed.color->touched(x, 20), (x - 4) % 12 < 8) << x;
      if (!dashed.color->touched(x, 20)) continue;
      const KT_RGB32 got = KT_RGB32::from_word(dashed.color->at(x, 20));
      const KT_RGB32 expected = KT_RGB32::from_word(solid.color->at(x, 20));
      ASSERT_NEAR(got.blue, expected.blue, 2) << kind << " at " << x;
      ASSERT_NEAR(got.green, expected.green, 2);
      ASSERT_NEAR(got.red, expected.red, 2);
    }
  }
}

TEST(Odd_Lines, EndAndStayInsideTheClip) {
  const std::vector<KT_DCI_Point> far = {
      {INT32_MIN, INT32_MIN, 0}, {INT32_MAX, 3, 9}, {12, INT32_MAX, -5},
      {30, 20, 70000},           {30, 20, 1},       {INT32_MAX, INT32_MAX, 2}};
  const KT_RGB32 colors[6] = {{1, 2, 3, 200}, {9, 9, 9, 90}, {7, 7, 200, 255}, {}, {}, {}};
  const KT_Int_Rectangle clip = {3, 40, 15, 45};
  for (Variant variant : support::all_variants) {
    for (int weight : {INT32_MIN, 1, 2, 900, INT32_MAX}) {
      for (int pattern : {INT32_MIN, 0, 2, 12, INT32_MAX}) {
        if (weight <= 1 && pattern == 0) continue;
        Lines lines(variant);
        lines.display().hard_clip = clip;
        lines.misc().advanced_options.bits = weight == 2 ? 0xFFFFFFFF : 0;
        lines.face().face_pattern = 1000;
        KT_Line_Attributes& line = lines.line();
        line.line_weight = weight;
        line.line_pattern = pattern;
        line.line_corner_style = pattern;
        line.line_end_style_a = weight;
        line.line_flag_a = weight == 900;
        const int count = static_cast<int>(far.size());
        const KT_Action_Table& actions = lines.actions();
        actions.call<KT_Action::Draw_2DI_Polyline>(lines.rendition, count, far.data());
        actions.call<KT_Action::Draw_2DI_Colorized_Polyline>(lines.rendition, count, far.data(),
                                                             colors, false);
        actions.call<KT_Action::Draw_2DI_Gouraud_Polyline>(lines.rendition, count, far.data(),
                                                           colors);
        actions.call<KT_Action::Draw_2DI_Polyline>(lines.rendition, 2, &far[3]);
        for (int y = 0; y < size.y; ++y) {
          for (int x = 0; x < size.x; ++x) {
            const bool inside = x - 7 >= clip.left && x - 7 <= clip.right && y + 5 >= clip.bottom &&
                                y + 5 <= clip.top;
            ASSERT_FALSE(!inside && lines.color->touched(x, y)) << x << ", " << y;
          }
        }
      }
    }
  }
}

}  // namespace
