// The polytriangle routines of `Mapped_Z`.

#include "module/triangles/entry.h"
#include "module/triangles/instances.h"

namespace zbuffer {

ZBUFFER_MAPPED_POLYTRIANGLES(, Variant::mapped_z)

}  // namespace zbuffer
