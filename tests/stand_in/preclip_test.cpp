// Segments and triangles cut by a rectangle, with all that their points carry.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "host/clip.h"
#include "tests/support/random.h"

namespace {

constexpr KT_Int_Rectangle frame = {-100, 100, -50, 60};

bool lies_in(const KT_Int_Rectangle& r, const KT_DCI_Point& p) {
  return p.x >= r.left && p.x <= r.right && p.y >= r.bottom && p.y <= r.top;
}

double distance_to_line(const KT_DCI_Point& p, const KT_Point_D& a, const KT_Point_D& b) {
  const double x = b.x - a.x, y = b.y - a.y;
  return std::abs((p.x - a.x) * y - (p.y - a.y) * x) / std::hypot(x, y);
}

TEST(Preclip_Line, EndsLieOnTheFrameAndOnTheSegment) {
  support::Random random(3);
  const auto place = [&] { return random.real(-400, 400); };
  int heads = 0, ends = 0, misses = 0;
  for (int round = 0; round < 20000; ++round) {
    const KT_Point_D segment[2] = {{place(), place(), 0}, {place(), place(), 1000}};
    short codes[2];
    if (KD_Clip(frame, 2, segment, codes) != -1) continue;
    KT_DCI_Point results[2] = {};
    int given = 1;
    if (codes[1] == 0) {
      KD_Preclip_Head(codes[0], frame, segment, results, nullptr, nullptr);
      ++heads;
    } else if (codes[0] == 0) {
      KD_Preclip_Tail(codes[1], frame, segment, results, nullptr, nullptr);
    } else if (KD_Preclip_Ends(codes, frame, segment, results, nullptr, nullptr)) {
      given = 2;
      ++ends;
    } else {
      // A miss: nothing of the segment lies well within the frame.
      for (double t = 0; t <= 1; t += 1.0 / 256) {
        const double x = segment[0].x + (segment[1].x - segment[0].x) * t;
        const double y = segment[0].y + (segment[1].y - segment[0].y) * t;
        ASSERT_FALSE(x > frame.left && x < frame.right && y > frame.bottom && y < frame.top);
      }
      ++misses;
      continue;
    }
    for (int n = 0; n < given; ++n) {
      ASSERT_TRUE(lies_in(frame, results[n]));
      ASSERT_TRUE(results[n].x == frame.left || results[n].x == frame.right ||
                  results[n].y == frame.bottom || results[n].y == frame.top);
      ASSERT_LE(distance_to_line(results[n], segment[0], segment[1]), 0.75);
    }
    ASSERT_TRUE(given == 1 || results[0].z <= results[1].z);
  }
  EXPECT_GT(std::min({heads, ends, misses}), 100);
}

TEST(Preclip_Line, CutsColoursAndDepthInProportion) {
  const KT_Point_D points[3] = {{-200, 0, 0}, {0, 0, 1000}, {-200, 0, 0}};
  const KT_RGB32 colors[3] = {{0, 100, 200, 255}, {100, 100, 0, 55}, {0, 100, 200, 255}};
  KT_DCI_Point results[2];
  KT_RGB32 cut[2];
  KD_Preclip_Head(1, frame, points, &results[0], colors, &cut[0]);
  KD_Preclip_Tail(1, frame, points + 1, &results[1], colors + 1, &cut[1]);
  for (int n = 0; n < 2; ++n) {
    EXPECT_EQ(results[n], (KT_DCI_Point{-100, 0, 500})) << n;
    EXPECT_EQ(cut[n], (KT_RGB32{50, 100, 100, 155})) << n;
  }
}

// From far away the inside end must still decide where the frame is crossed.
TEST(Preclip_Line, ComesInFromVeryFarButNotFromNowhere) {
  const KT_Int_Rectangle guard = {-0x40000000, 0x40000000, -0x40000000, 0x40000000};
  const KT_Point_D segment[2] = {{-1e200, 7, 0}, {3, 7, 0}};
  KT_DCI_Point results[2];
  KD_Preclip_Head(1, guard, segment, results, nullptr, nullptr);
  EXPECT_EQ(results[0].x, -0x40000000);
  EXPECT_EQ(results[0].y, 7);

  const KT_Point_D from_nowhere[2] = {{std::nan(""), 0, 0}, {0, 0x50000000, 0}};
  short codes[2];
  KD_Clip(guard, 2, from_nowhere, codes);
  EXPECT_FALSE(KD_Preclip_Ends(codes, guard, from_nowhere, results, nullptr, nullptr));
}

/// Twice the area of three points.
double area(const KT_DCI_Point& a, const KT_DCI_Point& b, const KT_DCI_Point& c) {
  return std::abs(static_cast<double>(b.x - a.x) * (c.y - a.y) -
                  static_cast<double>(b.y - a.y) * (c.x - a.x));
}

/// What is left of a triangle; every attribute is made from the place of its point, so that it
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
    KT_Parameter in_parameters[6];
    float in_floats[3];
    KT_Vector in_vectors[3];
    for (int n = 0; n < 3; ++n) {
      const auto x = static_cast<float>(corners[n].x), y = static_cast<float>(corners[n].y);
      const float level = std::abs(x) < 500 ? 128 + x / 4 : 0;
      in_colors[n] = {static_cast<std::uint8_t>(level), 0, 7, 255};
      in_parameters[2 * n] = {x, y, 1};
      in_parameters[2 * n + 1] = {y, x, 2};
      in_floats[n] = x - y;
      in_vectors[n] = {y, 3, x};
    }
    drawn = KD_Preclip_2D_Triangle(nullptr, KT_Rendition(), frame, corners, &count, points,
                                   in_colors, colors, in_parameters, parameters, 2, in_floats,
                                   floats, in_vectors, vectors);
  }

  double strip_area() const {
    double sum = 0;
    for (int n = 0; n + 2 < count; ++n) sum += area(points[n], points[n + 1], points[n + 2]);
    return sum;
  }
  /// The same of the outline as a fan, in which the strip goes from side to side.
  double outline_area() const {
    std::vector<KT_DCI_Point> outline;
    for (int n = 0; n < count; n += 2) outline.push_back(points[n]);
    for (int n = count - 1 - count % 2; n > 0; n -= 2) outline.push_back(points[n]);
    double sum = 0;
    for (std::size_t n = 1; n + 1 < outline.size(); ++n) {
      sum += area(outline[0], outline[n], outline[n + 1]);
    }
    return sum;
  }
};

TEST(Preclip_Triangle, GivesAConvexStripWithinTheFrameAndItsAttributes) {
  support::Random random(4);
  const auto place = [&] { return random.real(-300, 300); };
  int seven_corners = 0;
  for (int round = 0; round < 20000; ++round) {
    const KT_Point_D points[3] = {
        {place(), place(), 0}, {place(), place(), 500}, {place(), place(), 1000}};
    const Cut_Triangle rest(points);
    if (!rest.drawn) continue;
    if (rest.count == 7) ++seven_corners;
    ASSERT_LE(rest.count, 7);
    // A strip in the right order covers its outline just once, but for what rounding bends.
    ASSERT_NEAR(rest.strip_area(), rest.outline_area(), 300);
    for (int n = 0; n < rest.count; ++n) {
      const KT_DCI_Point& p = rest.points[n];
      ASSERT_TRUE(lies_in(frame, p));
      ASSERT_NEAR(rest.parameters[2 * n].s, p.x, 0.51);
      ASSERT_NEAR(rest.parameters[2 * n + 1].s, p.y, 0.51);
      ASSERT_NEAR(rest.floats[n], p.x - p.y, 1.02);
      ASSERT_NEAR(rest.vectors[n].x, p.y, 0.51);
      ASSERT_NEAR(rest.vectors[n].y, 3, 0.001);
      ASSERT_NEAR(rest.colors[n].blue, 128 + p.x / 4, 2);
      ASSERT_EQ(rest.colors[n].red, 7);
      ASSERT_EQ(rest.colors[n].alpha, 255);
    }
  }
  EXPECT_GT(seven_corners, 0);
}

TEST(Preclip_Triangle, CoversTheFrameFromOutsideAndDropsWhatMisses) {
  const KT_Point_D round_the_frame[3] = {{-1e9, -1e9, 5}, {1e9, -1e9, 5}, {0, 1e9, 5}};
  const Cut_Triangle rest(round_the_frame);
  ASSERT_TRUE(rest.drawn);
  EXPECT_EQ(rest.strip_area(), 2.0 * 200 * 110);
  for (int n = 0; n < rest.count; ++n) EXPECT_EQ(rest.points[n].z, 5);

  // Beyond no single edge, yet outside.
  const KT_Point_D past_a_corner[3] = {{-300, 0, 0}, {0, 300, 0}, {-300, 300, 0}};
  EXPECT_FALSE(Cut_Triangle(past_a_corner).drawn);
  const KT_Point_D no_number[3] = {{0, 0, 0}, {10, 0, 0}, {std::nan(""), 10, 0}};
  EXPECT_FALSE(Cut_Triangle(no_number).drawn);
}

TEST(Preclip_Triangle, RoundsHalvesUpward) {
  const KT_Point_D points[3] = {{-0.5, 0.5, 2.5}, {10, -1.5, -1.51}, {-3.49, 7.49, 1e12}};
  const Cut_Triangle rest(points);
  ASSERT_EQ(rest.count, 3);
  EXPECT_EQ(rest.points[0], (KT_DCI_Point{0, 1, 3}));
  EXPECT_EQ(rest.points[1], (KT_DCI_Point{10, -1, -2}));
  EXPECT_EQ(rest.points[2], (KT_DCI_Point{-3, 7, std::numeric_limits<int>::max()}));
}

}  // namespace
