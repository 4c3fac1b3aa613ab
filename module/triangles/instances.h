// The routines that each variant's file instantiates, so that the others only refer to them.
#pragma once

#include "module/triangles/routines.h"

#define ZBUFFER_POLYTRIANGLE_KIND(PREFIX, variant, kind)                              \
  PREFIX template void enter<Layer::float_any, variant, kind>(const Float_Strip&);    \
  PREFIX template void enter<Layer::float_inside, variant, kind>(const Float_Strip&); \
  PREFIX template void enter<Layer::int_any, variant, kind>(const Strip&);            \
  PREFIX template void enter<Layer::int_inside, variant, kind>(const Strip&);

#define ZBUFFER_POLYTRIANGLE_MASKED(PREFIX, variant, kind)                \
  PREFIX template void draw_anywhere_masked<variant, kind>(const Strip&); \
  PREFIX template void draw_inside_masked<variant, kind>(const Strip&);   \
  PREFIX template void scan<variant, kind, Masking::masked>(const Strip&);

#define ZBUFFER_POLYTRIANGLE_SCAN(PREFIX, variant, kind) \
  PREFIX template void scan<variant, kind, Masking::open>(const Strip&);

#define ZBUFFER_POLYTRIANGLE_SHADED(PREFIX, variant)          \
  ZBUFFER_POLYTRIANGLE_KIND(PREFIX, variant, Kind::flat)      \
  ZBUFFER_POLYTRIANGLE_KIND(PREFIX, variant, Kind::colorized) \
  ZBUFFER_POLYTRIANGLE_KIND(PREFIX, variant, Kind::gouraud)   \
  ZBUFFER_POLYTRIANGLE_SCAN(PREFIX, variant, Kind::colorized) \
  ZBUFFER_POLYTRIANGLE_SCAN(PREFIX, variant, Kind::gouraud)

#define ZBUFFER_POLYTRIANGLE_SHADED_MASKED(PREFIX, variant)     \
  ZBUFFER_POLYTRIANGLE_MASKED(PREFIX, variant, Kind::colorized) \
  ZBUFFER_POLYTRIANGLE_MASKED(PREFIX, variant, Kind::gouraud)

#define ZBUFFER_POLYTRIANGLE_FLAT(PREFIX, variant)       \
  ZBUFFER_POLYTRIANGLE_SCAN(PREFIX, variant, Kind::flat) \
  ZBUFFER_POLYTRIANGLE_MASKED(PREFIX, variant, Kind::flat)

// All that exists: flat scans in the mapped variants alone, and no masked twins of `RGB_Alpha_Z`.
#define ZBUFFER_DIRECT_POLYTRIANGLES(PREFIX, variant) \
  ZBUFFER_POLYTRIANGLE_SHADED(PREFIX, variant)        \
  ZBUFFER_POLYTRIANGLE_SHADED_MASKED(PREFIX, variant)
#define ZBUFFER_UNMASKED_POLYTRIANGLES(PREFIX, variant) ZBUFFER_POLYTRIANGLE_SHADED(PREFIX, variant)
#define ZBUFFER_MAPPED_POLYTRIANGLES(PREFIX, variant) \
  ZBUFFER_POLYTRIANGLE_SHADED(PREFIX, variant)        \
  ZBUFFER_POLYTRIANGLE_SHADED_MASKED(PREFIX, variant) \
  ZBUFFER_POLYTRIANGLE_FLAT(PREFIX, variant)

namespace zbuffer {

ZBUFFER_DIRECT_POLYTRIANGLES(extern, Variant::rgb_alpha)
ZBUFFER_DIRECT_POLYTRIANGLES(extern, Variant::rgb)
ZBUFFER_MAPPED_POLYTRIANGLES(extern, Variant::mapped)
ZBUFFER_MAPPED_POLYTRIANGLES(extern, Variant::mapped_z)
ZBUFFER_UNMASKED_POLYTRIANGLES(extern, Variant::rgb_alpha_z)
ZBUFFER_DIRECT_POLYTRIANGLES(extern, Variant::rgb_z)

}  // namespace zbuffer
