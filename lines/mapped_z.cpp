// The polyline routines of `Mapped_Z`.

#include "lines/entry.h"
#include "lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_MAPPED_Z_POLYLINES()

}  // namespace zbuffer::lines
