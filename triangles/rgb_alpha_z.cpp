// The polytriangle routines of `RGB_Alpha_Z`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_UNMASKED_POLYTRIANGLES(, Variant::rgb_alpha_z)

}  // namespace zbuffer
