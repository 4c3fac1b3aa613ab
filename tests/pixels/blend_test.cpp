// The two blends over their whole domain, against the formulas as they are written down.
#include <gtest/gtest.h>

#include "host/types.h"
#include "module/pixels/alpha_scale.h"
#include "module/pixels/quad.h"

namespace {

using namespace zbuffer;

TEST(Blend, OfSinglePixelsRoundsDown) {
  for (int a = 0; a < 256; ++a) {
    const int scale = a * 256 / 255;
    for (int old = 0; old < 256; ++old) {
      for (int source = 0; source < 256; ++source) {
        const int product = (source - old) * scale;
        const int floor = product >= 0 ? product / 256 : -((255 - product) / 256);
        const KT_RGB32 before{static_cast<std::uint8_t>(old), 9, static_cast<std::uint8_t>(source),
                              1};
        const KT_RGB32 color{static_cast<std::uint8_t>(source), 9, static_cast<std::uint8_t>(old),
                             static_cast<std::uint8_t>(a)};
        const KT_RGB32 got = KT_RGB32::from_word(blended_pixel(before.word(), color.word()));
        ASSERT_EQ(got.blue, old + floor) << a << ' ' << old << ' ' << source;
        ASSERT_EQ(got.green, 9);
        ASSERT_EQ(got.alpha, 255);
      }
    }
  }
}

TEST(Blend, OfFourPixelsFollowsEachAlpha) {
  for (std::uint32_t a = 0; a < 256; ++a) {
    for (std::uint32_t old = 0; old < 256; ++old) {
      for (std::uint32_t source = 0; source < 256; ++source) {
        const std::uint32_t mixed = (old * (255 - a) + source * a) / 255;
        const std::uint32_t swapped = (source * (255 - a) + old * a) / 255;
        const std::uint32_t alpha = a == 0 ? 0x4D : 255;
        const Quad before{old | 0x4D000000u, (old << 8) | 0x4D000000u, (old << 16) | 0x4D000000u,
                          source | 0x4D000000u};
        const Quad from = Quad{source, source << 8, source << 16, old} | (a << 24);
        const Quad got = blended_by_source(before, from);
        for (int i = 0; i < 4; ++i) {
          const std::uint32_t channel = i < 3 ? mixed << (8 * i) : swapped;
          ASSERT_EQ(got[i], channel | (alpha << 24)) << a << ' ' << old << ' ' << source;
        }
      }
    }
  }
}

}  // namespace
