// The routines of the textured family, from the action to the scan.
//
//   action -- texturing_of --+-- plain ------+   2D   float_any     converts, goes on to 2DI
//                 |          +-- modulated --+   2DI  int_any       cuts into parts and triangles
//                 |          +-- lit --------+   DC   float_inside  converts, goes on to DCI
//         general routine                        DCI  int_inside    draws: a scan
//
// The texturing is decided once, in the action. Clip masks are not used: textured primitives are
// drawn as if there were no complex clip.
#pragma once

#include "module/textures/call.h"

namespace zbuffer::textures {

/// Walks the entry steps of a routine, then decides on the texturing or does the layer's own work.
void enter(Textured_Routine routine, Textured_Call& strip);

}  // namespace zbuffer::textures
