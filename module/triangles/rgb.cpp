// The polytriangle scans of `RGB`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_rgb = scans<Variant::rgb>();

}  // namespace zbuffer::triangles
