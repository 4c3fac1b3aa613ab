// The blend of dots, markers and the pixels of lines, in 256ths.
//
//   new = d + ((s - d) * alpha_scale[a] >> 8)     per channel, rounded down
//
// A factor of 256 gives the source itself and a factor of 0 the old pixel, so that the ends of the
// alpha range need no test.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/types.h"
#include "module/pixels/blend_255.h"

namespace zbuffer {

/// a * 256 / 255, truncated: all stay but 255, which becomes 256.
inline constexpr std::array<std::uint32_t, 256> alpha_scale = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t a = 0; a < 256; ++a) table[a] = a * 256 / 255;
  return table;
}();

/// `source` and `old` by a factor from 0 to 256, in blue, green and red at once; alpha becomes 255.
///
/// The same as (source * factor + old * (256 - factor)) >> 8, where no channel's sum reaches the
/// next one: at most 255 * 256.
constexpr std::uint32_t mixed_256(std::uint32_t old, std::uint32_t source, std::uint32_t factor) {
  constexpr std::uint32_t inner = 0x00FF00;
  const std::uint32_t rest = 256 - factor;
  return opaque_alpha |
         (((source & outer_channels) * factor + (old & outer_channels) * rest) >> 8 &
          outer_channels) |
         (((source & inner) * factor + (old & inner) * rest) >> 8 & inner);
}

/// A single pixel blended by the alpha byte of `color`.
constexpr std::uint32_t blended_256(std::uint32_t old, std::uint32_t color) {
  return mixed_256(old, color, alpha_scale[alpha_of(color)]);
}

/// A constant colour by its alpha.
struct Constant_Blend_256 {
  static constexpr bool branch_free = true;

  std::uint32_t factor = 0;

  void take(KT_RGB32 color) { factor = alpha_scale[color.alpha]; }
  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return mixed_256(old, source, factor);
  }
};

/// Colours, each by its own alpha.
struct Source_Blend_256 {
  static constexpr bool branch_free = true;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return blended_256(old, source);
  }
};

}  // namespace zbuffer
