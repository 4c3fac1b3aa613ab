// Clip masks against point tests.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "host/contour.h"
#include "tests/support/random.h"

namespace {

using Contour = std::vector<KT_Point>;

KT_Contour_Set contour_set(const std::vector<Contour>& contours) {
  KT_Contour_Set set(0, nullptr, false);
  set->contours = contours;
  return set;
}

bool is_hidden(const Frame_Buffer_Mask& mask, int x, int y) {
  return (mask.image->rows[y][x / 8] & 128 >> x % 8) != 0;
}

bool is_inside(const std::vector<Contour>& contours, double x, double y) {
  bool inside = false;
  for (const Contour& contour : contours) {
    for (std::size_t n = 0; n < contour.size(); ++n) {
      const KT_Point& a = contour[n];
      const KT_Point& b = contour[(n + 1) % contour.size()];
      const double ax = static_cast<double>(a.x), ay = static_cast<double>(a.y);
      const double bx = static_cast<double>(b.x), by = static_cast<double>(b.y);
      if ((ay > y) == (by > y)) continue;
      if (x < ax + (y - ay) / (by - ay) * (bx - ax)) inside = !inside;
    }
  }
  return inside;
}

TEST(Mask, HidesWhatPointTestsPutOutside) {
  support::Random random(6);
  const auto place = [&](int from) { return static_cast<float>(from + random.real(-60, 140)); };
  Frame_Buffer_Mask mask;
  for (int round = 0; round < 60; ++round) {
    // Sizes round the byte and word limits, and origins on both sides of zero.
    const int width = 60 + round % 9, height = 40 + round % 3;
    const int x = round * 3 - 90, y = 20 - round;
    std::vector<Contour> contours(1 + random.word() % 3);
    for (Contour& contour : contours) {
      contour.resize(3 + random.word() % 6);
      for (KT_Point& p : contour) p = {place(x), place(y), 0};
    }
    const KT_Contour_Set set = contour_set(contours);
    ASSERT_EQ(mask.establish_configuration(width, height, x, y), 1);
    mask.clear_and_rasterize_mask(set);
    ASSERT_EQ(mask.contour_id, set->id);
    ASSERT_GE(mask.image->row_bytes, (width + 7) / 8);
    for (int row = 0; row < height; ++row) {
      for (int column = 0; column < width; ++column) {
        ASSERT_EQ(is_hidden(mask, column, row), !is_inside(contours, column + x, row + y))
            << "round " << round << " at " << column << ", " << row;
      }
    }
  }
}

// Pixel centres on the contour: the left and bottom sides belong to it, as with triangles.
TEST(Mask, NeighbouringContoursShareNoPixel) {
  const KT_Contour_Set box = contour_set({{{3, 2, 0}, {7, 2, 0}, {7, 5, 0}, {3, 5, 0}}});
  Frame_Buffer_Mask mask;
  mask.establish_configuration(10, 8, 0, 0);
  mask.clear_and_rasterize_mask(box);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 10; ++x) {
      EXPECT_EQ(is_hidden(mask, x, y), !(x >= 3 && x < 7 && y >= 2 && y < 5)) << x << ", " << y;
    }
  }
}

TEST(Mask, IsDoneAnewEachTime) {
  const Contour whole = {{-1e6F, -1e6F, 0}, {1e6F, -1e6F, 0}, {1e6F, 1e6F, 0}, {-1e6F, 1e6F, 0}};
  Frame_Buffer_Mask mask;
  mask.establish_configuration(20, 4, 0, 0);
  mask.clear_and_rasterize_mask(contour_set({whole}));
  EXPECT_FALSE(is_hidden(mask, 19, 3));
  const std::uint32_t old_id = mask.image->id;
  mask.clear_and_rasterize_mask(contour_set({{{0, 0, 0}, {NAN, 5, 0}, {9, 9, 0}}}));
  EXPECT_TRUE(is_hidden(mask, 0, 0));
  EXPECT_TRUE(is_hidden(mask, 19, 3));
  EXPECT_NE(mask.image->id, old_id);
}

}  // namespace
