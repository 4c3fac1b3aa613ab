// Dots: one pixel, from a point that lies in the buffer. Lines draw their ends and their one-point
// cases with them.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer::primitives {

/// Draws the pixel at `point` (device coordinates). `color` null means the rendition's colour. The
/// hard clip has no part in it.
void draw_dot(Variant variant, Software_Z_Buffer& renderer, const KT_Rendition& rendition,
              const KT_DCI_Point& point, const KT_RGB32* color);

}  // namespace zbuffer::primitives
