// Cutting segments to the device range, within which the 16.16 arithmetic of the steppers cannot
// overflow.
//
// A parametric clip in double precision. Each end may be moved by its own sides alone, so that
// ends in the range stay as they are.
#pragma once

#include "host/types.h"

namespace zbuffer::lines {

/// Whether a moved end gets a depth; otherwise its z is 0.
enum class End_Z : std::uint8_t { none, computed };

/// Cuts the segment of the two points at `points`; false when it does not cross the range.
bool clip_segment_to_range(const KT_DCI_Point* points, KT_DCI_Point* result, End_Z z);

/// The same with depths and a colour an end; a moved end keeps its alpha. `colors` may be null.
bool clip_shaded_segment_to_range(const KT_DCI_Point* points, KT_DCI_Point* result,
                                  const KT_RGB32* colors, KT_RGB32* result_colors);

}  // namespace zbuffer::lines
