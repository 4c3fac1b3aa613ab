// Outcodes and the verdict on a list of points.
#include "host/clip.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "tests/support/random.h"

namespace {

constexpr short guard = 12345;

short outcode_of(const KT_Int_Rectangle& r, double x, double y) {
  return static_cast<short>((x < r.left ? 1 : 0) + (y > r.top ? 2 : 0) + (x > r.right ? 4 : 0) +
                            (y < r.bottom ? 8 : 0));
}

/// Checks codes and verdict of one list in both kinds of points.
void check_list(const KT_Int_Rectangle& rectangle, const std::vector<KT_DCI_Point>& points) {
  const int count = static_cast<int>(points.size());
  std::vector<KT_Point_D> doubles;
  int any = 0, common = 15;
  for (const KT_DCI_Point& p : points) {
    const int code = outcode_of(rectangle, p.x, p.y);
    any |= code;
    common &= code;
    doubles.push_back({static_cast<double>(p.x), static_cast<double>(p.y), 0});
  }
  std::vector<short> codes(points.size() + 1, guard), double_codes = codes;
  const int result = KD_Clip(rectangle, count, points.data(), codes.data());
  EXPECT_EQ(KD_Clip(rectangle, count, doubles.data(), double_codes.data()), result);
  EXPECT_EQ(double_codes, codes);

  for (std::size_t n = 0; n < points.size(); ++n) {
    ASSERT_EQ(codes[n], outcode_of(rectangle, points[n].x, points[n].y));
  }
  EXPECT_EQ(codes.back(), guard);
  if (any == 0) {
    EXPECT_EQ(result, count);
  } else if (common != 0) {
    EXPECT_EQ(result, 0);
  } else {
    EXPECT_NE(result, 0);
    EXPECT_NE(result, count);
  }
}

// All lengths round whole groups of points, with coordinates on the edges and beside them.
TEST(Clip, GivesCodesAndVerdictOfEveryLength) {
  support::Random random(2);
  const KT_Int_Rectangle rectangle = {-3, 3, -2, 5};
  for (int round = 0; round < 400; ++round) {
    std::vector<KT_DCI_Point> points(static_cast<std::size_t>(round % 14));
    const int reach = 1 + round % 9;
    for (KT_DCI_Point& p : points) {
      p = {random.range(-2, 2) + reach * (round % 3 - 1),
           random.range(-2, 4) + reach * (round / 3 % 3 - 1), 7};
    }
    check_list(rectangle, points);
  }
}

TEST(Clip, TakesCoordinatesToTheEndsOfTheirRange) {
  const KT_Int_Rectangle whole = {INT_MIN, INT_MAX, INT_MIN, INT_MAX};
  const std::vector<KT_DCI_Point> corners = {
      {INT_MIN, INT_MIN, 0}, {INT_MAX, INT_MIN, 0}, {INT_MIN, INT_MAX, 0}, {INT_MAX, INT_MAX, 0}};
  check_list(whole, corners);
  check_list({-1, 1, -1, 1}, corners);
}

TEST(Clip, NeverTakesWhatIsNoNumberForInside) {
  const KT_Point_D points[2] = {{0, 0, 0}, {std::nan(""), 0, 0}};
  short codes[2];
  EXPECT_EQ(KD_Clip({-1, 1, -1, 1}, 2, points, codes), -1);
  EXPECT_NE(codes[1], 0);
}

}  // namespace
