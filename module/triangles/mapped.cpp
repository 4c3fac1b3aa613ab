// The polytriangle routines of `Mapped`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_MAPPED_POLYTRIANGLES(, Variant::mapped)

}  // namespace zbuffer
