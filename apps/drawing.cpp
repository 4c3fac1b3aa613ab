#include "apps/drawing.h"

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

KT_Contour_Set circle_in(const Size& window) {
  constexpr int corners = 180;
  const double radius = std::min(window.width, window.height) / 2.0;
  std::vector<KT_Point> circle;
  for (int i = 0; i < corners; ++i) {
    const double angle = 2 * std::numbers::pi * i / corners;
    circle.push_back({static_cast<float>(window.width / 2.0 + radius * std::cos(angle)),
                      static_cast<float>(window.height / 2.0 + radius * std::sin(angle)), 0});
  }
  return KT_Contour_Set(corners, circle.data(), false);
}

}  // namespace kv
