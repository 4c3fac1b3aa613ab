// The polyline scans of `Mapped`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_mapped = scans<Variant::mapped>();

}  // namespace zbuffer::lines
