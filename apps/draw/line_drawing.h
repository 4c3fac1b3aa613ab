// Lines and dots.
#pragma once

#include <vector>

#include "apps/draw/canvas.h"
#include "apps/scene/device_lines.h"

namespace kv {

void draw_lines(const Canvas& canvas, const std::vector<Device_Line>& lines);
void draw_dots(const Canvas& canvas, const std::vector<Device_Dots>& dots);

}  // namespace kv
