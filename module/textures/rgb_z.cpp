// The textured routines of `RGB_Z`.

#include "module/textures/entry.h"

namespace zbuffer::textures {

ZBUFFER_TEXTURED_SET(, Set::rgb_z)

}  // namespace zbuffer::textures
