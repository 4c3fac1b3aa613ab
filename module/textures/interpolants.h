// What an edge of a textured triangle carries: x, depth, u and v, then colour channels by the
// member's scale. u and v are whole texel numbers with 16 fraction bits, the fraction of a texel
// at a vertex being given up.
#pragma once

#include "module/raster/interpolants.h"

namespace zbuffer::textures {

using Geometry_Interpolants = Interpolants<Position_Interpolant, Depth_Interpolant,
                                           Position_Interpolant, Position_Interpolant>;
inline constexpr std::size_t at_u = 2;
inline constexpr std::size_t at_v = 3;
inline constexpr std::size_t first_channel = Geometry_Interpolants::count;

/// Channels with 8 fraction bits: value * 256 + 128.
struct Byte_Interpolant {
  static Word start(std::int32_t value) { return Position::at(value) >> 8; }
  static Word step(const Divisor& rows, std::int32_t difference) {
    return shift_signed(rows.line_step(difference), 8);
  }
};

/// Channels in 65536ths of full, which is 256 * 256: value * 257 + 1. A difference of more than
/// half the range wraps in the step.
struct Wide_Interpolant {
  static Word start(std::int32_t value) { return as_word(value) * 257 + 1; }
  static Word step(const Divisor& rows, std::int32_t difference) {
    return shift_signed(rows.line_step(difference * 257), 16);
  }
};

}  // namespace zbuffer::textures
