// Binds the polytriangle routines of a variant to their actions.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer::triangles {

void bind_polytriangles(Software_Z_Buffer& renderer, Variant variant);

}  // namespace zbuffer::triangles
