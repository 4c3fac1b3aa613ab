// The floats that textures need for perspective correction, where the caller has not given them.
#pragma once

#include "host/rendition.h"

namespace zbuffer::tiling {

/// One float a point: the fourth coordinate that the view's matrix gives the point when it is
/// taken back from the device to where it came from. A view without a matrix has the identity.
void make_perspective_floats(const KT_Display_Context& context, int count, const KT_Point_D* points,
                             float* floats);

}  // namespace zbuffer::tiling
