// Dithering of a constant colour: its four candidate indices, and rows of eight indices made on
// first use. Rows are buffer rows, columns are pixel addresses, both by their low three bits.
#include "module/pixels/dither.h"

#include <algorithm>
#include <cstring>

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
    limits_[i] = static_cast<std::uint16_t>(65535 - order[i].fraction);
    indices_[i + 1] = static_cast<std::uint8_t>(indices_[i] + order[i].stride);
  }
}

// Eight thresholds at once; the candidate of the first limit that is greater wins.
void Dithered_Color::make_row(std::size_t y) const {
  using Shorts __attribute__((vector_size(16))) = std::uint16_t;
  using Bytes __attribute__((vector_size(8))) = std::uint8_t;
  Shorts thresholds;
  std::memcpy(&thresholds, &SHARED.dither_table[y * 8], sizeof thresholds);
  Shorts found = Shorts{} + indices_[3];
  for (std::size_t i = 3; i-- > 0;) {
    found = thresholds < limits_[i] ? Shorts{} + indices_[i] : found;
  }
  const Bytes bytes = __builtin_convertvector(found, Bytes);
  std::memcpy(&rows_[y], &bytes, sizeof bytes);
  rows_made_ = static_cast<std::uint8_t>(rows_made_ | (1u << y));
}

}  // namespace zbuffer
