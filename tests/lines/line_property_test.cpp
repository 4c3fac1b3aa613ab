// What must hold of any line: clipped lines are whole lines cut by the rectangle, joints are
// covered once, and known segments look as they should.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/session.h"

namespace {

using namespace support;
using Points = std::vector<KT_DCI_Point>;
using Picture = std::vector<std::string>;

constexpr KT_RGB32 blue{200, 0, 0, 255};
constexpr KT_RGB32 red{0, 0, 200, 255};

void draw_anywhere(const Session& session, const Points& points) {
  session.actions().call<KT_Action::Draw_2DI_Polyline>(
      session.rendition, static_cast<int>(points.size()), points.data());
}

void draw_inside(const Session& session, const Points& points) {
  session.actions().call<KT_Action::Draw_DCI_Polyline>(
      session.rendition, static_cast<int>(points.size()), points.data());
}

void draw_shaded(const Session& session, const Points& points) {
  const KT_RGB32 colors[] = {{0x40, 0xE0, 0x10, 255}, {0x80, 0x10, 0xF0, 255}};
  session.actions().call<KT_Action::Draw_2DI_Gouraud_Polyline>(session.rendition, 2, points.data(),
                                                               colors);
}

bool lies_in(const KT_Int_Rectangle& r, int x, int y) {
  return x >= r.left && x <= r.right && y >= r.bottom && y <= r.top;
}

/// Steep lines down to the left: clipped ones may differ by a column here and there.
bool is_excepted(const KT_DCI_Point& from, const KT_DCI_Point& to) {
  const int dx = to.x - from.x;
  const int dy = to.y - from.y;
  return dx < 0 && dy < 0 && -dx < -dy;
}

/// Draws segments whole and cut, and compares colours and depths.
class Cut_Lines {
 public:
  Cut_Lines(KT_Int_XY size, const KT_Int_Rectangle& clip)
      : size_(size),
        clip_(clip),
        whole_({.variant = Variant::rgb_z, .size = size}),
        cut_({.variant = Variant::rgb_z, .size = size}) {
    cut_.display().hard_clip = clip;
  }

  template <class Draw>
  testing::AssertionResult equal(const KT_DCI_Point& from, const KT_DCI_Point& to, Draw draw) {
    for (Session* session : {&whole_, &cut_}) {
      session->clear();
      draw(*session, {from, to});
    }
    for (int y = 0; y < size_.y; ++y) {
      for (int x = 0; x < size_.x; ++x) {
        const bool inside = lies_in(clip_, x, y);
        const auto expected = [&](const KT_Handle<Guarded_Image>& image) {
          return inside ? image->at(x, y) : image->untouched();
        };
        if (cut_.color->at(x, y) == expected(whole_.color) &&
            cut_.depth->at(x, y) == expected(whole_.depth)) {
          continue;
        }
        return testing::AssertionFailure()
               << "(" << from.x << "," << from.y << ") to (" << to.x << "," << to.y << ") at (" << x
               << "," << y << "): expected " << std::hex << expected(whole_.color) << "/"
               << expected(whole_.depth) << " got " << cut_.color->at(x, y) << "/"
               << cut_.depth->at(x, y);
      }
    }
    return testing::AssertionSuccess();
  }

 private:
  KT_Int_XY size_;
  KT_Int_Rectangle clip_;
  Session whole_;
  Session cut_;
};

TEST(Cut_Line, EqualsTheWholeLineOnASmallGrid) {
  constexpr KT_Int_XY size{11, 9};
  Cut_Lines lines(size, {3, 6, 3, 5});
  for (int from = 0; from < size.x * size.y; ++from) {
    for (int to = 0; to < size.x * size.y; ++to) {
      const KT_DCI_Point p{from % size.x, from / size.x, 1000};
      const KT_DCI_Point q{to % size.x, to / size.x, 50000};
      if (is_excepted(p, q)) continue;
      ASSERT_TRUE(lines.equal(p, q, draw_anywhere));
      ASSERT_TRUE(lines.equal(p, q, draw_shaded));
    }
  }
}

TEST(Cut_Line, EqualsTheWholeLineForLongSegments) {
  Cut_Lines lines({180, 140}, {61, 97, 50, 73});
  std::mt19937 random(7);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int i = 0; i < 2000; ++i) {
    KT_DCI_Point p{below(180), below(140), below(40000)};
    KT_DCI_Point q{below(180), below(140), below(40000)};
    if (i % 4 == 0) q.y = std::min(139, p.y + below(4));
    if (i % 4 == 1) q.x = std::min(179, p.x + below(4));
    if (is_excepted(p, q)) continue;
    ASSERT_TRUE(lines.equal(p, q, i % 2 ? draw_anywhere : draw_shaded));
  }
}

// The exception is one of whole lines alone: what is drawn stays in the rectangle and within a
// column of the whole line.
TEST(Cut_Line, DownToTheLeftStaysWithinAColumnOfTheWholeLine) {
  Session whole({.size = {60, 60}});
  Session cut({.size = {60, 60}});
  const KT_Int_Rectangle clip{20, 39, 18, 41};
  cut.display().hard_clip = clip;
  for (int dx = 1; dx < 40; ++dx) {
    for (Session* session : {&whole, &cut}) {
      session->clear();
      draw_anywhere(*session, {{45, 57, 0}, {45 - dx, 2, 0}});
    }
    for (int y = 0; y < 60; ++y) {
      int last = -1;  // the whole line's column in this row
      for (int x = 0; x < 60; ++x) {
        if (whole.color->touched(x, y)) last = x;
      }
      for (int x = 0; x < 60; ++x) {
        if (!cut.color->touched(x, y)) continue;
        EXPECT_TRUE(lies_in(clip, x, y)) << "dx " << dx << " at (" << x << "," << y << ")";
        EXPECT_NEAR(x, last, 1) << "dx " << dx << " in row " << y;
      }
    }
  }
}

// Ends beyond the range of the fixed-point arithmetic are moved along the line.
TEST(Cut_Line, CrossesTheFrameFromFarAway) {
  Session session({.variant = Variant::rgb_z, .size = {4, 4}});
  draw_anywhere(session, {{-1000000, -1000000, 100}, {1000000, 1000000, 100}});
  EXPECT_TRUE(shows(*session.color, {"...#", "..#.", ".#..", "#..."}, session.legend()));
  EXPECT_TRUE(shows(*session.depth, {"...d", "..d.", ".d..", "d..."}, {{'d', 100}}));
  session.clear();
  draw_anywhere(session, {{-1000000, 40, 0}, {40, 1000000, 0}});
  EXPECT_TRUE(shows(*session.color, Picture(4, "...."), session.legend()));
}

testing::AssertionResult looks(KT_Int_XY size, const Points& points, const Picture& picture) {
  Session session({.size = size});
  draw_inside(session, points);
  return shows(*session.color, picture, session.legend());
}

// Half a step in the first row, whole steps, the rest in the last one.
TEST(Line_Picture, ShallowLinesAreRunsOfRows) {
  EXPECT_TRUE(looks({8, 3}, {{1, 0, 0}, {6, 2, 0}},
                    {
                        ".....##.",
                        "...##...",
                        ".##.....",
                    }));
  EXPECT_TRUE(looks({18, 4}, {{1, 0, 0}, {16, 3, 0}},
                    {
                        "..............###.",
                        ".........#####....",
                        "....#####.........",
                        ".###..............",
                    }));
  EXPECT_TRUE(looks({12, 2}, {{0, 0, 0}, {10, 1, 0}},
                    {
                        ".....######.",
                        "#####.......",
                    }));
}

TEST(Line_Picture, SteepLinesOfEqualSignsAreReversible) {
  const Picture picture = {
      "...#.", "...#.", "..#..", "..#..", "..#..", ".#...", ".#...", ".#...", "#....", "#....",
  };
  EXPECT_TRUE(looks({5, 10}, {{0, 0, 0}, {3, 9, 0}}, picture));
  EXPECT_TRUE(looks({5, 10}, {{3, 9, 0}, {0, 0, 0}}, picture));
}

TEST(Line_Picture, RepeatedPointsAddNothingAndOneIsLeft) {
  EXPECT_TRUE(looks({3, 3}, {{1, 1, 0}, {1, 1, 0}, {1, 1, 0}}, {"...", ".#.", "..."}));
  EXPECT_TRUE(looks({4, 1}, {{0, 0, 0}, {0, 0, 0}, {2, 0, 0}}, {"###."}));
  EXPECT_TRUE(looks({3, 1}, {{1, 0, 0}}, {"..."}));
}

TEST(Line_List, JointsTakeTheNextColorAndTheEndTheLast) {
  Session session({.size = {5, 4}});
  const Points points = {{1, 0, 0}, {3, 0, 0}, {3, 2, 0}};
  const KT_RGB32 colors[] = {blue, red};
  session.actions().call<KT_Action::Draw_DCI_Colorized_Polyline>(session.rendition, 3,
                                                                 points.data(), colors, false);
  EXPECT_TRUE(shows(*session.color,
                    {
                        ".....",
                        "...r.",
                        "...r.",
                        ".bbr.",
                    },
                    {{'b', blue.word()}, {'r', red.word()}}));
}

// Where a pixel was blended twice it would show.
TEST(Line_List, BlendedJointsAreCoveredOnce) {
  Session session({.variant = Variant::rgb_alpha, .size = {8, 6}});
  session.material().color = {255, 255, 255, 128};
  draw_anywhere(session, {{1, 1, 0}, {5, 2, 0}, {2, 5, 0}, {0, 5, 0}});
  EXPECT_TRUE(shows(*session.color,
                    {
                        "###.....",
                        "...#....",
                        "....#...",
                        "...###..",
                        ".##.....",
                        "........",
                    },
                    {{'#', 0xFF978F87}}));
}

TEST(Line_Depth, SettingsDoNotReachTheFinalPoint) {
  Session session({.variant = Variant::rgb_z, .size = {6, 1}});
  session.set_depth_write(0);
  session.set_depth_test(5);  // what is farther passes
  session.clear(60000);
  const auto draw = [&](int z) {
    const Points points = {{1, 0, z}, {4, 0, z}};
    session.clear(60000);
    session.actions().call<KT_Action::Draw_DCI_Colorized_Polyline>(
        session.rendition, 2, points.data(), &session.material().color, true);
  };
  draw(100);
  EXPECT_TRUE(shows(*session.color, {"....#."}, session.legend()));
  EXPECT_TRUE(shows(*session.depth, {"....d."}, {{'d', 100}}));
  draw(65000);
  EXPECT_TRUE(shows(*session.color, {".###.."}, session.legend()));
  EXPECT_TRUE(shows(*session.depth, {"......"}, {}));

  // Shaded lines take no notice of the settings.
  session.clear(60000);
  draw_shaded(session, {{1, 0, 100}, {4, 0, 100}});
  EXPECT_TRUE(shows(*session.depth, {".dddd."}, {{'d', 100}}));
}

TEST(Line_Depth, StepsByPixelOfTheMajorAxis) {
  Session session({.variant = Variant::rgb_z, .size = {24, 8}});
  draw_inside(session, {{1, 1, 1000}, {21, 5, 3000}});
  for (int x = 1; x <= 21; ++x) {
    int found = 0;
    for (int y = 1; y <= 5; ++y) {
      if (!session.depth->touched(x, y)) continue;
      ++found;
      EXPECT_EQ(session.depth->at(x, y), 1000u + static_cast<unsigned>(x - 1) * 100);
    }
    EXPECT_EQ(found, 1) << x;
  }
}

// White on black, so that a pixel's grey is 255 * weight / 256.
class Antialiased : public testing::Test {
 protected:
  Antialiased() : session_({.size = {8, 7}}) {
    session_.material().color = {255, 255, 255, 255};
    session_.misc().advanced_options.bits = KT_Advanced_Options::antialias_bit;
    session_.color->fill(0xFF000000);
  }
  testing::AssertionResult shows_greys(const Picture& picture) const {
    const auto grey = [](unsigned weight) { return 0xFF000000 | (255 * weight / 256) * 0x010101; };
    return shows(*session_.color, picture,
                 {{'#', grey(256)}, {'o', grey(47)}, {'+', grey(128)}, {'-', grey(24)}});
  }

  Session session_;
};

TEST_F(Antialiased, HorizontalLinesHaveThreeRows) {
  draw_anywhere(session_, {{1, 3, 0}, {6, 3, 0}});
  EXPECT_TRUE(shows_greys({
      "........",
      "........",
      ".oooooo.",
      ".######.",
      ".oooooo.",
      "........",
      "........",
  }));
}

TEST_F(Antialiased, SideRowsEndAtTheHardClip) {
  session_.display().hard_clip = {2, 5, 2, 4};
  draw_anywhere(session_, {{-9, 2, 0}, {90, 2, 0}});
  EXPECT_TRUE(shows_greys({
      "........",
      "........",
      "........",
      "..oooo..",
      "..####..",
      "........",
      "........",
  }));
}

TEST_F(Antialiased, NothingLeavesTheHardClip) {
  const KT_Int_Rectangle clip{2, 5, 2, 4};
  session_.display().hard_clip = clip;
  std::mt19937 random(3);
  const auto near = [&] { return static_cast<int>(random() % 30) - 11; };
  for (int i = 0; i < 2000; ++i) {
    draw_anywhere(session_, {{near(), near(), 0}, {near(), near(), 0}, {near(), near(), 0}});
  }
  for (int y = 0; y < 7; ++y) {
    for (int x = 0; x < 8; ++x) {
      EXPECT_EQ(session_.color->touched(x, y), lies_in(clip, x, y)) << x << " " << y;
    }
  }
}

// The last point of a run is left to the segment that begins there.
TEST_F(Antialiased, JointsAtTheClipAreCoveredOnce) {
  session_.material().color.alpha = 128;
  session_.display().hard_clip = {0, 7, 3, 4};
  draw_anywhere(session_, {{1, 3, 0}, {4, 3, 0}, {40, 3, 0}});
  EXPECT_TRUE(shows_greys({
      "........",
      "........",
      ".-------",
      ".+++++++",
      "........",
      "........",
      "........",
  }));
}

}  // namespace
