// Palettes of the mapped variants.
#include "apps/draw/drawing.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "host/application.h"

namespace kv {

KT_Palette cube_palette(int steps) {
  if (steps == 6) return KD_Cube_Palette();
  const auto channel = [&](int step) {
    return static_cast<std::uint8_t>(step * 255 / (steps - 1));
  };
  std::vector<KT_RGB32> colors;
  for (int red = 0; red < steps; ++red) {
    for (int green = 0; green < steps; ++green) {
      for (int blue = 0; blue < steps; ++blue)
        colors.push_back({channel(blue), channel(green), channel(red), 255});
    }
  }
  const KT_Color_Cube cube({steps, steps, steps}, 1.0f, 0);
  return KT_Palette(colors.data(), static_cast<std::int32_t>(colors.size()), &cube);
}

}  // namespace kv
