// The textured scans of `RGB_Z`.
#include "module/textures/scan.h"

namespace zbuffer::textures {

constinit const Scans scans_rgb_z = scans<Texture_Set::rgb_z>();

}  // namespace zbuffer::textures
