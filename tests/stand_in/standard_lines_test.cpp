// Wide and dashed lines of the general routines, on the module's own actions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/stand_in/general_session.h"

namespace {

using namespace general;

double distance(int x, int y, const Points& line) {
  double least = 1e9;
  for (std::size_t n = 0; n + 1 < line.size(); ++n) {
    const double dx = line[n + 1].x - line[n].x, dy = line[n + 1].y - line[n].y;
    const double px = x - line[n].x, py = y - line[n].y;
    const double part = std::clamp((px * dx + py * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    least = std::min(least, std::hypot(px - part * dx, py - part * dy));
  }
  return least;
}

const std::vector<Points> sample_lines = {
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
    for (const Points& line : sample_lines) {
      General session;
      session.line().line_weight = weight;
      session.line().line_corner_style = KT_Line_Style::round_corner;
      session.line().line_end_style_a = session.line().line_end_style_b = KT_Line_Style::round_end;
      session.draw<Draw_2DI_Polyline>(line);
      for (int i = 0; i < full_size.x * full_size.y; ++i) {
        const int x = i % full_size.x, y = i / full_size.x;
        const double beyond = distance(x, y, line) - weight / 2.0;
        const bool touched = session.color->touched(x, y);
        ASSERT_FALSE(touched ? beyond > 1 : beyond < -1) << weight << " at " << x << ", " << y;
      }
    }
  }
}

// Where segments meet they share an edge, so that blending takes place once a pixel.
TEST(Wide_Lines, BlendEachPixelOnce) {
  for (std::size_t n = 0; n < 6; ++n) {
    for (std::int32_t style : {KT_Line_Style::mitred_corner, KT_Line_Style::bevelled_corner,
                               KT_Line_Style::round_corner}) {
      General session(Variant::rgb_alpha);
      session.material().color.alpha = 100;
      session.line().line_weight = 5;
      session.line().line_corner_style = style;
      session.line().line_end_style_b = KT_Line_Style::round_end;
      const Points& line = sample_lines[n];
      session.draw<Draw_2DI_Polyline>(line);
      // The middle of a segment is drawn whichever way the ends' corners are rounded.
      const std::uint32_t once =
          session.color->at((line[0].x + line[1].x) / 2, (line[0].y + line[1].y) / 2);
      ASSERT_NE(once, session.color->untouched()) << "line " << n << ", style " << style;
      for (std::uint32_t pixel : session.color->pixels()) {
        ASSERT_TRUE(pixel == once || pixel == session.color->untouched()) << n << ' ' << style;
      }
    }
  }
}

TEST(Wide_Lines, HaveEndsAndCornersByStyle) {
  using Style = KT_Line_Style;
  const std::tuple<int, int, int, int, bool> cases[] = {
      {Style::flat_end, Style::mitred_corner, 9, 10, false},
      {Style::square_end, Style::mitred_corner, 6, 14, true},
      {Style::round_end, Style::mitred_corner, 6, 10, true},
      {Style::round_end, Style::mitred_corner, 6, 14, false},
      {Style::flat_end, Style::mitred_corner, 34, 6, true},
      {Style::flat_end, Style::round_corner, 32, 8, true},
      {Style::flat_end, Style::bevelled_corner, 33, 7, false},
  };
  for (const auto& [end, corner, x, y, expected] : cases) {
    General session;
    session.line().line_weight = 9;
    session.line().line_end_style_a = end;
    session.line().line_corner_style = corner;
    session.draw<Draw_2DI_Polyline>({{10, 10, 0}, {30, 10, 0}, {30, 30, 0}});
    EXPECT_EQ(session.color->touched(x, y), expected) << end << corner << " at " << x << ", " << y;
  }
}

TEST(Wide_Lines, CarryDepthAndColors) {
  General session(Variant::rgb_z);
  session.line().line_weight = 5;
  const Points points = {{10, 20, 1000}, {50, 20, 41000}};
  const KT_RGB32 colors[2] = {{0, 0, 0, 255}, {200, 100, 40, 255}};
  session.draw<Draw_2DI_Gouraud_Polyline>(points, colors);
  EXPECT_NEAR(session.depth->at(30, 22), 21000, 1500);
  EXPECT_NEAR(session.pixel(30, 18).blue, 100, 6);

  session.clear();
  session.draw<Draw_2DI_Colorized_Polyline>({{10, 20, 0}, {30, 20, 0}, {50, 20, 0}}, colors, false);
  EXPECT_EQ(session.pixel(33, 20), colors[1]) << "a colour a segment";
}

TEST(Dashes, HaveTheLengthsOfTheirPattern) {
  const std::string dash_dot = "########...#...########...#...########..";
  for (int weight : {1, 2}) {
    General session;
    session.line().line_pattern = 3;
    session.line().line_weight = weight;
    session.draw<Draw_2DI_Polyline>({{0, 20, 0}, {39, 20, 0}});
    session.draw<Draw_2DI_Polyline>({{50, 4, 5}, {50, 43, 5}});
    for (int n = 0; n < 39; ++n) {
      const bool expected = dash_dot[static_cast<std::size_t>(n / weight)] == '#';
      ASSERT_EQ(session.color->touched(n, 20), expected) << weight << " at " << n;
      ASSERT_EQ(session.color->touched(50, 4 + n), expected) << weight << " at " << n;
    }
  }
}

TEST(Dashes, KeepTheirPhaseThroughPointsAndFromFarAway) {
  for (int weight : {1, 3}) {
    Pixels pixels[2];
    for (const bool in_parts : {false, true}) {
      General session;
      session.line().line_pattern = 3;
      session.line().line_weight = weight;
      Points points = {{2, 20, 0}, {60, 20, 0}};
      const Points inner = {{3, 20, 0}, {9, 20, 0}, {9, 20, 0}, {12, 20, 0}, {40, 20, 0}};
      if (in_parts) points.insert(points.begin() + 1, inner.begin(), inner.end());
      session.draw<Draw_2DI_Polyline>(points);
      pixels[in_parts] = session.color->pixels();
    }
    EXPECT_TRUE(same_pixels(pixels[1], pixels[0], full_size.x)) << weight;
  }
  General session;
  session.line().line_pattern = 1;
  session.draw<Draw_2DI_Polyline>({{-1000000000, 20, 0}, {1000000000, 20, 0}});
  for (int x = 0; x < full_size.x; ++x) {
    ASSERT_EQ(session.color->touched(x, 20), (x + 1000000000) % 12 < 8) << x;
  }
}

TEST(Dashes, HaveTheColorsOfTheirPlaces) {
  const Points points = {{4, 20, 0}, {24, 20, 0}, {54, 20, 0}};
  const KT_RGB32 colors[3] = {{10, 20, 30, 255}, {90, 220, 130, 255}, {10, 90, 250, 255}};
  General session;
  session.line().line_pattern = -4;
  session.draw<Draw_DCI_Colorized_Polyline>(points, colors, false);
  EXPECT_EQ(session.pixel(19, 20), colors[0]);
  EXPECT_EQ(session.pixel(30, 20), colors[1]);
  session.draw<Draw_DCI_Gouraud_Polyline>(points, colors);
  EXPECT_NEAR(session.pixel(19, 20).green, 20 + 200 * 15 / 20, 2);
  EXPECT_NEAR(session.pixel(44, 20).red, 130 + 120 * 20 / 30, 2);
}

TEST(Odd_Lines, EndAndStayInsideTheClip) {
  const int most = INT32_MAX;
  const Points far = {{INT32_MIN + 7, INT32_MIN, 0},
                      {most, 3, 9},
                      {12, most - 5, -5},
                      {30, 20, 70000},
                      {30, 20, 1},
                      {most, most - 5, 2}};
  const KT_RGB32 colors[6] = {{1, 2, 3, 200}, {9, 9, 9, 90}, {7, 7, 200, 255}};
  const KT_Int_Rectangle clip = {3, 40, 15, 45};
  for (Variant variant : all_variants) {
    for (int weight : {INT32_MIN, 1, 2, 900, INT32_MAX}) {
      for (int pattern : {INT32_MIN, 0, 2, 12, INT32_MAX}) {
        if (weight <= 1 && pattern == 0) continue;
        General session(variant);
        session.display().hard_clip = General::at(clip);
        session.misc().advanced_options.bits = weight == 2 ? 0xFFFFFFFF : 0;
        session.face().face_pattern = 1000;
        KT_Line_Attributes& line = session.line();
        line.line_weight = line.line_end_style_a = weight;
        line.line_pattern = line.line_corner_style = pattern;
        line.line_flag_a = weight == 900;
        session.draw<Draw_2DI_Polyline>(far);
        session.draw<Draw_2DI_Colorized_Polyline>(far, colors, false);
        session.draw<Draw_2DI_Gouraud_Polyline>(far, colors);
        ASSERT_TRUE(session.stays_in(clip)) << name_of(variant) << weight << ' ' << pattern;
      }
    }
  }
}

}  // namespace
