// Binds the polyline routines of a variant to their actions.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer::lines {

void bind_polylines(Software_Z_Buffer& renderer, Variant variant);

}  // namespace zbuffer::lines
