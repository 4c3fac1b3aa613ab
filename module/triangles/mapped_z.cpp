// The polytriangle scans of `Mapped_Z`.
#include "module/triangles/scan.h"

namespace zbuffer::triangles {

constinit const Scans scans_mapped_z = scans<Variant::mapped_z>();

}  // namespace zbuffer::triangles
