// The polyline routines of `RGB`.

#include "module/lines/entry.h"
#include "module/lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(, Variant::rgb)

}  // namespace zbuffer::lines
