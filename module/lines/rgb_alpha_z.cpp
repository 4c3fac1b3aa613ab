// The polyline routines of `RGB_Alpha_Z`.

#include "module/lines/entry.h"
#include "module/lines/instances.h"

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(, Variant::rgb_alpha_z)

}  // namespace zbuffer::lines
