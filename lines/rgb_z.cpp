// The polyline routines of `RGB_Z`.

#include "lines/entry.h"
#include "lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(, Variant::rgb_z)

}  // namespace zbuffer::lines
