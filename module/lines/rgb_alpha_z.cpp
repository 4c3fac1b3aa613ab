// The polyline scans of `RGB_Alpha_Z`.
#include "module/lines/scan.h"

namespace zbuffer::lines {

constinit const Scans scans_rgb_alpha_z = scans<Variant::rgb_alpha_z>();

}  // namespace zbuffer::lines
