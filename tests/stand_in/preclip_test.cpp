// Segments and triangles cut by a rectangle, with all that their points carry.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/clip.h"
#include "tests/support/random.h"

namespace {

constexpr KT_Int_Rectangle frame = {-100, 100, -50, 60};

bool lies_in_frame(double x, double y) {
  return x >= frame.left && x <= frame.right && y >= frame.bottom && y <= frame.top;
}

void expect_on_frame_and_segment(const KT_DCI_Point& p, const KT_Point_D& a, const KT_Point_D& b) {
  const double x = b.x - a.x, y = b.y - a.y;
  EXPECT_LE(std::abs((p.x - a.x) * y - (p.y - a.y) * x) / std::hypot(x, y), 0.75);
  EXPECT_TRUE(lies_in_frame(p.x, p.y));
  EXPECT_TRUE(p.x == frame.left || p.x == frame.right || p.y == frame.bottom || p.y == frame.top);
}

TEST(Preclip_Line, EndsLieOnTheFrameAndOnTheSegment) {
  support::Random random(3);
  const auto place = [&] { return random.real(-400, 400); };
  int rounds[3] = {};  // by the number of ends that were cut
  for (int round = 0; round < 20000 && !HasFailure(); ++round) {
    const KT_Point_D segment[2] = {{place(), place(), 0}, {place(), place(), 1000}};
    short codes[2];
    if (KD_Clip(frame, 2, segment, codes) != -1) continue;
    KT_DCI_Point results[2] = {};
    int count = 1;
    if (codes[1] == 0) {
      KD_Preclip_Head(codes[0], frame, segment, results, nullptr, nullptr);
    } else if (codes[0] == 0) {
      KD_Preclip_Tail(codes[1], frame, segment, results, nullptr, nullptr);
    } else {
      count = KD_Preclip_Ends(codes, frame, segment, results, nullptr, nullptr) ? 2 : 0;
    }
    ++rounds[count];
    for (int n = 0; n < count; ++n) {
      expect_on_frame_and_segment(results[n], segment[0], segment[1]);
    }
    if (count == 2) {
      EXPECT_LE(results[0].z, results[1].z);
    }
    // Of a miss nothing lies within the frame.
    for (double t = 0; count == 0 && t <= 1; t += 1.0 / 256) {
      EXPECT_FALSE(lies_in_frame(segment[0].x + (segment[1].x - segment[0].x) * t,
                                 segment[0].y + (segment[1].y - segment[0].y) * t));
    }
  }
  EXPECT_GT(*std::min_element(rounds, rounds + 3), 100);
}

TEST(Preclip_Line, CutsColoursAndDepthInProportion) {
  const KT_Point_D points[3] = {{-150, 0, 0}, {50, 0, 1000}, {-150, 0, 0}};
  const KT_RGB32 colors[3] = {{0, 100, 200, 255}, {100, 100, 0, 55}, {0, 100, 200, 255}};
  KT_DCI_Point results[2];
  KT_RGB32 cut[2];
  KD_Preclip_Head(1, frame, points, &results[0], colors, &cut[0]);
  KD_Preclip_Tail(1, frame, points + 1, &results[1], colors + 1, &cut[1]);
  EXPECT_EQ(results[0], (KT_DCI_Point{-100, 0, 250}));
  EXPECT_EQ(cut[0], (KT_RGB32{25, 100, 150, 205}));
  EXPECT_TRUE(results[1] == results[0] && cut[1] == cut[0]);
}

// From far away the inside end must still decide where the frame is crossed.
TEST(Preclip_Line, ComesInFromVeryFarButNotFromNowhere) {
  const KT_Point_D segment[2] = {{-1e200, 7, 0}, {3, 7, 0}};
  KT_DCI_Point results[2];
  KD_Preclip_Head(1, frame, segment, results, nullptr, nullptr);
  EXPECT_EQ(results[0].x, frame.left);

  const KT_Point_D from_nowhere[2] = {{std::nan(""), 0, 0}, {0, 500, 0}};
  short codes[2];
  KD_Clip(frame, 2, from_nowhere, codes);
  EXPECT_FALSE(KD_Preclip_Ends(codes, frame, from_nowhere, results, nullptr, nullptr));
}

/// What is left of a triangle. Every attribute is made from the place of its point, so that it
/// tells where it ended up.
struct Cut_Triangle {
  int count = 0;
  KT_DCI_Point points[7];
  KT_RGB32 colors[7];
  KT_Parameter parameters[14];
  float floats[7];
  KT_Vector vectors[7];
  bool drawn = false;

  explicit Cut_Triangle(const KT_Point_D* corners) {
    KT_RGB32 in_colors[3];
    KT_Parameter in_parameters[6] = {};
    float in_floats[3];
    KT_Vector in_vectors[3] = {};
    for (int n = 0; n < 3; ++n) {
      const auto x = static_cast<float>(corners[n].x), y = static_cast<float>(corners[n].y);
      const float level = std::abs(x) < 500 ? 128 + x / 4 : 0;
      in_colors[n] = {static_cast<std::uint8_t>(level), 0, 7, 255};
      in_parameters[2 * n].s = in_floats[n] = x;
      in_parameters[2 * n + 1].s = in_vectors[n].x = y;
    }
    drawn = KD_Preclip_2D_Triangle(nullptr, KT_Rendition(), frame, corners, &count, points,
                                   in_colors, colors, in_parameters, parameters, 2, in_floats,
                                   floats, in_vectors, vectors);
  }

  /// Twice the area of the strip's triangles.
  double area() const {
    double sum = 0;
    for (int n = 0; n + 2 < count; ++n) {
      const KT_DCI_Point &a = points[n], &b = points[n + 1], &c = points[n + 2];
      sum += std::abs(static_cast<double>(b.x - a.x) * (c.y - a.y) -
                      static_cast<double>(b.y - a.y) * (c.x - a.x));
    }
    return sum;
  }
};

TEST(Preclip_Triangle, GivesAStripWithinTheFrameAndItsAttributes) {
  support::Random random(4);
  const auto place = [&] { return random.real(-300, 300); };
  for (int round = 0; round < 20000; ++round) {
    const KT_Point_D points[3] = {
        {place(), place(), 0}, {place(), place(), 500}, {place(), place(), 1000}};
    const Cut_Triangle rest(points);
    if (!rest.drawn) continue;
    for (int n = 0; n < rest.count; ++n) {
      const KT_DCI_Point& p = rest.points[n];
      ASSERT_TRUE(lies_in_frame(p.x, p.y));
      ASSERT_NEAR(rest.parameters[2 * n].s, p.x, 0.51);
      ASSERT_NEAR(rest.parameters[2 * n + 1].s, p.y, 0.51);
      ASSERT_NEAR(rest.floats[n], p.x, 0.51);
      ASSERT_NEAR(rest.vectors[n].x, p.y, 0.51);
      ASSERT_NEAR(rest.colors[n].blue, 128 + p.x / 4, 2);
      ASSERT_EQ(rest.colors[n].red, 7);
    }
  }
}

TEST(Preclip_Triangle, CoversTheFrameDropsWhatMissesAndRoundsHalvesUpward) {
  const KT_Point_D round_the_frame[3] = {{-1e9, -1e9, 5}, {1e9, -1e9, 5}, {0, 1e9, 5}};
  const Cut_Triangle rest(round_the_frame);
  ASSERT_TRUE(rest.drawn);
  EXPECT_EQ(rest.area(), 2.0 * 200 * 110);

  // Beyond no single edge, yet outside.
  const KT_Point_D past_a_corner[3] = {{-300, 0, 0}, {0, 300, 0}, {-300, 300, 0}};
  EXPECT_FALSE(Cut_Triangle(past_a_corner).drawn);
  const KT_Point_D no_number[3] = {{0, 0, 0}, {10, 0, 0}, {std::nan(""), 10, 0}};
  EXPECT_FALSE(Cut_Triangle(no_number).drawn);

  const KT_Point_D halves[3] = {{-0.5, 0.5, 2.5}, {10, -1.5, -1.51}, {-3.49, 7.49, 1e12}};
  const Cut_Triangle whole(halves);
  ASSERT_EQ(whole.count, 3);
  EXPECT_EQ(whole.points[0], (KT_DCI_Point{0, 1, 3}));
  EXPECT_EQ(whole.points[1], (KT_DCI_Point{10, -1, -2}));
  EXPECT_EQ(whole.points[2], (KT_DCI_Point{-3, 7, std::numeric_limits<int>::max()}));
}

}  // namespace
