// The polytriangle scans of `Mapped`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_mapped = scans<Variant::mapped>();

}  // namespace zbuffer::triangles
