// What must hold of any line: clipped lines are whole lines cut by the rectangle, joints are
// covered once, and known segments look as they should.

#include <gtest/gtest.h>

#include <random>

#include "tests/lines/line_frame.h"

namespace {

using Picture = std::vector<std::string>;

constexpr Configuration rgb{};
constexpr Configuration rgb_alpha{.alpha = true};
constexpr Configuration rgb_z{.depth = true};

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;

KT_RGB32 color_of(std::uint32_t word) {
  return KT_RGB32::from_word(word);
}

/// Steep lines down to the left: clipped ones may differ by a column here and there.
bool is_excepted(const KT_DCI_Point& from, const KT_DCI_Point& to) {
  const int dx = to.x - from.x;
  const int dy = to.y - from.y;
  return dx < 0 && dy < 0 && -dx < -dy;
}

/// Draws segments in a large frame, whole and cut, and compares.
class Cut_Lines {
 public:
  Cut_Lines(int width, int height, const KT_Int_Rectangle& clip)
      : window_{0, width - 1, 0, height - 1},
        clip_(clip),
        whole_(rgb_z, width, height),
        cut_(rgb_z, width, height) {
    cut_.set_clip(clip);
  }

  template <class Draw>
  void compare(const KT_DCI_Point& from, const KT_DCI_Point& to, Draw draw) {
    const KT_DCI_Point points[] = {from, to};
    whole_.clear();
    cut_.clear();
    draw(whole_, points);
    draw(cut_, points);
    for (int y = 0; y <= window_.top; ++y) {
      for (int x = 0; x <= window_.right; ++x) {
        const bool inside =
            x >= clip_.left && x <= clip_.right && y >= clip_.bottom && y <= clip_.top;
        const std::uint32_t color = inside ? whole_.color(x, y) : Line_Frame::paper;
        const std::uint16_t depth = inside ? whole_.depth(x, y) : Line_Frame::far;
        if (cut_.color(x, y) == color && cut_.depth(x, y) == depth) continue;
        FAIL() << "(" << from.x << "," << from.y << ") to (" << to.x << "," << to.y << ") at (" << x
               << "," << y << "): expected " << std::hex << color << "/" << depth << " got "
               << cut_.color(x, y) << "/" << cut_.depth(x, y);
      }
    }
  }

 private:
  KT_Int_Rectangle window_;
  KT_Int_Rectangle clip_;
  Line_Frame whole_;
  Line_Frame cut_;
};

void draw_plain(Line_Frame& frame, const KT_DCI_Point* points) {
  frame.call<KT_Action::Draw_2DI_Polyline>(2, points);
}

void draw_shaded(Line_Frame& frame, const KT_DCI_Point* points) {
  const KT_RGB32 colors[] = {color_of(0xFF10E040), color_of(0xFFF01080)};
  frame.call<KT_Action::Draw_2DI_Gouraud_Polyline>(2, points, colors);
}

TEST(Cut_Line, EqualsTheWholeLineOnASmallGrid) {
  constexpr int width = 11;
  constexpr int height = 9;
  Cut_Lines lines(width, height, {3, 6, 3, 5});
  for (int from = 0; from < width * height; ++from) {
    for (int to = 0; to < width * height; ++to) {
      const KT_DCI_Point p{from % width, from / width, 1000};
      const KT_DCI_Point q{to % width, to / width, 50000};
      if (is_excepted(p, q)) continue;
      lines.compare(p, q, draw_plain);
      lines.compare(p, q, draw_shaded);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(Cut_Line, EqualsTheWholeLineForLongSegments) {
  Cut_Lines lines(180, 140, {61, 97, 50, 73});
  std::mt19937 random(7);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int i = 0; i < 4000; ++i) {
    KT_DCI_Point p{below(180), below(140), below(40000)};
    KT_DCI_Point q{below(180), below(140), below(40000)};
    if (i % 4 == 0) q.y = std::min(139, p.y + below(4));
    if (i % 4 == 1) q.x = std::min(179, p.x + below(4));
    if (is_excepted(p, q)) continue;
    lines.compare(p, q, i % 2 ? draw_plain : draw_shaded);
    if (HasFatalFailure()) return;
  }
}

// The exception is one of whole lines alone: what is drawn stays in the rectangle and within a
// column of the whole line.
TEST(Cut_Line, DownToTheLeftStaysWithinAColumnOfTheWholeLine) {
  Line_Frame whole(rgb, 60, 60);
  Line_Frame cut(rgb, 60, 60);
  const KT_Int_Rectangle clip{20, 39, 18, 41};
  cut.set_clip(clip);
  for (int dx = 1; dx < 40; ++dx) {
    const KT_DCI_Point points[] = {{45, 57, 0}, {45 - dx, 2, 0}};
    whole.clear();
    cut.clear();
    draw_plain(whole, points);
    draw_plain(cut, points);
    for (int y = 0; y < 60; ++y) {
      for (int x = 0; x < 60; ++x) {
        if (cut.color(x, y) == Line_Frame::paper) continue;
        ASSERT_TRUE(x >= clip.left && x <= clip.right && y >= clip.bottom && y <= clip.top);
        bool near = false;
        for (int beside = -1; beside <= 1; ++beside) {
          near = near || whole.color(x + beside, y) != Line_Frame::paper;
        }
        EXPECT_TRUE(near) << "dx " << dx << " at (" << x << "," << y << ")";
      }
    }
  }
}

// Ends beyond the range of the fixed-point arithmetic are moved along the line.
TEST(Cut_Line, CrossesTheFrameFromFarAway) {
  Line_Frame frame(rgb_z, 8, 8);
  const KT_DCI_Point diagonal[] = {{-1000000, -1000000, 100}, {1000000, 1000000, 100}};
  frame.call<KT_Action::Draw_2DI_Polyline>(2, diagonal);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(frame.depth(i, i), 100) << i;

  frame.clear();
  const KT_DCI_Point beside[] = {{-1000000, 40, 0}, {40, 1000000, 0}};
  frame.call<KT_Action::Draw_2DI_Polyline>(2, beside);
  EXPECT_EQ(frame.picture({0, 7, 0, 7}), Picture(8, "........"));
}

Picture drawn(const std::vector<KT_DCI_Point>& points, const KT_Int_Rectangle& of) {
  Line_Frame frame(rgb, 40, 32);
  frame.call<KT_Action::Draw_DCI_Polyline>(static_cast<int>(points.size()), points.data());
  return frame.picture(of);
}

TEST(Line_Picture, ShallowLinesTakeHalfAStepFirst) {
  EXPECT_EQ(drawn({{10, 10, 0}, {15, 12, 0}}, {10, 15, 10, 12}), (Picture{
                                                                     "....##",
                                                                     "..##..",
                                                                     "##....",
                                                                 }));
  EXPECT_EQ(drawn({{10, 10, 0}, {25, 13, 0}}, {10, 25, 10, 13}), (Picture{
                                                                     ".............###",
                                                                     "........#####...",
                                                                     "...#####........",
                                                                     "###.............",
                                                                 }));
  EXPECT_EQ(drawn({{10, 10, 0}, {20, 11, 0}}, {10, 20, 10, 11}), (Picture{
                                                                     ".....######",
                                                                     "#####......",
                                                                 }));
}

TEST(Line_Picture, SteepLinesOfEqualSignsAreReversible) {
  const KT_Int_Rectangle area{9, 14, 9, 21};
  EXPECT_EQ(drawn({{10, 10, 0}, {13, 20, 0}}, area), drawn({{13, 20, 0}, {10, 10, 0}}, area));
}

TEST(Line_Picture, RepeatedPointsAddNothingAndOneIsLeft) {
  EXPECT_EQ(drawn({{3, 3, 0}, {3, 3, 0}, {3, 3, 0}}, {2, 4, 2, 4}), (Picture{"...", ".#.", "..."}));
  EXPECT_EQ(drawn({{2, 2, 0}, {2, 2, 0}, {4, 2, 0}}, {2, 5, 2, 2}), (Picture{"###."}));
  EXPECT_EQ(drawn({{2, 2, 0}}, {2, 3, 2, 2}), (Picture{".."}));
}

// A square of four points: each edge in its colour, the joint in the colour of the edge behind it.
TEST(Line_List, JointsTakeTheNextColorAndTheEndTheLast) {
  Line_Frame frame(rgb, 10, 10);
  const KT_DCI_Point points[] = {{2, 2, 0}, {5, 2, 0}, {5, 5, 0}};
  const KT_RGB32 colors[] = {color_of(red), color_of(green)};
  frame.call<KT_Action::Draw_DCI_Colorized_Polyline>(3, points, colors, false);
  EXPECT_EQ(frame.color(4, 2), red);
  EXPECT_EQ(frame.color(5, 2), green);
  EXPECT_EQ(frame.color(5, 5), green);
}

// With an alpha of one half every second drawing of a pixel would show.
TEST(Line_List, BlendedJointsAreCoveredOnce) {
  Line_Frame frame(rgb_alpha, 20, 20);
  frame.set_color(0x80FFFFFF);
  const KT_DCI_Point points[] = {{2, 2, 0}, {9, 4, 0}, {4, 15, 0}, {4, 17, 0}};
  frame.call<KT_Action::Draw_2DI_Polyline>(4, points);
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 20; ++x) {
      const std::uint32_t color = frame.color(x, y);
      EXPECT_TRUE(color == Line_Frame::paper || color == 0xFFAAAAAA) << x << " " << y;
    }
  }
  EXPECT_EQ(frame.color(9, 4), 0xFFAAAAAAu);
  EXPECT_EQ(frame.color(4, 17), 0xFFAAAAAAu);
}

TEST(Line_Depth, SettingsDoNotReachTheFinalPoint) {
  Line_Frame frame(rgb_z, 10, 4);
  frame.set_depth(0, 5);  // farther pixels win, nothing is written
  const KT_DCI_Point nearer[] = {{1, 1, 100}, {6, 1, 100}};
  const KT_RGB32 colors[] = {color_of(red)};
  frame.call<KT_Action::Draw_DCI_Colorized_Polyline>(2, nearer, colors, true);
  EXPECT_EQ(frame.picture({0, 7, 1, 1}), (Picture{"......#."}));
  EXPECT_EQ(frame.depth(6, 1), 100);

  frame.clear();
  const KT_DCI_Point farther[] = {{1, 1, 65000}, {6, 1, 65000}};
  frame.call<KT_Action::Draw_DCI_Colorized_Polyline>(2, farther, colors, true);
  EXPECT_EQ(frame.picture({0, 7, 1, 1}), (Picture{".#####.."}));
  EXPECT_EQ(frame.depth(3, 1), Line_Frame::far);

  // Shaded lines take no notice of the settings.
  frame.clear();
  const KT_RGB32 shades[] = {color_of(red), color_of(green)};
  frame.call<KT_Action::Draw_DCI_Gouraud_Polyline>(2, nearer, shades);
  EXPECT_EQ(frame.picture({0, 7, 1, 1}), (Picture{".######."}));
  EXPECT_EQ(frame.depth(3, 1), 100);
}

TEST(Line_Depth, StepsByPixelOfTheMajorAxis) {
  Line_Frame frame(rgb_z, 24, 8);
  const KT_DCI_Point points[] = {{1, 1, 1000}, {21, 5, 3000}};
  frame.call<KT_Action::Draw_DCI_Polyline>(2, points);
  for (int x = 1; x <= 21; ++x) {
    int found = 0;
    for (int y = 1; y <= 5; ++y) {
      if (frame.depth(x, y) == Line_Frame::far) continue;
      ++found;
      EXPECT_EQ(frame.depth(x, y), 1000 + (x - 1) * 100);
    }
    EXPECT_EQ(found, 1) << x;
  }
}

// Grey levels of white lines on black: 255 * w / 256 for a weight of w.
class Antialiased : public testing::Test {
 protected:
  static constexpr int side = 9;
  static constexpr int beside = 255 * 47 / 256;

  Antialiased() : frame_(rgb, side, side) {
    frame_.set_antialiased();
    for (int y = 0; y < side; ++y) {
      const KT_DCI_Point row[] = {{0, y, 0}, {side - 1, y, 0}};
      const KT_RGB32 black[] = {color_of(0xFF000000)};
      frame_.call<KT_Action::Draw_2DI_Colorized_Polyline>(2, row, black, true);
    }
  }
  int level(int x, int y) const { return static_cast<int>(frame_.color(x, y) & 255); }
  void draw(std::vector<KT_DCI_Point> points) {
    frame_.call<KT_Action::Draw_2DI_Polyline>(static_cast<int>(points.size()), points.data());
  }

  Line_Frame frame_;
};

TEST_F(Antialiased, HorizontalLinesHaveThreeRows) {
  draw({{1, 4, 0}, {6, 4, 0}});
  for (int x = 0; x < side; ++x) {
    const bool covered = x >= 1 && x <= 6;
    EXPECT_EQ(level(x, 4), covered ? 255 : 0) << x;
    EXPECT_EQ(level(x, 5), covered ? beside : 0) << x;
    EXPECT_EQ(level(x, 3), covered ? beside : 0) << x;
    EXPECT_EQ(level(x, 6), 0) << x;
  }
}

TEST_F(Antialiased, NothingLeavesTheHardClip) {
  frame_.set_clip({2, 6, 2, 6});
  draw({{-5, 2, 0}, {20, 2, 0}});
  draw({{6, -5, 0}, {6, 20, 0}});
  draw({{-3, -4, 0}, {12, 13, 0}, {0, 1, 0}});
  EXPECT_EQ(level(4, 2), 255);
  EXPECT_EQ(level(6, 4), 255);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      if (x < 2 || x > 6 || y < 2 || y > 6) {
        EXPECT_EQ(level(x, y), 0) << x << " " << y;
      }
    }
  }
}

// The last point of a run is left to the segment that begins there.
TEST_F(Antialiased, JointsAtTheClipAreCoveredOnce) {
  frame_.set_color(0x80FFFFFF);
  draw({{2, 4, 0}, {4, 4, 0}, {20, 4, 0}});
  for (int x = 2; x < side; ++x) EXPECT_EQ(level(x, 4), 127) << x;
}

}  // namespace
