// Where points lie beside a rectangle.
#pragma once

#include <cstdint>

#include "host/types.h"

namespace zbuffer {

// Bits of outcodes; 0 is a point inside, bounds included.
inline constexpr unsigned beyond_left = 1;
inline constexpr unsigned beyond_top = 2;
inline constexpr unsigned beyond_right = 4;
inline constexpr unsigned beyond_bottom = 8;
inline constexpr unsigned beyond_any = 15;

/// After the last code of a list: beyond all outcodes, so that it ends every search.
inline constexpr short list_end = 4096;

constexpr unsigned outcode(const KT_Int_Rectangle& r, std::int32_t x, std::int32_t y) {
  return (x < r.left ? beyond_left : 0) | (x > r.right ? beyond_right : 0) |
         (y > r.top ? beyond_top : 0) | (y < r.bottom ? beyond_bottom : 0);
}

/// Whether a point lies inside, bounds included.
constexpr bool is_inside(const KT_Int_Rectangle& r, std::int32_t x, std::int32_t y) {
  return x >= r.left && x <= r.right && y >= r.bottom && y <= r.top;
}

/// The rectangle, in device coordinates, within which fixed-point positions cannot overflow: no
/// difference of two coordinates in it reaches 2^15. It is held against device coordinates although
/// edges run in buffer coordinates; windows begin near the origin.
inline constexpr KT_Int_Rectangle device_range{-4000, 28760, -4000, 28760};

}  // namespace zbuffer
