// Text in pictures, for labels.
#pragma once

#include <string>

#include "apps/files/picture.h"
#include "host/types.h"

namespace kv {

inline constexpr int label_height = 16;  // of a line

// Letters of printable ASCII; what reaches beyond the picture is cut.
void draw_label(Picture& picture, int left, int top, const std::string& text, KT_RGB32 color);
void fill(Picture& picture, int left, int top, int width, int height, KT_RGB32 color);

}  // namespace kv
