// The polytriangle routines of `Mapped_Z`.

#include "triangles/entry.h"
#include "triangles/instances.h"

namespace zbuffer {

ZBUFFER_MAPPED_POLYTRIANGLES(, Variant::mapped_z)

}  // namespace zbuffer
