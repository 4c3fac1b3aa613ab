// The textured scans of `RGB_Alpha_Z`.
#include "module/textures/scan.h"

namespace zbuffer::textures {

constinit const Scans scans_rgb_alpha_z = scans<Texture_Set::rgb_alpha_z>();

}  // namespace zbuffer::textures
