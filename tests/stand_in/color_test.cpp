#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <set>
#include <vector>

#include "host/application.h"

namespace {

KT_RGB32 random_color(std::mt19937& random) {
  return KT_RGB32::from_word(static_cast<std::uint32_t>(random()));
}

int squared_distance(const KT_RGB32& a, const KT_RGB32& b) {
  const int red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
  return red * red + green * green + blue * blue;
}

int nearest_by_trial(const KT_Palette_Data& palette, const KT_RGB32& color) {
  int best = 0;
  for (int n = 1; n < palette.entry_count; ++n) {
    if (squared_distance(palette.entries[n].color, color) <
        squared_distance(palette.entries[best].color, color)) {
      best = n;
    }
  }
  return best;
}

// More colours than can be remembered, some asked for again, and few enough different ones in a
// second round that nearly all are remembered.
TEST(Palette, FindsTheNearestEntryRememberedOrNot) {
  std::mt19937 random(1);
  for (int count : {1, 2, 17, 256}) {
    std::vector<KT_RGB32> colors;
    for (int n = 0; n < count; ++n) colors.push_back(random_color(random));
    colors.back() = colors.front();  // a tie
    const KT_Palette palette(colors.data(), count, nullptr);

    std::vector<KT_RGB32> asked = {{0, 0, 0, 0}, {1, 0, 0, 255}, colors.front()};
    for (int n = 0; n < 6000; ++n) {
      asked.push_back(n % 3 == 0 ? asked[random() % asked.size()] : random_color(random));
    }
    for (const KT_RGB32& color : asked) {
      ASSERT_EQ(palette.closest_match(color, false), nearest_by_trial(*palette, color));
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

int cube_coordinate(int channel, int scale, int threshold) {
  return ((channel * scale << 8) + threshold) >> 16;
}

// With any threshold, and with the rounding term that some routines put in.
TEST(Color_Cube, DitheredCoordinatesStayInTheCubeAndEndsArePure) {
  for (int size = 2; size <= 6; ++size) {
    const KT_Color_Cube cube({size, size, size}, 1.0F, 0);
    for (const int threshold : SHARED.dither_table) {
      for (int channel = 0; channel < 256; ++channel) {
        const int coordinate = cube_coordinate(channel, cube.red_scale, threshold + 128);
        ASSERT_GE(coordinate, 0);
        ASSERT_LT(coordinate, size);
      }
      ASSERT_EQ(cube_coordinate(0, cube.red_scale, threshold), 0);
      ASSERT_EQ(cube_coordinate(255, cube.red_scale, threshold), size - 1);
    }
  }
}

TEST(Color_Cube, IndexesThePaletteItIsPartOf) {
  const KT_Palette palette = KD_Cube_Palette();
  const KT_Color_Cube& cube = *palette->color_cube;
  ASSERT_EQ(palette->entry_count, 256);
  std::set<std::uint32_t> different;
  for (int n = 0; n < 256; ++n) different.insert(palette->entries[n].color.word());
  EXPECT_EQ(different.size(), 256U);

  for (int red = 0; red < 6; ++red) {
    for (int green = 0; green < 6; ++green) {
      for (int blue = 0; blue < 6; ++blue) {
        const int index = cube.base_index + red * cube.red_stride + green * cube.green_stride +
                          blue * cube.blue_stride;
        const KT_RGB32& color = palette->entries[index].color;
        EXPECT_EQ(cube_coordinate(color.red, cube.red_scale, 32768), red);
        EXPECT_EQ(cube_coordinate(color.green, cube.green_scale, 32768), green);
        EXPECT_EQ(cube_coordinate(color.blue, cube.blue_scale, 32768), blue);
      }
    }
  }
}

// Averaged over the tile, a dithered colour is the colour.
TEST(Color_Cube, DitherKeepsTheMean) {
  const KT_Color_Cube cube({6, 6, 6}, 1.0F, 0);
  for (int channel = 0; channel < 256; ++channel) {
    double sum = 0;
    for (const int threshold : SHARED.dither_table) {
      sum += cube_coordinate(channel, cube.red_scale, threshold);
    }
    EXPECT_NEAR(sum / 64, channel * 5.0 / 255, 0.04) << channel;
  }
}

TEST(Face_Patterns, RampFromHolesToFull) {
  const auto holes = [](int pattern, int row) {
    return static_cast<unsigned>(KORVEL.face_pattern_table[pattern][row]);
  };
  for (int pattern = 0; pattern <= 64; ++pattern) {
    int drawn = 64;
    for (int row = 0; row < 8; ++row) {
      drawn -= std::popcount(holes(pattern, row));
      if (pattern == 0) continue;
      EXPECT_EQ(holes(pattern, row) & ~holes(pattern - 1, row), 0U);
    }
    EXPECT_EQ(drawn, pattern);
  }
}

TEST(Face_Patterns, HatchesAreDifferentAndLieAsTheyShould) {
  std::set<std::vector<std::uint8_t>> different;
  for (int pattern = 0; pattern < 74; ++pattern) {
    const std::uint8_t* const bits = KORVEL.face_pattern_table[pattern];
    different.insert(std::vector<std::uint8_t>(bits, bits + 8));
  }
  EXPECT_EQ(different.size(), 74U);

  const auto is_drawn = [](int pattern, int x, int y) {
    return (KORVEL.face_pattern_table[pattern][y] >> x & 1) == 0;
  };
  for (int n = 0; n < 8; ++n) {
    EXPECT_TRUE(is_drawn(65, n, 7));  // horizontal
    EXPECT_TRUE(is_drawn(66, 0, n));  // vertical
    EXPECT_TRUE(is_drawn(67, n, n));  // rising: y is up
    EXPECT_TRUE(is_drawn(68, n, 7 - n));
  }
}

}  // namespace
