// The polyline scans of `Mapped_Z`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_mapped_z = scans<Variant::mapped_z>();

}  // namespace zbuffer::lines
