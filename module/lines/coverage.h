// How strongly antialiased lines cover pixels, and the blend of such pixels.
#pragma once

#include <array>
#include <cstdint>

#include "module/pixels/blend_256.h"

namespace zbuffer::lines {

/// Weight in 256ths by distance from the line in 1/256 pixel: falling straight, 0 from 313 on.
inline constexpr std::array<std::uint16_t, 512> coverage_table = [] {
  std::array<std::uint16_t, 512> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double weight = 256 - 0.81793 * static_cast<double>(i);
    table[i] = weight > 0 ? static_cast<std::uint16_t>(weight + 0.5) : std::uint16_t{0};
  }
  return table;
}();

/// Weights of the pixel nearest to a line and of those beside it.
struct Weights {
  std::uint32_t before;
  std::uint32_t nearest;
  std::uint32_t after;
};

/// Of a line that passes through the middle of pixels.
inline constexpr Weights exact_weights = {coverage_table[256], coverage_table[0],
                                          coverage_table[256]};
static_assert(exact_weights.nearest == 256 && exact_weights.before == 47);

/// A colour without transparency.
struct Opaque_Coverage {
  std::uint32_t color;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t weight) const {
    return mixed_256(old, color, weight);
  }
};

/// A colour with its alpha: as above, with 16 fraction bits. Blue and red go in one word of
/// 64 bits, 32 each.
class Alpha_Coverage {
 public:
  explicit Alpha_Coverage(std::uint32_t color)
      : outer_(spread(color)), green_(byte_of(color, 1)), scale_(alpha_scale[alpha_of(color)]) {}

  std::uint32_t operator()(std::uint32_t old, std::uint32_t weight) const {
    const std::uint32_t w = weight * scale_;
    const std::uint32_t rest = 65536 - w;
    const std::uint64_t outer = (outer_ * w + spread(old) * rest) >> 16;
    const std::uint32_t green = (green_ * w + byte_of(old, 1) * rest) >> 16;
    return opaque_alpha | static_cast<std::uint32_t>((outer >> 16) & 0xFF0000) | green << 8 |
           static_cast<std::uint32_t>(outer & 0xFF);
  }

 private:
  static std::uint64_t spread(std::uint32_t color) {
    return (color & 0xFFu) | std::uint64_t{color & 0xFF0000u} << 16;
  }

  std::uint64_t outer_;
  std::uint32_t green_;
  std::uint32_t scale_;
};

}  // namespace zbuffer::lines
