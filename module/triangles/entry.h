// The routines of the polytriangle family, from the action to the scan.
//
//   2D   float_any     converts, goes on to 2DI
//   2DI  int_any       cuts the strip into parts inside (to DCI) and single clipped triangles
//   DC   float_inside  converts, goes on to DCI
//   DCI  int_inside    draws: a scan
#pragma once

#include "module/core/call.h"

namespace zbuffer::triangles {

/// Walks the entry steps of a routine, then does the layer's own work. The record of the call is
/// the routine's to change.
void enter(Routine routine, Strip_Call& strip);

}  // namespace zbuffer::triangles
