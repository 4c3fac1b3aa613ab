// The polyline routines of `RGB`.

#include "lines/entry.h"
#include "lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(, Variant::rgb)

}  // namespace zbuffer::lines
