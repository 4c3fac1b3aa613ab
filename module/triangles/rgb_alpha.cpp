// The polytriangle routines of `RGB_Alpha`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb_alpha)

}  // namespace zbuffer
