// The polytriangle routines of `Mapped`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_MAPPED_POLYTRIANGLES(, Variant::mapped)

}  // namespace zbuffer
