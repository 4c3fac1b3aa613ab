// Polygons: cut into triangles and handed to the polytriangle actions, those of whole points with
// more than three to the float actions. The routines are the same in every variant.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer::primitives {

void draw_2d_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_Point* points, const KT_RGB32* color);
void draw_dc_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_Point* points, const KT_RGB32* color);
void draw_2di_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points, const KT_RGB32* color);
void draw_dci_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points, const KT_RGB32* color);

}  // namespace zbuffer::primitives
