// The polytriangle routines of `RGB`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(, Variant::rgb)

}  // namespace zbuffer
