// The textured routines of `RGB_Alpha_Z`.

#include "module/textures/entry.h"

namespace zbuffer::textures {

ZBUFFER_TEXTURED_SET(, Set::rgb_alpha_z)

}  // namespace zbuffer::textures
