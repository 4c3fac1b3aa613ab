// The polytriangle routines of `RGB_Z`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb_z)

}  // namespace zbuffer
