// The two image actions: a rectangle of the caller's pixels, opaque or with an alpha byte a pixel,
// along a depth ramp, through the clip mask.
#pragma once

#include "module/core/call.h"

namespace zbuffer::primitives {

/// A call of either action. Rows of the source are `stride` bytes apart.
struct Image_Call : Call {
  const KT_DCI_Point& start;  ///< top left pixel
  const KT_DCI_Point& end;    ///< bottom right pixel, included
  std::int32_t stride;
  const std::uint8_t* pixels;
};

/// Walks the entry steps of a variant's image, then draws it: 32-bit pixels in direct colour, 8-bit
/// ones in mapped.
void enter_image(Variant variant, Image_Call& image);

Image_Call image_call(Software_Z_Buffer& renderer, Variant variant, const KT_Rendition& rendition,
                      const KT_DCI_Point* start, const KT_DCI_Point* end, int stride,
                      const void* pixels);

}  // namespace zbuffer::primitives
