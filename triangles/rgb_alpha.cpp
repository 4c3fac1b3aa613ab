// The polytriangle routines of `RGB_Alpha`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb_alpha)

}  // namespace zbuffer
