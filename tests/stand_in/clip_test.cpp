// Outcodes and the verdict on a list of points.
#include "host/clip.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "tests/support/random.h"

namespace {

/// Checks codes and verdict of one list in both kinds of points.
void check_list(const KT_Int_Rectangle& r, const std::vector<KT_DCI_Point>& points) {
  const int count = static_cast<int>(points.size());
  std::vector<KT_Point_D> doubles;
  std::vector<short> expected;
  int any = 0, common = 15;
  for (const KT_DCI_Point& p : points) {
    const int code = (p.x < r.left ? 1 : 0) + (p.y > r.top ? 2 : 0) + (p.x > r.right ? 4 : 0) +
                     (p.y < r.bottom ? 8 : 0);
    any |= code;
    common &= code;
    expected.push_back(static_cast<short>(code));
    doubles.push_back({static_cast<double>(p.x), static_cast<double>(p.y), 0});
  }
  expected.push_back(12345);  // a guard
  std::vector<short> codes(expected.size(), 12345), double_codes = codes;
  const int result = KD_Clip(r, count, points.data(), codes.data());
  EXPECT_EQ(KD_Clip(r, count, doubles.data(), double_codes.data()), result);
  EXPECT_EQ(codes, expected);
  EXPECT_EQ(double_codes, expected);
  EXPECT_EQ(result == count, any == 0);
  if (any != 0) {
    EXPECT_EQ(result == 0, common != 0);
  }
}

// All lengths round whole groups of points, with coordinates on the edges and beside them.
TEST(Clip, GivesCodesAndVerdictOfEveryLength) {
  support::Random random(2);
  for (int round = 0; round < 400; ++round) {
    std::vector<KT_DCI_Point> points(static_cast<std::size_t>(round % 14));
    const int reach = 1 + round % 9;
    for (KT_DCI_Point& p : points) {
      p = {random.range(-2, 2) + reach * (round % 3 - 1),
           random.range(-2, 4) + reach * (round / 3 % 3 - 1), 7};
    }
    check_list({-3, 3, -2, 5}, points);
  }
  const std::vector<KT_DCI_Point> corners = {
      {INT_MIN, INT_MIN, 0}, {INT_MAX, INT_MIN, 0}, {INT_MIN, INT_MAX, 0}, {INT_MAX, INT_MAX, 0}};
  check_list({INT_MIN, INT_MAX, INT_MIN, INT_MAX}, corners);
  check_list({-1, 1, -1, 1}, corners);
}

TEST(Clip, NeverTakesWhatIsNoNumberForInside) {
  const KT_Point_D points[2] = {{0, 0, 0}, {std::nan(""), 0, 0}};
  short codes[2];
  EXPECT_EQ(KD_Clip({-1, 1, -1, 1}, 2, points, codes), -1);
  EXPECT_NE(codes[1], 0);
}

}  // namespace
