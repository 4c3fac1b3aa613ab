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
  bool in_own_colors = false;  // also where edges are drawn in one
};

struct Device_Dot {
  KT_DCI_Point point;
  KT_RGB32 color;
};

// Edges beyond the near plane, in the lit colours of their ends.
std::vector<Device_Line> device_lines(const Scene& scene, const View& view, Edge_Choice choice,
                                      float opacity);

// The model's lines that are no edges; lit where they have normals.
std::vector<Device_Line> loose_lines(const Scene& scene, const View& view, float opacity);

// The vertices of all meshes that lie beyond the near plane, not lit.
std::vector<Device_Dot> device_dots(const Scene& scene, const View& view, float opacity);

// The model's points that are no corners.
std::vector<Device_Dot> loose_dots(const Scene& scene, const View& view, float opacity);

}  // namespace kv
