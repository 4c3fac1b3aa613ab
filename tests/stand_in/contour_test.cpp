// Contours: triangulation, clip masks, and whether a polygon may be cut as a strip.
#include "host/contour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "tests/support/random.h"

namespace {

using Contour = std::vector<KT_Point>;
using Contours = std::vector<Contour>;

KT_Contour_Set contour_set(const Contours& contours) {
  KT_Contour_Set set(0, nullptr, false);
  set->contours = contours;
  return set;
}

Contour box(float left, float bottom, float right, float top) {
  return {{left, bottom, 0}, {right, bottom, 0}, {right, top, 0}, {left, top, 0}};
}

Contour reversed(Contour contour) {
  std::reverse(contour.begin(), contour.end());
  return contour;
}

double z_of(const KT_Point& p) {
  return static_cast<double>(2 * p.x - 3 * p.y + 1);
}

/// The area that triangles add up to; their corners must have the depth of their place.
double triangulated_area(Contours contours) {
  for (Contour& contour : contours) {
    for (KT_Point& p : contour) p.z = static_cast<float>(z_of(p));
  }
  KT_Contour_Set set = contour_set(contours);
  set.writable().force_projection({0, 0, 1});
  double area = 0;
  const auto add = [](const KT_Point* a, const KT_Point* b, const KT_Point* c, void* sum) {
    const float cross = (b->x - a->x) * (c->y - a->y) - (b->y - a->y) * (c->x - a->x);
    *static_cast<double*>(sum) += static_cast<double>(std::abs(cross)) / 2;
    for (const KT_Point* p : {a, b, c}) EXPECT_NEAR(static_cast<double>(p->z), z_of(*p), 1e-4);
  };
  set->triangulate(add, &area);
  return area;
}

TEST(Triangulation, CoversTheInsideOnceAndCarriesZ) {
  const std::tuple<const char*, Contours, double> cases[] = {
      {"concave", {{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 2, 0}, {0, 10, 0}}}, 60},
      {"hole of the same winding", {box(0, 0, 10, 10), box(2, 2, 4, 5)}, 94},
      {"hole of the other winding", {box(0, 0, 10, 10), reversed(box(2, 2, 4, 5))}, 94},
      {"island in a hole", {box(0, 0, 10, 10), box(1, 1, 9, 9), box(3, 3, 5, 5)}, 40},
      {"overlap", {box(0, 0, 6, 6), box(4, 4, 10, 10)}, 36 + 36 - 2 * 4},
      {"crossing itself", {{{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}}}, 50},
      {"flat", {{{0, 0, 0}, {5, 5, 0}, {10, 10, 0}}}, 0},
  };
  for (const auto& [name, contours, area] : cases) {
    EXPECT_NEAR(triangulated_area(contours), area, 1e-4) << name;
  }
}

// A contour that stands upright has no area from above, but has one across its own normal.
TEST(Triangulation, ProjectsAsItIsToldAndLetsExceptionsThrough) {
  KT_Contour_Set upright = contour_set({{{0, 0, 0}, {4, 0, 0}, {4, 0, 3}, {0, 0, 3}}});
  const auto refuse = [](const KT_Point*, const KT_Point*, const KT_Point*, void*) {
    throw std::runtime_error("enough");
  };
  EXPECT_NO_THROW(upright->triangulate(refuse, nullptr));
  upright.writable().force_projection({0, 1, 0});
  EXPECT_THROW(upright->triangulate(refuse, nullptr), std::runtime_error);
}

// The rank is one where a strip would not cover the polygon, whatever the first point and the way
// round.
TEST(Polygon_Rank, IsZeroWhereAStripCoversThePolygon) {
  const float tip = 16777215;
  const std::tuple<const char*, Contour, int> cases[] = {
      {"points on edges",
       {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {2, 2, 0}, {0, 2, 0}, {0, 1, 0}},
       0},
      {"dent", {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}}, 1},
      {"bow tie", {{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 4, 0}}, 1},
      {"turns one way, but twice round",
       {{0, 10, 0}, {6, -8, 0}, {-9, 3, 0}, {9, 3, 0}, {-6, -8, 0}},
       1},
      {"spike", {{0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, 1},
      {"no number", {{0, 0, 0}, {1, 0, 0}, {NAN, 1, 0}}, 1},
      // In products of single precision the next two would be straight.
      {"bulge of one last place",
       {{0, 0, 0}, {tip - 1, tip - 2, 0}, {tip, tip, 0}, {0, tip, 0}},
       0},
      {"dent of one last place", {{0, 0, 0}, {tip - 2, tip - 1, 0}, {tip, tip, 0}, {0, tip, 0}}, 1},
  };
  for (auto [name, polygon, rank] : cases) {
    const auto count = static_cast<int>(polygon.size());
    for (int n = 0; n < count; ++n) {
      EXPECT_EQ(KD_Rank_Polygon(count, polygon.data()).rank, rank) << name;
      EXPECT_EQ(KD_Rank_Polygon(count, reversed(polygon).data()).rank, rank) << name;
      std::rotate(polygon.begin(), polygon.begin() + 1, polygon.end());
    }
  }
}

bool is_inside(const Contours& contours, double x, double y) {
  bool inside = false;
  for (const Contour& contour : contours) {
    for (std::size_t n = 0; n < contour.size(); ++n) {
      const KT_Point &a = contour[n], &b = contour[(n + 1) % contour.size()];
      const auto ax = static_cast<double>(a.x), ay = static_cast<double>(a.y);
      const auto bx = static_cast<double>(b.x), by = static_cast<double>(b.y);
      if ((ay > y) == (by > y)) continue;
      if (x < ax + (y - ay) / (by - ay) * (bx - ax)) inside = !inside;
    }
  }
  return inside;
}

/// Of pixel centres on a contour those of its left and bottom sides belong to it.
testing::AssertionResult hides_outside(Frame_Buffer_Mask& mask, const Contours& contours,
                                       const KT_Int_Rectangle& window) {
  const KT_Contour_Set set = contour_set(contours);
  const int width = window.right - window.left + 1, height = window.top - window.bottom + 1;
  mask.establish_configuration(width, height, window.left, window.bottom);
  mask.clear_and_rasterize_mask(set);
  for (int i = 0; i < width * height; ++i) {
    const int x = i % width, y = i / width;
    const bool hidden = (mask.image->rows[y][x / 8] & 128 >> x % 8) != 0;
    if (hidden == is_inside(contours, x + window.left + 1e-7, y + window.bottom + 1e-7)) {
      return testing::AssertionFailure() << "pixel (" << x << ", " << y << "): got " << hidden;
    }
  }
  return testing::AssertionSuccess();
}

TEST(Mask, HidesWhatPointTestsPutOutside) {
  Frame_Buffer_Mask mask;  // used again and again
  support::Random random(6);
  const auto place = [&](int from) { return static_cast<float>(from + random.real(-60, 140)); };
  for (int round = 0; round < 60; ++round) {
    // Sizes round the byte and word limits, and origins on both sides of zero.
    const int x = round * 3 - 90, y = 20 - round;
    Contours contours(1 + random.word() % 3);
    for (Contour& contour : contours) {
      contour.resize(3 + random.word() % 6);
      for (KT_Point& p : contour) p = {place(x), place(y), 0};
    }
    ASSERT_TRUE(hides_outside(mask, contours, {x, x + 59 + round % 9, y, y + 39 + round % 3}))
        << round;
  }
  EXPECT_TRUE(hides_outside(mask, {box(-1e6F, -1e6F, 1e6F, 1e6F)}, {0, 9, 0, 7}));
  // A contour with what is no number is none.
  mask.clear_and_rasterize_mask(contour_set({{{0, 0, 0}, {NAN, 5, 0}, {9, 9, 0}}}));
  EXPECT_EQ(mask.image->rows[0][0], 255);
}

TEST(Mask, ShowsAContourUpToItsLastColumn) {
  Frame_Buffer_Mask mask;
  mask.establish_configuration(10, 8, 0, 0);
  mask.clear_and_rasterize_mask(contour_set({box(2, 2, 9, 5)}));
  EXPECT_EQ(mask.image->rows[3][0], 0xC0);
  EXPECT_EQ(mask.image->rows[3][1] & 0xC0, 0x40);  // column 8, not column 9
}

}  // namespace
