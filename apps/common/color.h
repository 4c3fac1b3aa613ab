// A colour as users and models mean it.
#pragma once

namespace kv {

// Components from 0 to 1, as shown on the display (not linear light).
struct Color {
  float red = 1, green = 1, blue = 1, alpha = 1;
};

constexpr Color operator*(const Color& a, const Color& b) {
  return {a.red * b.red, a.green * b.green, a.blue * b.blue, a.alpha * b.alpha};
}

}  // namespace kv
