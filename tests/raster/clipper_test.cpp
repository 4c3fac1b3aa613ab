// The triangle clipper by itself, with all that a vertex can have.
//
// Expected points are worked out by hand. Expected attributes come from barycentric weights; in
// space, 1/w and attribute/w are linear on the screen, so that each weight is divided by its w.
#include "module/raster/clipper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using namespace zbuffer;
using enum Parameter_Path;
using Points = std::vector<KT_Int_XY>;

constexpr KT_Int_Rectangle square = {-6, 6, -6, 6};
const Points whole_square = {{-6, -6}, {-6, 6}, {6, -6}, {6, 6}};

struct Case {
  const char* name;
  KT_Int_XY triangle[3];
  Points strip;
  KT_Int_Rectangle rectangle = square;
};

/// Three vertices with attributes. Every third record of the parameters is a vertex's.
struct Vertices {
  KT_DCI_Point points[3];
  KT_RGB32 colors[3] = {{10, 250, 37, 0}, {201, 3, 90, 255}, {77, 128, 255, 141}};
  KT_Parameter parameters[9] = {{0.5f, 3, -7}, {}, {}, {9, 0.25f, 40}, {}, {}, {-2, 17, 100}};
  float w[3] = {1, 4, 0.5f};
  KT_Vector vectors[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

  explicit Vertices(const KT_Int_XY (&p)[3])
      : points{{p[0].x, p[0].y, 1000}, {p[1].x, p[1].y, 65535}, {p[2].x, p[2].y, 30000}} {}
  Clip_Triangle all(Parameter_Path path) const {
    return {points, colors, parameters, 3, w, vectors, path};
  }
};

Points points_of(const Clipped_Strip& strip) {
  Points points;
  for (int i = 0; i < strip.count; ++i) points.push_back({strip.points[i].x, strip.points[i].y});
  return points;
}

void check_vertex(const Vertices& in, Parameter_Path path, const Clipped_Strip& strip, int i) {
  const auto area = [](auto a, auto b, auto c) -> double {
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
  };
  const auto& p = in.points;
  const KT_DCI_Point q = strip.points[i];
  double weights[3] = {area(q, p[1], p[2]), area(p[0], q, p[2]), area(p[0], p[1], q)};
  const auto mixed = [&](auto value) {
    return (weights[0] * value(0) + weights[1] * value(1) + weights[2] * value(2)) /
           (weights[0] + weights[1] + weights[2]);
  };
  EXPECT_NEAR(q.z, mixed([&](int k) { return p[k].z; }), 0.500001);
  for (const auto channel : {&KT_RGB32::blue, &KT_RGB32::green, &KT_RGB32::red, &KT_RGB32::alpha}) {
    const double exact = mixed([&](int k) { return in.colors[k].*channel; });
    EXPECT_NEAR(strip.colors[i].*channel + 0.5, exact, 0.501);  // truncated
  }
  for (int k = 0; path == in_space && k < 3; ++k) weights[k] /= in.w[k];
  for (const auto part : {&KT_Parameter::s, &KT_Parameter::t, &KT_Parameter::r}) {
    const double exact = mixed([&](int k) { return in.parameters[3 * k].*part; });
    EXPECT_NEAR(strip.parameters[i].*part, exact, 1e-4);
  }
  EXPECT_NEAR(strip.w[i], mixed([&](int k) { return in.w[k]; }), 1e-5);
  EXPECT_EQ(std::hypot(strip.vectors[i].x, strip.vectors[i].y, strip.vectors[i].z), 0);
}

/// Quarter turns about the origin, and with bit 2 mirrored first.
KT_Int_XY turned(KT_Int_XY p, int turn) {
  if (turn & 4) p.x = -p.x;
  for (int i = 0; i < (turn & 3); ++i) p = {-p.y, p.x};
  return p;
}

// Each case is turned and mirrored, and where no edge is visible, begins with each vertex.
TEST(Clipper, CutsEverySideWithAllAttributes) {
  const Case cases[] = {
      {"inside", {{-5, -4}, {3, -3}, {-2, 4}}, {{-5, -4}, {3, -3}, {-2, 4}}},
      {"tip outside", {{-10, 0}, {2, -6}, {2, 6}}, {{-6, -2}, {2, -6}, {-6, 2}, {2, 6}}},
      {"tip inside", {{-2, 0}, {-14, -6}, {-14, 6}}, {{-6, -2}, {-6, 2}, {-2, 0}}},
      {"first edge outside", {{-14, 6}, {-14, -6}, {-2, 0}}, {{-6, -2}, {-2, 0}, {-6, 2}}},
      {"one corner", {{34, 34}, {-30, 34}, {34, -30}}, {{-2, 6}, {6, -2}, {6, 6}}},
      {"two corners", {{-2, -30}, {4, 42}, {-66, 6}}, {{0, -6}, {1, 6}, {-6, -6}, {-6, 6}}},
      {"an edge through a corner",
       {{-36, -36}, {66, -54}, {-54, 66}},
       {{6, 6}, {6, 6}, {6, -6}, {-6, 6}, {-6, -6}}},
      {"seven points",
       {{-10, -2}, {14, -14}, {2, 10}},
       {{-6, -4}, {-2, -6}, {-6, 2}, {6, -6}, {-2, 6}, {6, 2}, {4, 6}}},
      {"near an end", {{-2006, 2001}, {-5, 0}, {-6, -3}}, {{-6, 1}, {-5, 0}, {-6, -3}, {-6, -3}}},
      {"all, an edge upright", {{-46, -96}, {-46, 114}, {194, 4}}, whole_square},
      {"all, a vertex in line", {{-106, -6}, {294, -86}, {54, 394}}, whole_square},
      {"beyond an edge", {{-66, -26}, {54, -36}, {-6, -206}}, {}},
      {"beyond an upright edge", {{-36, -36}, {-16, 14}, {-16, -306}}, {}},
  };
  for (const Case& c : cases) {
    const bool edge_visible = !c.strip.empty() && c.strip != whole_square;
    for (int turn = 0; turn < 24; ++turn) {
      KT_Int_XY triangle[3];
      for (int i = 0; i < 3; ++i) {
        triangle[i] = turned(c.triangle[edge_visible ? i : (i + turn / 8) % 3], turn);
      }
      Points expected = c.strip;
      for (KT_Int_XY& p : expected) p = edge_visible ? turned(p, turn) : p;
      const Vertices in(triangle);
      for (const auto path : {on_screen, in_space}) {
        SCOPED_TRACE(testing::Message()
                     << c.name << ", turn " << turn << (path == in_space ? ", in space" : ""));
        const Clipped_Strip strip = clipped(in.all(path), square);
        ASSERT_EQ(points_of(strip), expected);
        for (int i = 0; i < strip.count; ++i) check_vertex(in, path, strip, i);
      }
    }
  }
}

// Points alone, and with parameters that have no w.
TEST(Clipper, DecidesCloseCasesInDoublePrecision) {
  const Case cases[] = {
      {"halves go up", {{-8, -1}, {-4, 2}, {-4, -2}}, {{-6, 1}, {-4, 2}, {-6, -1}, {-4, -2}}},
      // y of the first point is 1.5, at 0.995 of the edge; from the other end it would be less.
      {"from start", {{-211, 309}, {-5, 0}, {-6, -3}}, {{-6, 2}, {-5, 0}, {-6, -3}, {-6, -3}}},
      // y is 1.5 - 1 / 800000002; from the far end it would be 1.5.
      {"from the near end",
       {{-400000006, 600000001}, {-5, 0}, {-6, -3}},
       {{-6, 1}, {-5, 0}, {-6, -3}, {-6, -3}}},
      // The first edge passes a corner; 1 / dx and 1 / dy of it lie between its start and the cuts
      // in x and y. These differ by 1e-12 * (1 - 1e-6), which is a cut in y, or by
      // 1e-12 * (1 - 2.1e-9), which is none: the single-precision 1e-12 is 4.0e-9 of itself less.
      {"in bottom",
       {{-7, -7}, {999993, 999994}, {-7, 999994}},
       {{-6, -6}, {6, 6}, {-6, -6}, {-6, 6}}},
      {"in left", {{-7, -7}, {22912609, 22913134}, {-7, 999994}}, {{-6, -6}, {6, 6}, {-6, 6}}},
      {"out top", {{5, 5}, {1000006, 1000005}, {5, 1000}}, {{6, 6}, {5, 6}, {5, 5}}},
      {"out right", {{5, 5}, {22913146, 22912621}, {5, 1000}}, {{6, 6}, {6, 6}, {5, 5}, {5, 6}}},
      // An edge passes (-6, -6) outside of the square, closer than the sums tell.
      {"u of 0", {{-1775651422, 909}, {-1557483653, -1548483653}, {586061990, -308}}, {}},
      {"v of 0",
       {{1919594324, -1757250725}, {-2832, 2581}, {2147483641, 2147483641}},
       whole_square},
      {"u + v of 1",
       {{2147483641, 2147483641}, {1783698331, -444516196}, {-1179913231, 294046650}},
       whole_square},
      // The first edge leaves at (0, 0.0015): by the bottom, since it is long. The second enters
      // at (0, 0.0010), by the left, with three corners between. The third leaves at
      // (1598.1, 1600), or by the right, with a fourth corner.
      {"eight points",
       {{1999999999, 2002999999}, {-1, -1}, {998, 999}},
       {{1598, 1600}, {0, 0}, {1598, 1600}, {2000, 0}, {998, 999}, {2000, 1600}, {0, 0}, {0, 1600}},
       {0, 2000, 0, 1600}},
      {"nine points", {{1999999999, 2002999999}, {-1, -1}, {998, 999}}, {}, {0, 1598, 0, 1600}},
  };
  for (const Case& c : cases) {
    const Vertices in(c.triangle);
    EXPECT_EQ(points_of(clipped({.points = in.points}, c.rectangle)), c.strip) << c.name;
    const auto strip = clipped({.points = in.points, .parameters = in.parameters}, c.rectangle);
    for (int i = 0; i < strip.count; ++i) EXPECT_EQ(strip.w[i], 0) << c.name;
  }
}

// A line takes its gradients in x and in y from the first edge. At (0, 0) that edge enters by the
// left, and the longer last one leaves by the bottom: the corner comes between, third in the strip.
// It lies (999999 / 1000001, 999998 / 1000000) along the first edge, by which attributes change
// 1.999996 times. So they do in space, since the row crosses both edges at the same x.
TEST(Clipper, ClampsAtCornersOfLines) {
  const Vertices in({{-999999, -999998}, {2, 2}, {1000003, 1000002}});
  for (const auto path : {on_screen, in_space}) {
    const Clipped_Strip strip = clipped(in.all(path), {0, 20, 0, 10});
    ASSERT_EQ(points_of(strip), (Points{{0, 0}, {2, 2}, {0, 0}, {10, 10}, {0, 0}, {10, 10}}));
    // 10 + 382, 250 - 494, 37 + 106 and a little less, 510
    EXPECT_EQ(strip.colors[2], (KT_RGB32{255, 0, 142, 255}));
    EXPECT_NEAR(strip.parameters[2].r, -7 + 47 * 1.999996, 1e-4);
    EXPECT_NEAR(strip.w[2], 1 + 3 * 1.999996, 1e-5);
  }
}

// 100 times 0.7 is 70, but 0.7 in single precision is a little less.
TEST(Clipper, HasColorGradientsInSinglePrecision) {
  Vertices in({{-106, -16}, {144, -16}, {-106, 394}});
  in.colors[0] = in.colors[2] = {};
  in.colors[1].red = 175;
  EXPECT_EQ(clipped(in.all(on_screen), square).colors[0].red, 69);
}

TEST(Clipper, CutsOnlyBeyondTheDeviceRange) {
  const Vertices in({{-4000, 28760}, {28760, 0}, {0, -4000}});
  const Clipped_Strip strip = clipped_to_device_range(in.all(in_space));
  const Clipped_Strip bare = clipped_to_device_range({.points = in.points});
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(strip.points[i], in.points[i]);
    EXPECT_EQ(bare.points[i], in.points[i]);
    EXPECT_EQ(strip.colors[i], in.colors[i]);
    EXPECT_EQ(strip.parameters[i].r, in.parameters[3 * i].r);
  }
  EXPECT_EQ(strip.count, 3);
  // A tip that is one beyond, about the middle of the range.
  for (int turn = 0; turn < 4; ++turn) {
    Points cut = {{16380, 0}, {16380, 0}, {0, 8000}, {0, -8000}, {16381, 0}};
    for (KT_Int_XY& p : cut) p = turned(p, turn), p.x += 12380, p.y += 12380;
    KT_Int_XY triangle[3] = {cut[2], cut[3], cut[4]};
    std::rotate(triangle, triangle + turn % 3, triangle + 3);
    cut.pop_back();
    const Points points = points_of(clipped_to_device_range(Vertices(triangle).all(on_screen)));
    EXPECT_TRUE(std::is_permutation(points.begin(), points.end(), cut.begin(), cut.end())) << turn;
  }
}

}  // namespace
