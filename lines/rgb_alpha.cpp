// The polyline routines of `RGB_Alpha`.

#include "lines/entry.h"
#include "lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(, Variant::rgb_alpha)

}  // namespace zbuffer::lines
