// How a point lies to a rectangle, as one bit an edge.
#pragma once

#include "host/types.h"

namespace stand_in {

inline constexpr unsigned beyond_left = 1;
inline constexpr unsigned beyond_top = 2;
inline constexpr unsigned beyond_right = 4;
inline constexpr unsigned beyond_bottom = 8;
inline constexpr unsigned beyond_any = 15;

inline unsigned outcode(const KT_Int_Rectangle& rectangle, const KT_DCI_Point& point) {
  return static_cast<unsigned>(point.x < rectangle.left) |
         static_cast<unsigned>(point.y > rectangle.top) << 1 |
         static_cast<unsigned>(point.x > rectangle.right) << 2 |
         static_cast<unsigned>(point.y < rectangle.bottom) << 3;
}

/// The tests are for "not inside", so that what is not a number is never taken for inside.
inline unsigned outcode(const KT_Int_Rectangle& rectangle, const KT_Point_D& point) {
  return static_cast<unsigned>(!(point.x >= rectangle.left)) |
         static_cast<unsigned>(!(point.y <= rectangle.top)) << 1 |
         static_cast<unsigned>(!(point.x <= rectangle.right)) << 2 |
         static_cast<unsigned>(!(point.y >= rectangle.bottom)) << 3;
}

}  // namespace stand_in
