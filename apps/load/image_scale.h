// Images in other sizes.
#pragma once

#include "apps/common/option_text.h"
#include "apps/load/image.h"
#include "host/types.h"

namespace kv {

// The whole image in another size. Nothing reaches across its borders.
Image resized(const Image& image, std::uint32_t width, std::uint32_t height);

// The same picture with each texel as a block of texels; the sides are multiples of the image's.
Image in_blocks(const Image& image, std::uint32_t width, std::uint32_t height);

// Of the largest middle part of the image with the shape of `frame`, in the frame's size, what
// falls on `part` of it (in device coordinates). Parts fit each other without a seam.
Image covering(const Image& image, const Size& frame, const KT_Int_Rectangle& part);

// An opaque image, as it looks before `paper`.
Image flattened(Image image, Texel paper);

}  // namespace kv
