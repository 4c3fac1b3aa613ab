// The polyline routines of `Mapped`.

#include "lines/entry.h"
#include "lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_MAPPED_POLYLINES()

}  // namespace zbuffer::lines
