// The polytriangle scans of `RGB_Alpha_Z`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_rgb_alpha_z = scans<Variant::rgb_alpha_z>();

}  // namespace zbuffer::triangles
