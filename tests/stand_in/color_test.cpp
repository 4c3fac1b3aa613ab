// Palettes, the colour cube and the face patterns.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

#include "host/application.h"
#include "tests/support/random.h"

namespace {

int nearest_by_trial(const KT_Palette_Data& palette, const KT_RGB32& color) {
  int best = 0, least = INT32_MAX;
  for (int n = 0; n < palette.entry_count; ++n) {
    const KT_RGB32& entry = palette.entries[n].color;
    const int red = entry.red - color.red, green = entry.green - color.green;
    const int blue = entry.blue - color.blue;
    const int distance = red * red + green * green + blue * blue;
    if (distance < least) best = n, least = distance;
  }
  return best;
}

// More colours than can be remembered, some asked for again, and few enough different ones in a
// second round that nearly all are remembered.
TEST(Palette, FindsTheNearestEntryRememberedOrNot) {
  support::Random random(1);
  for (int count : {1, 2, 17, 256}) {
    std::vector<KT_RGB32> colors;
    for (int n = 0; n < count; ++n) colors.push_back(random.color());
    colors.back() = colors.front();  // a tie
    const KT_Palette palette(colors.data(), count, nullptr);

    std::vector<KT_RGB32> asked = {{0, 0, 0, 0}, {1, 0, 0, 255}, colors.front()};
    for (int n = 0; n < 6000; ++n) {
      const KT_RGB32 color = n % 3 == 0 ? asked[random.word() % asked.size()] : random.color();
      ASSERT_EQ(palette.closest_match(color, false), nearest_by_trial(*palette, color));
      asked.push_back(color);
    }
  }
}

TEST(Palette, ForgetsAnswersWhenItChanges) {
  const KT_RGB32 colors[2] = {{10, 10, 10, 255}, {200, 200, 200, 255}};
  KT_Palette palette(colors, 2, nullptr);
  const KT_RGB32 asked = {12, 12, 12, 255};
  EXPECT_EQ(palette.closest_match(asked, false), 0);

  const KT_Palette before = palette;
  palette.writable().entries[0].color = {255, 255, 255, 255};
  EXPECT_EQ(palette.closest_match(asked, false), 1);
  EXPECT_EQ(before.closest_match(asked, false), 0);

  palette.writable().entries[1].color = {255, 255, 255, 255};  // in place this time
  EXPECT_EQ(palette.closest_match(asked, false), 0);
}

// With any threshold, and with the rounding term that some routines put in. Averaged over the
// tile, a dithered colour is the colour.
TEST(Color_Cube, DitheredCoordinatesStayInTheCubeAndKeepTheMean) {
  for (int size = 2; size <= 6; ++size) {
    const KT_Color_Cube cube({size, size, size}, 1.0F, 0);
    for (int channel = 0; channel < 256; ++channel) {
      double sum = 0;
      for (const int threshold : SHARED.dither_table) {
        const int place = (channel * cube.red_scale << 8) + threshold;
        ASSERT_TRUE(place >= 0 && (place + 128) >> 16 < size);
        sum += place >> 16;
      }
      const double expected = channel * (size - 1) / 255.0;
      EXPECT_NEAR(sum / 64, expected, channel % 255 == 0 ? 0 : 0.04) << channel;
    }
  }
}

TEST(Face_Patterns, RampFromHolesToFull) {
  const auto& table = KORVEL.face_pattern_table;
  for (int pattern = 0; pattern <= 64; ++pattern) {
    int drawn = 64;
    for (int row = 0; row < 8; ++row) {
      drawn -= std::popcount(table[pattern][row]);
      EXPECT_EQ(table[pattern][row] & ~table[std::max(pattern - 1, 0)][row], 0);
    }
    EXPECT_EQ(drawn, pattern);
  }
}

}  // namespace
