// Strip edges: a polytriangle drawn as lines.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer {

/// Draws the edges of a strip as polylines: the chain of all points, of the even and of the odd
/// ones. The colours of the strip are not used; polygons that a wide edge becomes take the strip's
/// depth offset.
void draw_strip_edges(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points);
/// The same with float points, which are rounded.
void draw_strip_edges(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                      const KT_Point* points);

}  // namespace zbuffer
