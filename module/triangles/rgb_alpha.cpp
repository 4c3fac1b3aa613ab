// The polytriangle scans of `RGB_Alpha`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_rgb_alpha = scans<Variant::rgb_alpha>();

}  // namespace zbuffer::triangles
