// The polytriangle routines of `RGB_Z`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb_z)

}  // namespace zbuffer
