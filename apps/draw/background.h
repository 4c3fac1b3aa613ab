// What a picture is drawn on, and the way back from the frame buffer.
#pragma once

#include "apps/draw/canvas.h"
#include "apps/files/picture.h"
#include "apps/load/image.h"

namespace kv {

// Clears the frame buffer to the background's colour, and its depths.
void clear(const Canvas& canvas);

// A picture as far away as can be, scaled to cover the whole picture; nothing for an empty one.
void draw_background(const Canvas& canvas, const Image& background);

// What has been drawn of the frame's part.
Picture read_back(const Canvas& canvas);

}  // namespace kv
