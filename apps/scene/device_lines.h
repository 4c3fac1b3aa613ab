// One view of a scene's edges and vertices, as the lines and dots that are handed to the module.
#pragma once

#include <array>
#include <vector>

#include "apps/scene/camera.h"
#include "apps/scene/edges.h"
#include "apps/scene/scene.h"
#include "host/types.h"

namespace kv {

struct Device_Line {
  std::array<KT_DCI_Point, 2> points;
  std::array<KT_RGB32, 2> colors;
};

struct Device_Dots {
  KT_RGB32 color;  // one for all
  std::vector<KT_DCI_Point> points;
};

// Edges beyond the near plane, in the lit colours of their ends.
std::vector<Device_Line> device_lines(const Scene& scene, const View& view, Edge_Choice choice,
                                      float opacity);

// The vertices of each mesh that lie beyond the near plane.
std::vector<Device_Dots> device_dots(const Scene& scene, const View& view, float opacity);

}  // namespace kv
