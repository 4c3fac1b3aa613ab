// The two image actions: a rectangle of the caller's pixels, opaque or with an alpha byte a
// pixel, along a depth ramp, through the clip mask.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer {

/// `Draw_DCI_RGB32_Image` of the direct-colour variants. The last two arguments are not read.
template <Variant variant>
void draw_rgb32_image(KT_Renderer_Data* object, const KT_Rendition& rendition,
                      const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                      const KT_RGB32* pixels, int, const KT_Packing*);

/// `Draw_DCI_Index8_Image` of the mapped variants.
template <Variant variant>
void draw_index8_image(KT_Renderer_Data* object, const KT_Rendition& rendition,
                       const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                       const std::uint8_t* pixels);

}  // namespace zbuffer
