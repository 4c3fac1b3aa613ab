// Binds the textured polytriangle routines of a variant to their actions.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer::textures {

/// Variants without depth have no textured routines and do not come here.
void bind_textured_polytriangles(Software_Z_Buffer& renderer, Variant variant);

}  // namespace zbuffer::textures
