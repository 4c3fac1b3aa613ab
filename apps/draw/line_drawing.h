// Lines and dots.
#pragma once

#include <vector>

#include "apps/draw/canvas.h"
#include "apps/scene/device_lines.h"

namespace kv {

void draw_lines(const Canvas& canvas, const std::vector<Device_Line>& lines);
// Each dot as a disc of the drawing's point size; without a depth buffer the farthest first.
void draw_dots(const Canvas& canvas, std::vector<Device_Dot> dots);

}  // namespace kv
