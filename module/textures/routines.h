// The routines of the textured family, by set, road and layer. Each set's file instantiates its
// own; a call that is taken elsewhere on its way reaches them by name.
#pragma once

#include "module/textures/strip.h"

namespace zbuffer::textures {

/// An action: head tests, the gate, then one of the roads.
template <Set set, Layer layer>
void enter(const Strip_At<layer>& strip);

/// A layer of a road, below the gate.
template <Set set, Road road, Layer layer>
void draw(const Strip_At<layer>& strip);

/// Scan conversion of the lit road.
void scan_lit(const Strip& strip);

#define ZBUFFER_TEXTURED_ROAD(PREFIX, set, road)                                 \
  PREFIX template void draw<set, road, Layer::float_any>(const Float_Strip&);    \
  PREFIX template void draw<set, road, Layer::float_inside>(const Float_Strip&); \
  PREFIX template void draw<set, road, Layer::int_any>(const Strip&);            \
  PREFIX template void draw<set, road, Layer::int_inside>(const Strip&);
#define ZBUFFER_TEXTURED_SET(PREFIX, set)                                   \
  ZBUFFER_TEXTURED_ROAD(PREFIX, set, Road::plain)                           \
  ZBUFFER_TEXTURED_ROAD(PREFIX, set, Road::modulated)                       \
  PREFIX template void enter<set, Layer::float_any>(const Float_Strip&);    \
  PREFIX template void enter<set, Layer::float_inside>(const Float_Strip&); \
  PREFIX template void enter<set, Layer::int_any>(const Strip&);            \
  PREFIX template void enter<set, Layer::int_inside>(const Strip&);

ZBUFFER_TEXTURED_SET(extern, Set::mapped_z)
ZBUFFER_TEXTURED_SET(extern, Set::cut_out)
ZBUFFER_TEXTURED_SET(extern, Set::rgb_z)
ZBUFFER_TEXTURED_SET(extern, Set::rgb_alpha_z)

}  // namespace zbuffer::textures
