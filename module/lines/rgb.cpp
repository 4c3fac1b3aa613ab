// The polyline scans of `RGB`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_rgb = scans<Variant::rgb>();

}  // namespace zbuffer::lines
