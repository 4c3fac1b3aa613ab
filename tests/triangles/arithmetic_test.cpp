// Small arithmetic over its whole domain, or its edges and a great many others.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/fixed_point.h"
#include "pixels/blend.h"
#include "pixels/mask.h"

namespace {

using namespace zbuffer;

TEST(Arithmetic, DivisionBy255) {
  for (std::uint32_t x = 0; x <= 255 * 255; ++x) {
    ASSERT_EQ(divided_by_255(x), x / 255) << x;
    ASSERT_EQ(divided_by_255(static_cast<std::uint16_t>(x)), x / 255) << x;
  }
}

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

TEST(Arithmetic, MixIsTheFormula) {
  using enum Alpha_Rule;
  for (std::uint32_t a = 0; a < 256; ++a) {
    for (std::uint32_t s = 0; s < 256; ++s) {
      const std::uint32_t source = a << 24 | (s ^ 0x5A) << 16 | (255 - s) << 8 | s;
      std::uint32_t old[9];
      for (std::uint32_t i = 0; i < 9; ++i) {
        const std::uint32_t p = (i * 31 + s) & 255;
        old[i] = (p ^ 0x3C) << 24 | p << 16 | (i % 2 ? 255u : 0u) << 8 | (255 - p);
      }
      for (const Alpha_Rule rule : {store, blend, by_alpha, by_alpha_keeping}) {
        const Mix mix(source, rule);
        std::uint32_t run[9];
        std::copy_n(old, 9, run);
        const auto length = static_cast<std::ptrdiff_t>(s % 10);
        mix.run(run, length);
        for (std::uint32_t i = 0; i < 9; ++i) {
          const std::uint32_t expected = plain_mix(source, rule, old[i]);
          ASSERT_EQ(mix(old[i]), expected) << std::hex << source << " over " << old[i];
          ASSERT_EQ(run[i], i < length ? expected : old[i]) << std::hex << source;
          if (rule == by_alpha) {
            ASSERT_EQ(blended_by_source<by_alpha>(old[i], source), a == 255 ? source : expected);
          }
          if (rule == by_alpha_keeping) {
            ASSERT_EQ(blended_by_source<by_alpha_keeping>(old[i], source), expected);
          }
        }
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
  const Step_Count count(n);
  return count.line_step(d) == plain_step(d, n, 16) && line_step(d, n) == plain_step(d, n, 16) &&
         count.depth_step(d) == plain_step(d, n, 15) && depth_step(d, n) == plain_step(d, n, 15);
}

TEST(Arithmetic, StepsOverEdgeValuesAndRandomOnes) {
  std::vector<std::int32_t> edges = {0};
  for (int bit = 0; bit < 32; ++bit) {
    for (const std::int32_t beside : {-1, 0, 1}) {
      edges.push_back(as_signed((Word{1} << bit) + as_word(beside)));
      edges.push_back(as_signed(0 - ((Word{1} << bit) + as_word(beside))));
    }
  }
  for (const std::int32_t far : {255, 28760, 32759, 32760, 32761, 4000, 65535}) {
    edges.insert(edges.end(), {far, -far});
  }
  std::vector<std::int32_t> counts;
  for (int n = 1; n <= 600; ++n) counts.push_back(n);
  for (const std::int32_t edge : edges) {
    if (edge > 0) counts.push_back(edge);
  }
  for (const std::int32_t n : counts) {
    for (const std::int32_t d : edges) ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
    // Just beside whole quotients.
    for (std::int32_t q = -40; q <= 40; ++q) {
      for (const std::int32_t beside : {-1, 0, 1}) {
        const std::int32_t d = as_signed(as_word(q) * as_word(n) + as_word(beside));
        ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
      }
    }
  }
  std::mt19937 random(1);
  for (int i = 0; i < 3000000; ++i) {
    const int bits = static_cast<int>(random() % 31);
    const auto n = std::max(1, static_cast<std::int32_t>(random() & ((2u << bits) - 1)));
    const std::int32_t d = as_signed(static_cast<Word>(random())) >> random() % 20;
    ASSERT_TRUE(right_steps(d, n)) << d << " over " << n;
  }
  EXPECT_EQ(line_step(-5, 0), as_word(-5));
  EXPECT_EQ(depth_step(7, 0), 7u);
}

TEST(Arithmetic, SmallStepsOverTheirDomain) {
  std::vector<std::int32_t> counts = {600, 1023, 1024, 1025, 4097, 12345, 28760, 32760, 65535};
  for (int n = 1; n <= 100; ++n) counts.push_back(n);
  for (const std::int32_t n : counts) {
    const Step_Count count(n);
    for (std::int32_t d = -65535; d <= 65535; ++d) {
      const bool position_right =
          d < -32767 || d > 32767 || count.small_step<Position>(d) == plain_step(d, n, 16);
      const bool depth_right = count.small_step<Depth>(d) == plain_step(d, n, 15);
      ASSERT_TRUE(position_right && depth_right) << d << " over " << n;
    }
  }
}

TEST(Arithmetic, RoundingOfCoordinates) {
  const std::pair<double, std::int32_t> cases[] = {
      {-0.5, 0},   {-1.5, -1}, {0.5, 1}, {-0.4, 0}, {2.5, 3},       {-2.5, -2},
      {-2.51, -3}, {2.49, 2},  {0, 0},   {-0.0, 0}, {1e6, 1000000}, {-28760.75, -28761}};
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(rounded(value), expected) << value;
    EXPECT_EQ(rounded(static_cast<float>(value)), expected) << value;
  }
  // The float sum is in single precision: half of an odd 2^23 rounds to even.
  EXPECT_EQ(rounded(8388609.0f), 8388610);
  EXPECT_EQ(rounded(8388609.0), 8388609);
  for (const double far :
       {2147483648.0, 3e9, -2147483649.0, -1e300, std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(rounded(far), INT32_MIN) << far;
    EXPECT_EQ(rounded(static_cast<float>(far)), INT32_MIN) << far;
  }
  EXPECT_EQ(rounded(2147483647.25), 2147483647);
}

TEST(Arithmetic, BitCursorMoves) {
  const std::uint8_t bytes[64] = {};
  const auto place = [&](const Bit_Cursor& c) { return (c.byte - bytes) * 8 + c.bit; };
  for (int start = 200; start < 216; ++start) {
    const Bit_Cursor from{bytes + start / 8, start % 8};
    for (int n = -150; n <= 150; ++n) {
      Bit_Cursor moved = from;
      advance(moved, n);
      ASSERT_EQ(place(moved), start + n);
      ASSERT_TRUE(moved.bit >= 0 && moved.bit < 8);
      ASSERT_EQ(place(offset(from, n)), start + n);
    }
    Bit_Cursor cursor = from;
    EXPECT_EQ(place(post_increment(cursor)), start);
    EXPECT_EQ(place(cursor), start + 1);
    EXPECT_EQ(place(post_decrement(cursor)), start + 1);
    EXPECT_EQ(place(post_decrement(cursor)), start);
    EXPECT_EQ(place(cursor), start - 1);
  }
  const std::uint8_t one_bit = 0x20;
  for (int bit = 0; bit < 8; ++bit) EXPECT_EQ((Bit_Cursor{&one_bit, bit}.hidden()), bit == 2);
}

}  // namespace
