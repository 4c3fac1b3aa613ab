// Decoding of image files. They may be damaged or hostile: decode in a process of its own.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "apps/load/image.h"

namespace kv {

inline constexpr int largest_image_side = 16384;

// Whether the name of a file says that it is a TGA.
bool is_named_tga(const std::string& name);

// PNG, JPEG or TGA. TGA has no mark of its own, so a caller says whether the bytes may be one.
// Throws std::runtime_error with words for the user.
Image decode_image(std::span<const std::byte> bytes, bool may_be_tga);

}  // namespace kv
