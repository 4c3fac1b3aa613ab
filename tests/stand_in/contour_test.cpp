// Triangulation of contours, and whether a polygon is a strip.
#include "host/contour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

using Contour = std::vector<KT_Point>;

KT_Contour_Set contour_set(const std::vector<Contour>& contours) {
  KT_Contour_Set set(0, nullptr, false);
  set->contours = contours;
  return set;
}

Contour box(float left, float bottom, float right, float top) {
  return {{left, bottom, 0}, {right, bottom, 0}, {right, top, 0}, {left, top, 0}};
}

/// Area and, for planar z, the worst distance of a corner from the plane z = 2 x - 3 y + 1.
struct Measured {
  double area = 0;
  double worst_z = 0;
  int triangles = 0;
};

void measure(const KT_Point* a, const KT_Point* b, const KT_Point* c, void* context) {
  auto& sum = *static_cast<Measured*>(context);
  const double abx = static_cast<double>(b->x) - static_cast<double>(a->x);
  const double aby = static_cast<double>(b->y) - static_cast<double>(a->y);
  const double acx = static_cast<double>(c->x) - static_cast<double>(a->x);
  const double acy = static_cast<double>(c->y) - static_cast<double>(a->y);
  sum.area += std::abs(abx * acy - aby * acx) / 2;
  for (const KT_Point* p : {a, b, c}) {
    const auto z = static_cast<double>(2 * p->x - 3 * p->y + 1);
    sum.worst_z = std::max(sum.worst_z, std::abs(static_cast<double>(p->z) - z));
  }
  ++sum.triangles;
}

Measured triangulated(std::vector<Contour> contours) {
  for (Contour& contour : contours) {
    for (KT_Point& p : contour) p.z = 2 * p.x - 3 * p.y + 1;
  }
  KT_Contour_Set set = contour_set(contours);
  set.writable().force_projection({0, 0, 1});
  Measured sum;
  set->triangulate(measure, &sum);
  return sum;
}

TEST(Triangulation, CoversTheInsideOnceAndCarriesZ) {
  struct Case {
    const char* name;
    std::vector<Contour> contours;
    double area;
  };
  Contour reversed_hole = box(2, 2, 4, 5);
  std::reverse(reversed_hole.begin(), reversed_hole.end());
  const Case cases[] = {
      {"concave", {{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 2, 0}, {0, 10, 0}}}, 60},
      {"hole of the same winding", {box(0, 0, 10, 10), box(2, 2, 4, 5)}, 94},
      {"hole of the other winding", {box(0, 0, 10, 10), reversed_hole}, 94},
      {"island in a hole", {box(0, 0, 10, 10), box(1, 1, 9, 9), box(3, 3, 5, 5)}, 40},
      {"overlap", {box(0, 0, 6, 6), box(4, 4, 10, 10)}, 36 + 36 - 2 * 4},
      {"crossing itself", {{{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}}}, 50},
      {"flat", {{{0, 0, 0}, {5, 5, 0}, {10, 10, 0}}}, 0},
      {"nothing", {}, 0},
  };
  for (const Case& its : cases) {
    const Measured sum = triangulated(its.contours);
    EXPECT_NEAR(sum.area, its.area, 1e-4) << its.name;
    EXPECT_LT(sum.worst_z, 1e-4) << its.name;
  }
}

// A contour that stands upright has no area from above, but has one across its own normal.
TEST(Triangulation, ProjectsAsItIsTold) {
  KT_Contour_Set upright = contour_set({{{0, 0, 0}, {4, 0, 0}, {4, 0, 3}, {0, 0, 3}}});
  const auto count = [](const KT_Point*, const KT_Point*, const KT_Point*, void* n) {
    ++*static_cast<int*>(n);
  };
  int triangles = 0;
  upright->triangulate(count, &triangles);
  EXPECT_EQ(triangles, 0);
  upright.writable().force_projection({0, 1, 0});
  upright->triangulate(count, &triangles);
  EXPECT_EQ(triangles, 2);
}

TEST(Triangulation, LetsExceptionsOfItsCallbackThrough) {
  const KT_Contour_Set set = contour_set({box(0, 0, 1, 1)});
  const auto refuse = [](const KT_Point*, const KT_Point*, const KT_Point*, void*) {
    throw std::runtime_error("enough");
  };
  EXPECT_THROW(set->triangulate(refuse, nullptr), std::runtime_error);
}

int rank(Contour polygon) {
  const auto count = static_cast<int>(polygon.size());
  const int forward = KD_Rank_Polygon(count, polygon.data()).rank;
  std::reverse(polygon.begin(), polygon.end());
  EXPECT_EQ(KD_Rank_Polygon(count, polygon.data()).rank, forward);
  return forward;
}

Contour on_circle(int count, int rounds) {
  Contour polygon;
  for (int n = 0; n < count; ++n) {
    const float angle =
        2 * std::numbers::pi_v<float> * static_cast<float>(rounds * n) / static_cast<float>(count);
    polygon.push_back({1000 * std::cos(angle), 1000 * std::sin(angle), static_cast<float>(n)});
  }
  return polygon;
}

TEST(Polygon_Rank, IsZeroForConvexPolygonsFromAnyPoint) {
  Contour with_points_on_edges = {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0},
                                  {2, 1, 0}, {2, 2, 0}, {0, 2, 0}, {0, 1, 0}};
  for (std::size_t n = 0; n < with_points_on_edges.size(); ++n) {
    EXPECT_EQ(rank(with_points_on_edges), 0);
    std::rotate(with_points_on_edges.begin(), with_points_on_edges.begin() + 1,
                with_points_on_edges.end());
  }
  for (int count : {3, 4, 17, 64}) EXPECT_EQ(rank(on_circle(count, 1)), 0) << count;
}

TEST(Polygon_Rank, IsOneForWhatAStripWouldNotCover) {
  EXPECT_EQ(rank({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}}), 1);  // dent
  EXPECT_EQ(rank({{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 4, 0}}), 1);             // bow tie
  EXPECT_EQ(rank(on_circle(5, 2)), 1);  // turns one way, but twice round
  EXPECT_EQ(rank(on_circle(7, 3)), 1);
  EXPECT_EQ(rank({{0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}), 1);  // spike
  EXPECT_EQ(rank({{0, 0, 0}, {1, 0, 0}, {NAN, 1, 0}}), 1);
}

// A dent of one last place, which in products of single precision would be straight.
TEST(Polygon_Rank, SeesTheSmallestDent) {
  const float tip = 16777215;
  Contour polygon = {{0, 0, 0}, {tip - 1, tip - 2, 0}, {tip, tip, 0}, {0, tip, 0}};
  EXPECT_EQ(rank(polygon), 0);
  polygon[1] = {tip - 2, tip - 1, 0};
  EXPECT_EQ(rank(polygon), 1);
}

}  // namespace
