#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "host/clip.h"

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
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-400, 400);
  int heads = 0, ends = 0, misses = 0;
  for (int round = 0; round < 20000; ++round) {
    const KT_Point_D segment[2] = {{place(random), place(random), 0},
                                   {place(random), place(random), 1000}};
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
  EXPECT_GT(heads, 100);
  EXPECT_GT(ends, 100);
  EXPECT_GT(misses, 100);
}

TEST(Preclip_Line, CutsColoursAndDepthInProportion) {
  const KT_Point_D segment[2] = {{-200, 0, 0}, {0, 0, 1000}};
  const KT_RGB32 colors[2] = {{0, 100, 200, 255}, {100, 100, 0, 55}};
  KT_DCI_Point result;
  KT_RGB32 color;
  KD_Preclip_Head(1, frame, segment, &result, colors, &color);
  EXPECT_EQ(result, (KT_DCI_Point{-100, 0, 500}));
  EXPECT_EQ(color, (KT_RGB32{50, 100, 100, 155}));

  const KT_Point_D back[2] = {segment[1], segment[0]};
  const KT_RGB32 colors_back[2] = {colors[1], colors[0]};
  KD_Preclip_Tail(1, frame, back, &result, colors_back, &color);
  EXPECT_EQ(result, (KT_DCI_Point{-100, 0, 500}));
  EXPECT_EQ(color, (KT_RGB32{50, 100, 100, 155}));
}

// From far away the inside end must still decide where the frame is crossed.
TEST(Preclip_Line, ComesInFromVeryFarButNotFromNowhere) {
  const KT_Int_Rectangle guard = {-0x40000000, 0x40000000, -0x40000000, 0x40000000};
  const KT_Point_D segment[2] = {{-1e200, 7, 0}, {3, 7, 0}};
  KT_DCI_Point result;
  KD_Preclip_Head(1, guard, segment, &result, nullptr, nullptr);
  EXPECT_EQ(result.x, -0x40000000);
  EXPECT_EQ(result.y, 7);

  const KT_Point_D from_nowhere[2] = {{std::nan(""), 0, 0}, {0, 0x50000000, 0}};
  short codes[2];
  KD_Clip(guard, 2, from_nowhere, codes);
  KT_DCI_Point results[2];
  EXPECT_FALSE(KD_Preclip_Ends(codes, guard, from_nowhere, results, nullptr, nullptr));
}

/// Twice the area of a strip, all triangles counted positive.
double strip_area(int count, const KT_DCI_Point* p) {
  double sum = 0;
  for (int n = 0; n + 2 < count; ++n) {
    sum += std::abs(static_cast<double>(p[n + 1].x - p[n].x) * (p[n + 2].y - p[n].y) -
                    static_cast<double>(p[n + 1].y - p[n].y) * (p[n + 2].x - p[n].x));
  }
  return sum;
}

double outline_area(std::vector<KT_DCI_Point> strip) {
  std::vector<KT_DCI_Point> outline;
  for (std::size_t n = 1; n < strip.size(); n += 2) outline.push_back(strip[n]);
  for (std::size_t n = (strip.size() - 1) / 2 * 2;; n -= 2) {
    outline.push_back(strip[n]);
    if (n == 0) break;
  }
  double sum = 0;
  for (std::size_t n = 0; n < outline.size(); ++n) {
    const KT_DCI_Point& a = outline[n];
    const KT_DCI_Point& b = outline[(n + 1) % outline.size()];
    sum += static_cast<double>(a.x) * b.y - static_cast<double>(a.y) * b.x;
  }
  return std::abs(sum);
}

struct Cut_Triangle {
  int count = 0;
  std::vector<KT_DCI_Point> points;
  KT_RGB32 colors[7];
  KT_Parameter parameters[14];
  float floats[7];
  KT_Vector vectors[7];
};

std::uint8_t channel_of(float place) {
  return std::abs(place) < 500 ? static_cast<std::uint8_t>(128 + place / 4) : 0;
}

bool cut(const KT_Int_Rectangle& rectangle, const KT_Point_D* points, Cut_Triangle& result) {
  // Every attribute is made from the place of its point, so that it tells where it ended up.
  KT_RGB32 colors[3];
  KT_Parameter parameters[6];
  float floats[3];
  KT_Vector vectors[3];
  for (int n = 0; n < 3; ++n) {
    const auto x = static_cast<float>(points[n].x), y = static_cast<float>(points[n].y);
    colors[n] = {channel_of(x), channel_of(y), 7, 255};
    parameters[2 * n] = {x, y, 1};
    parameters[2 * n + 1] = {y, x, 2};
    floats[n] = x - y;
    vectors[n] = {y, 3, x};
  }
  result.points.resize(7);
  const bool drawn =
      KD_Preclip_2D_Triangle(nullptr, KT_Rendition(), rectangle, points, &result.count,
                             result.points.data(), colors, result.colors, parameters,
                             result.parameters, 2, floats, result.floats, vectors, result.vectors);
  result.points.resize(static_cast<std::size_t>(result.count));
  return drawn;
}

TEST(Preclip_Triangle, GivesAConvexStripWithinTheFrameAndItsAttributes) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> place(-300, 300);
  int seven_corners = 0;
  for (int round = 0; round < 20000; ++round) {
    const KT_Point_D points[3] = {{place(random), place(random), 0},
                                  {place(random), place(random), 500},
                                  {place(random), place(random), 1000}};
    Cut_Triangle rest;
    if (!cut(frame, points, rest)) continue;
    if (rest.count == 7) ++seven_corners;
    ASSERT_LE(rest.count, 7);
    // A strip in the right order covers its outline just once, but for what rounding bends.
    ASSERT_NEAR(strip_area(rest.count, rest.points.data()), outline_area(rest.points), 300);
    for (int n = 0; n < rest.count; ++n) {
      const KT_DCI_Point& p = rest.points[static_cast<std::size_t>(n)];
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
  Cut_Triangle rest;
  ASSERT_TRUE(cut(frame, round_the_frame, rest));
  EXPECT_EQ(strip_area(rest.count, rest.points.data()), 2.0 * 200 * 110);
  for (const KT_DCI_Point& p : rest.points) EXPECT_EQ(p.z, 5);

  // Beyond no single edge, yet outside.
  const KT_Point_D past_a_corner[3] = {{-300, 0, 0}, {0, 300, 0}, {-300, 300, 0}};
  EXPECT_FALSE(cut(frame, past_a_corner, rest));
  const KT_Point_D no_number[3] = {{0, 0, 0}, {10, 0, 0}, {std::nan(""), 10, 0}};
  EXPECT_FALSE(cut(frame, no_number, rest));
}

TEST(Preclip_Triangle, RoundsHalvesUpward) {
  const KT_Point_D points[3] = {{-0.5, 0.5, 2.5}, {10, -1.5, -1.51}, {-3.49, 7.49, 1e12}};
  KT_DCI_Point results[7];
  int count = 0;
  ASSERT_TRUE(KD_Preclip_2D_Triangle(nullptr, KT_Rendition(), frame, points, &count, results,
                                     nullptr, nullptr, nullptr, nullptr, 1, nullptr, nullptr,
                                     nullptr, nullptr));
  ASSERT_EQ(count, 3);
  EXPECT_EQ(results[0], (KT_DCI_Point{0, 1, 3}));
  EXPECT_EQ(results[1], (KT_DCI_Point{10, -1, -2}));
  EXPECT_EQ(results[2], (KT_DCI_Point{-3, 7, std::numeric_limits<int>::max()}));
}

}  // namespace
