// Products of texels and factors, four at a time, against the formula for one.
#include <gtest/gtest.h>

#include <random>

#include "module/textures/inks.h"

namespace {

using namespace zbuffer;
using namespace zbuffer::textures;

const Word edge_factors[] = {0,      1,       127,   128,        255,        256,       65408,
                             65535,  65536,   65537, 65791,      65792,      131071,    0x7FFFFFFF,
                             0xFFFF, 0x1FF00, 65280, 0xFFFFFFFF, 0xFFFFFF00, 0xFFFFFEC8};

Word factor(std::mt19937& random) {
  switch (random() % 3) {
    case 0:
      return edge_factors[random() % std::size(edge_factors)];
    case 1:
      return static_cast<Word>(random() % 65792);
    default:
      return static_cast<Word>(random());
  }
}

TEST(Tint, ProductsOfFourAreThoseOfOne) {
  std::mt19937 random(3);
  const Modulated_Ink opaque(KT_RGB32{});
  const Modulated_Blended_Ink blended(KT_RGB32{});
  for (int round = 0; round < 200000; ++round) {
    Quad channels[4];
    Quad texels, old;
    const bool small = round % 2 == 0;  // all in the range that has a form of its own
    for (std::size_t i = 0; i < 4; ++i) {
      for (Quad& channel : channels) {
        channel[i] = small ? static_cast<Word>(random() % 65792) : factor(random);
      }
      texels[i] = static_cast<Word>(random());
      old[i] = static_cast<Word>(random());
      if (round % 5 == 0) texels[i] |= opaque_alpha;
      if (round % 7 == 0) channels[3][i] = 65536;
    }
    const Direct_Factors factors{channels[0], channels[1], channels[2], channels[3]};
    const Made<Quad> plain = opaque.make(texels, factors, old, nullptr);
    const Made<Quad> mixed = blended.make(texels, factors, old, nullptr);
    for (std::size_t i = 0; i < 4; ++i) {
      const Products products = factors.products(i, texels[i]);
      ASSERT_EQ(plain.color[i], opaque.make(products, old[i]).color) << round;
      const Made<Word> one = blended.make(products, old[i]);
      ASSERT_EQ(mixed.color[i], one.color) << round;
      ASSERT_EQ(mixed.alpha[i] == 0, one.alpha == 0) << round;
    }
  }
}

TEST(Tint, BlendedProductsAreNotClamped) {
  const Modulated_Blended_Ink ink(KT_RGB32{});
  const auto blue = [&](Word product, Word alpha, Word old) {
    return ink.make(Products{0, 0, product, alpha}, old).color & 255;
  };
  EXPECT_EQ(blue(0xFFFF, 100, 200), static_cast<Word>((-100 + 200 * 155) / 255));
  EXPECT_EQ(blue(0xFFFE, 254, 0), static_cast<Word>(-508 / 255) & 255);  // toward zero
  EXPECT_EQ(blue(300, 255, 9), 300u & 255);
  EXPECT_EQ(blue(10, 65535, 1), (10u * 65535 - (65535 - 255)) / 255 & 255);
}

TEST(Tint, SpanStepsRoundDownByShiftsAlone) {
  for (const int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 100, 255, 256, 1000}) {
    for (const int d : {-100000, -65536, -17, -1, 0, 1, 5, 65535, 2000000000, -2000000000}) {
      const bool shifts = n == 2 || n == 4 || n == 8;
      const int floor = d / n - (d % n < 0 ? 1 : 0);
      EXPECT_EQ(as_signed(Step_Count(n).span_step(d)), shifts ? floor : d / n) << d << " / " << n;
    }
  }
}

}  // namespace
