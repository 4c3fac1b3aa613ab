// Rounding of float and double points to whole device coordinates.
#pragma once

#include "host/types.h"
#include "module/core/fixed_point.h"

namespace zbuffer {

/// Whether a rounded point gets a z; otherwise it is 0.
enum class Point_Z : std::uint8_t { left_out, rounded };

/// Rounds `count` points of float or double coordinates into `to`.
template <class Point>
void round_points(const Point* points, int count, KT_DCI_Point* to, Point_Z z = Point_Z::rounded) {
  for (int i = 0; i < count; ++i) {
    const Point& from = points[i];
    to[i] = {rounded(from.x), rounded(from.y), z == Point_Z::rounded ? rounded(from.z) : 0};
  }
}

}  // namespace zbuffer
