// The polyline routines of `Mapped_Z`.

#include "module/lines/entry.h"
#include "module/lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_MAPPED_Z_POLYLINES()

}  // namespace zbuffer::lines
