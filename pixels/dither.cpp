#include "pixels/dither.h"

#include <algorithm>

namespace zbuffer {

Dithered_Color::Dithered_Color(const Cube& cube, KT_RGB32 color) {
  const Channels scaled = cube.scaled(color);
  const Word red = as_word(scaled.red) << 8;
  const Word green = as_word(scaled.green) << 8;
  const Word blue = as_word(scaled.blue) << 8;

  struct Channel {
    std::int32_t fraction;
    std::uint8_t stride;
  };
  std::array<Channel, 3> order{{{static_cast<std::int32_t>(red & 0xFFFF), cube.red_stride},
                                {static_cast<std::int32_t>(green & 0xFFFF), cube.green_stride},
                                {static_cast<std::int32_t>(blue & 0xFFFF), cube.blue_stride}}};
  // Falling fractions; equal ones stay red before green before blue. A sort of three by hand,
  // since this runs for every triangle.
  const auto put_in_order = [&](std::size_t a, std::size_t b) {
    if (order[a].fraction < order[b].fraction) std::swap(order[a], order[b]);
  };
  put_in_order(0, 1);
  put_in_order(1, 2);
  put_in_order(0, 1);

  indices_[0] = cube.index(as_signed(red) >> 16, as_signed(green) >> 16, as_signed(blue) >> 16);
  for (std::size_t i = 0; i < 3; ++i) {
    limits_[i] = 65535 - order[i].fraction;
    indices_[i + 1] = static_cast<std::uint8_t>(indices_[i] + order[i].stride);
  }
}

}  // namespace zbuffer
