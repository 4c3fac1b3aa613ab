// From clipped coordinates to whole pixels.
#pragma once

#include <cstdint>
#include <limits>

#include "host/types.h"

namespace stand_in {

/// Nearest whole number, halves upward. What an int cannot hold becomes its nearest limit, and
/// what is not a number 0.
inline std::int32_t round_to_pixel(double value) {
  constexpr double lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  if (!(value > lowest)) return value <= lowest ? std::numeric_limits<std::int32_t>::min() : 0;
  if (value >= highest) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(value >= 0 ? value + 0.5 : value - 0.49999999999);
}

inline KT_DCI_Point round_to_pixel(const KT_Point_D& point) {
  return {round_to_pixel(point.x), round_to_pixel(point.y), round_to_pixel(point.z)};
}

inline std::uint8_t round_to_byte(double value) {
  if (!(value > 0)) return 0;
  return value >= 255 ? 255 : static_cast<std::uint8_t>(value + 0.5);
}

}  // namespace stand_in
