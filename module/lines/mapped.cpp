// The polyline routines of `Mapped`.

#include "module/lines/entry.h"
#include "module/lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_MAPPED_POLYLINES()

}  // namespace zbuffer::lines
