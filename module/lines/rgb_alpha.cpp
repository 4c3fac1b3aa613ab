// The polyline scans of `RGB_Alpha`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_rgb_alpha = scans<Variant::rgb_alpha>();

}  // namespace zbuffer::lines
