// The textured routines of `Mapped_Z`, with and without cut-out.

#include "module/textures/entry.h"

namespace zbuffer::textures {

ZBUFFER_TEXTURED_SET(, Set::mapped_z)
ZBUFFER_TEXTURED_SET(, Set::cut_out)
template void draw<Set::mapped_z, Road::lit, Layer::float_inside>(const Float_Strip&);
template void draw<Set::mapped_z, Road::lit, Layer::int_inside>(const Strip&);

}  // namespace zbuffer::textures
