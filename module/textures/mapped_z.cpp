// The textured scans of `Mapped_Z`, with and without transparency.
#include "module/textures/scan.h"

namespace zbuffer::textures {

constinit const Scans scans_mapped_z = [] {
  Scans made = scans<Texture_Set::mapped_z>();
  made.inside[static_cast<std::size_t>(Texturing::lit)] = draw_lit_inside;
  return made;
}();
constinit const Scans scans_cut_out = scans<Texture_Set::cut_out>();

}  // namespace zbuffer::textures
