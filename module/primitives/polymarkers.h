// Polymarkers: lists of points drawn as single dots, each tested against the hard clip.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer {

/// `Draw_2DI_Polymarker` of every variant but `Mapped_Z`, which has none.
template <Variant variant>
void draw_polymarker(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_DCI_Point* points);

}  // namespace zbuffer
