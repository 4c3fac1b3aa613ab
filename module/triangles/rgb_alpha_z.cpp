// The polytriangle routines of `RGB_Alpha_Z`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_UNMASKED_POLYTRIANGLES(, Variant::rgb_alpha_z)

}  // namespace zbuffer
