// Small arithmetic over its whole domain, or its edges and a great many others.
#include <gtest/gtest.h>

#include <limits>

#include "module/core/fixed_point.h"
#include "module/pixels/blend_255.h"
#include "tests/support/random.h"

namespace {

using namespace zbuffer;

/// A blend by its formula, and the alpha byte that `rule` leaves.
std::uint32_t plain_mix(std::uint32_t source, Alpha_Rule rule, std::uint32_t old) {
  const std::uint32_t a = source >> 24;
  const bool by_alpha = rule == Alpha_Rule::by_alpha || rule == Alpha_Rule::by_alpha_keeping;
  if (rule == Alpha_Rule::store || (by_alpha && a == 255)) return source;
  if (by_alpha && a == 0) return old;
  std::uint32_t result = rule == Alpha_Rule::by_alpha_keeping ? old & 0xFF000000u : 0xFF000000u;
  for (int shift = 0; shift < 24; shift += 8) {
    const std::uint32_t s = source >> shift & 255, p = old >> shift & 255;
    result |= (s * a + p * (255 - a)) / 255 << shift;
  }
  return result;
}

TEST(Arithmetic, DivisionBy255) {
  for (std::uint32_t x = 0; x <= 255 * 255; ++x) ASSERT_EQ(divided_by_255(x), x / 255) << x;
}

TEST(Arithmetic, BlendsAreTheFormula) {
  using enum Alpha_Rule;
  for (std::uint32_t i = 0; i < 256 * 256 * 4; ++i) {
    const std::uint32_t a = i >> 10, s = i >> 2 & 255;
    const std::uint32_t source = a << 24 | (s ^ 0x5A) << 16 | (255 - s) << 8 | s;
    const auto rule = static_cast<Alpha_Rule>(i & 3);
    const Constant_Blend_255 mix(source, rule);
    std::uint32_t old[9], run[9];
    for (std::uint32_t at = 0; at < 9; ++at) {
      const std::uint32_t p = (at * 31 + s) & 255;
      run[at] = old[at] = (p ^ 0x3C) << 24 | p << 16 | (at % 2 ? 255u : 0u) << 8 | (255 - p);
    }
    mix.run(run, static_cast<std::ptrdiff_t>(s % 10), source);
    for (std::uint32_t at = 0; at < 9; ++at) {
      const std::uint32_t expected = plain_mix(source, rule, old[at]);
      ASSERT_EQ(mix(old[at], source), expected) << std::hex << source << " over " << old[at];
      ASSERT_EQ(run[at], at < s % 10 ? expected : old[at]) << std::hex << source << " in a run";
      if (rule == by_alpha) {
        ASSERT_EQ(blended_by_source<by_alpha>(old[at], source), expected);
      }
      if (rule == by_alpha_keeping) {
        ASSERT_EQ(blended_by_source<by_alpha_keeping>(old[at], source), expected);
      }
    }
  }
}

/// The step by its definition: shifts for 1, 2, 4 and 8, else the wrapped product divided.
Word plain_step(std::int32_t d, std::int32_t n, int bits) {
  for (int less = 0; less < 4; ++less) {
    if (n == 1 << less) return as_word(d) << (bits - less);
  }
  return as_word(as_signed(as_word(d) << bits) / n);
}

bool right_steps(std::int32_t d, std::int32_t n) {
  const bool shifts = n == 2 || n == 4 || n == 8;  // these round down
  const std::int32_t floor = d / n - (d % n < 0 ? 1 : 0);
  return line_step(d, n) == plain_step(d, n, 16) && depth_step(d, n) == plain_step(d, n, 15) &&
         as_signed(Divisor(n).span_step(d)) == (shifts ? floor : d / n);
}

TEST(Arithmetic, StepsOverEdgeValuesAndRandomOnes) {
  std::vector<std::int32_t> edges = {0, 255, -255, 4000, 28760, -32759, 32759, -65535, 65535};
  for (int bit = 0; bit < 32; ++bit) {
    for (Word beside = 0; beside < 3; ++beside) {
      edges.push_back(as_signed((Word{1} << bit) + beside - 1));
      edges.push_back(as_signed(0 - (Word{1} << bit) - beside + 1));
    }
  }
  std::vector<std::int32_t> counts;
  for (const std::int32_t n : edges) {
    if (n > 0) counts.push_back(n);
  }
  for (int n = 1; n <= 600; ++n) counts.push_back(n);
  for (const std::int32_t n : counts) {
    for (const std::int32_t d : edges) ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
    for (Word q = 0; q < 240; ++q) {  // just beside whole quotients
      const std::int32_t d = as_signed((q / 3 - 40) * as_word(n) + q % 3 - 1);
      ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
    }
  }
  support::Random random(1);
  for (int i = 0; i < 3000000; ++i) {
    const auto n = static_cast<std::int32_t>(1 + (random.word() >> random.range(2, 31)));
    const std::int32_t d = as_signed(random.word()) >> random.range(0, 19);
    ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
  }
  EXPECT_EQ(line_step(-5, 0), as_word(-5));
  EXPECT_EQ(depth_step(7, 0), 7u);
}

TEST(Arithmetic, SmallStepsOverTheirDomain) {
  std::vector<std::int32_t> counts = {600, 1023, 1024, 1025, 4097, 12345, 28760, 32760, 65535};
  for (int n = 1; n <= 100; ++n) counts.push_back(n);
  for (const std::int32_t n : counts) {
    const Divisor count(n);
    for (std::int32_t d = -65535; d <= 65535; ++d) {
      const bool position_right =
          d < -32767 || d > 32767 || count.small_step<Position>(d) == plain_step(d, n, 16);
      ASSERT_TRUE(position_right && count.small_step<Depth>(d) == plain_step(d, n, 15))
          << d << " over " << n;
    }
  }
}

TEST(Arithmetic, RoundingOfCoordinates) {
  const std::pair<double, std::int32_t> cases[] = {
      {-0.5, 0},      {-1.5, -1},          {0.5, 1},         {-0.4, 0},         {2.5, 3},
      {-2.5, -2},     {2.49, 2},           {-0.0, 0},        {-2.51, -3},       {0, 0},
      {1e6, 1000000}, {-28760.75, -28761}, {3e9, INT32_MIN}, {-3e9, INT32_MIN}, {1e300, INT32_MIN}};
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(rounded(value), expected) << value;
    EXPECT_EQ(rounded(static_cast<float>(value)), expected) << value;
  }
  // The float sum is in single precision: half of an odd 2^23 rounds to even.
  EXPECT_EQ(rounded(8388609.0f), 8388610);
  EXPECT_EQ(rounded(8388609.0), 8388609);
  EXPECT_EQ(rounded(2147483647.25), 2147483647);
  EXPECT_EQ(rounded(std::numeric_limits<float>::quiet_NaN()), INT32_MIN);
}

}  // namespace
