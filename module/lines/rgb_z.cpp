// The polyline scans of `RGB_Z`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_rgb_z = scans<Variant::rgb_z>();

}  // namespace zbuffer::lines
