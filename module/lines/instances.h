// The routines that each variant's file instantiates, so that the others only refer to them.
#pragma once

#include "module/lines/routines.h"

#define ZBUFFER_POLYLINE_LAYER(PREFIX, routine, layer, variant)                   \
  PREFIX template void routine<layer, variant, Kind::plain>(const Polyline&);     \
  PREFIX template void routine<layer, variant, Kind::colorized>(const Polyline&); \
  PREFIX template void routine<layer, variant, Kind::gouraud>(const Polyline&);

#define ZBUFFER_POLYLINE_ACTIONS(PREFIX, variant)            \
  ZBUFFER_POLYLINE_LAYER(PREFIX, enter, Layer::any, variant) \
  ZBUFFER_POLYLINE_LAYER(PREFIX, enter, Layer::inside, variant)

// All that exists: the mapped variants lack most masked forms.
#define ZBUFFER_DIRECT_POLYLINES(PREFIX, variant)                   \
  ZBUFFER_POLYLINE_ACTIONS(PREFIX, variant)                         \
  ZBUFFER_POLYLINE_LAYER(PREFIX, enter_masked, Layer::any, variant) \
  ZBUFFER_POLYLINE_LAYER(PREFIX, enter_masked, Layer::inside, variant)

#define ZBUFFER_MAPPED_POLYLINES(PREFIX)                                                           \
  ZBUFFER_POLYLINE_ACTIONS(PREFIX, Variant::mapped)                                                \
  PREFIX template void enter_masked<Layer::any, Variant::mapped, Kind::plain>(const Polyline&);    \
  PREFIX template void enter_masked<Layer::inside, Variant::mapped, Kind::plain>(const Polyline&); \
  PREFIX template void enter_masked<Layer::inside, Variant::mapped, Kind::gouraud>(const Polyline&);

#define ZBUFFER_MAPPED_Z_POLYLINES(PREFIX)            \
  ZBUFFER_POLYLINE_ACTIONS(PREFIX, Variant::mapped_z) \
  ZBUFFER_POLYLINE_LAYER(PREFIX, enter_masked, Layer::inside, Variant::mapped_z)

namespace zbuffer::lines {

ZBUFFER_DIRECT_POLYLINES(extern, Variant::rgb_alpha)
ZBUFFER_DIRECT_POLYLINES(extern, Variant::rgb)
ZBUFFER_MAPPED_POLYLINES(extern)
ZBUFFER_MAPPED_Z_POLYLINES(extern)
ZBUFFER_DIRECT_POLYLINES(extern, Variant::rgb_alpha_z)
ZBUFFER_DIRECT_POLYLINES(extern, Variant::rgb_z)

}  // namespace zbuffer::lines
