// The polytriangle scans of `RGB_Z`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_rgb_z = scans<Variant::rgb_z>();

}  // namespace zbuffer::triangles
