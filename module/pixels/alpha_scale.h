// The blend of single pixels, in 256ths: dots, markers and the pixels of lines.
//
//   new = old + ((src - old) * alpha_scale[a] >> 8)     per channel, rounded down
//
// A factor of 256 gives the source itself and a factor of 0 the old pixel, so that the ends of the
// alpha range need no test.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "module/pixels/blend.h"

namespace zbuffer {

/// a * 256 / 255, truncated: all stay but 255, which becomes 256.
inline constexpr std::array<std::uint32_t, 256> alpha_scale = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t a = 0; a < 256; ++a) table[a] = a * 256 / 255;
  return table;
}();

/// One channel (0 to 255) by a factor of `alpha_scale`.
constexpr std::uint32_t blended_channel(std::uint32_t old, std::uint32_t source,
                                        std::uint32_t factor) {
  const auto o = static_cast<std::int32_t>(old);
  const std::int32_t difference = static_cast<std::int32_t>(source) - o;
  return static_cast<std::uint32_t>(o + (difference * static_cast<std::int32_t>(factor) >> 8)) &
         255;
}

/// A single pixel blended by the alpha byte of `color`; its alpha becomes 255.
constexpr std::uint32_t blended_pixel(std::uint32_t old, std::uint32_t color) {
  const std::uint32_t factor = alpha_scale[alpha_of(color)];
  const auto channel = [&](int i) {
    return blended_channel(byte_of(old, i), byte_of(color, i), factor) << (8 * i);
  };
  return opaque_alpha | channel(0) | channel(1) | channel(2);
}

}  // namespace zbuffer
