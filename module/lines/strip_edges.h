// Strip edges: a polytriangle drawn as lines.
#pragma once

#include "module/core/call.h"

namespace zbuffer::lines {

/// Draws the edges of a strip as polylines: one through all points, one through the even and one
/// through the odd ones. Float points are rounded. The colours of the strip are not used; polygons
/// that a wide edge becomes take the strip's depth offset.
void draw_strip_edges(const Strip_Call& strip);

}  // namespace zbuffer::lines
