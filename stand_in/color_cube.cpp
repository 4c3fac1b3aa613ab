// The colour cube, and the palette that is built round the usual one.
#include <array>

#include "host/application.h"
#include "host/color.h"

namespace {

// Channel byte * scale has 8 fraction bits. Rounded down, so that not even the highest dither
// threshold lifts a full channel beyond the top step; what 255 falls short by, the thresholds
// make up.
std::int32_t channel_scale(std::int32_t steps) {
  return (steps - 1) * 256 / 255;
}

constexpr int steps = 6;
constexpr int cube_colors = steps * steps * steps;
constexpr int palette_size = 256;

std::uint8_t level(int step) {
  return static_cast<std::uint8_t>(step * 255 / (steps - 1));
}

}  // namespace

// Dithering is linear in the channel, so the gamma has nothing to act on.
KT_Color_Cube::KT_Color_Cube(KT_Int_RGB sizes, float, int base)
    : base_index(base),
      red_stride(sizes.green * sizes.blue),
      green_stride(sizes.blue),
      blue_stride(1),
      red_scale(channel_scale(sizes.red)),
      green_scale(channel_scale(sizes.green)),
      blue_scale(channel_scale(sizes.blue)) {}

KT_Palette KD_Cube_Palette() {
  std::array<KT_RGB32, palette_size> colors;
  std::size_t next = 0;
  for (int red = 0; red < steps; ++red) {
    for (int green = 0; green < steps; ++green) {
      for (int blue = 0; blue < steps; ++blue) {
        colors[next++] = {level(blue), level(green), level(red), 255};
      }
    }
  }
  // The cube has black and white; the ramp divides what lies between.
  constexpr int greys = palette_size - cube_colors;
  for (int grey = 1; grey <= greys; ++grey) {
    const auto value = static_cast<std::uint8_t>(grey * 255 / (greys + 1));
    colors[next++] = {value, value, value, 255};
  }
  const KT_Color_Cube cube({steps, steps, steps}, 1.0F, 0);
  return KT_Palette(colors.data(), palette_size, &cube);
}
