// The polytriangle routines of `RGB`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb)

}  // namespace zbuffer
