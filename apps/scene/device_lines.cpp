// Edges and vertices of a scene lit and projected to whole device coordinates, y up.
#include "apps/scene/device_lines.h"

#include <algorithm>
#include <cmath>

#include "apps/scene/device_geometry.h"
#include "apps/scene/lighting.h"
#include "apps/scene/near_clip.h"

namespace kv {
namespace {

// What is far outside the window stays far outside, within the range of an int.
int whole(float value) {
  constexpr float farthest = 1e9f;
  return static_cast<int>(std::lround(std::clamp(value, -farthest, farthest)));
}

KT_DCI_Point device_point(const View& view, Vec3 eye_point) {
  const KT_Point point = view.to_device(eye_point);
  return {whole(point.x), whole(point.y), whole(point.z)};
}

class Vertex_Lighting {
 public:
  Vertex_Lighting(const View& view, float opacity)
      : view_(view), lighting_(view), opacity_(opacity) {}

  Eye_Point operator()(const Vertex& vertex, const Material& material) const {
    Color color = vertex.color * material.diffuse;
    color.alpha = opacity_;
    color = lighting_.shade(widen(vertex.normal), view_.toward_eye(vertex.position), color);
    return {view_.to_eye(vertex.position), color};
  }

 private:
  const View& view_;
  Lighting lighting_;
  float opacity_;
};

}  // namespace

std::vector<Device_Line> device_lines(const Scene& scene, const View& view, Edge_Choice choice,
                                      float opacity) {
  const Vertex_Lighting lit(view, opacity);
  std::vector<Device_Line> lines;
  for (std::size_t m = 0; m < scene.model.meshes.size(); ++m) {
    const Mesh& mesh = scene.model.meshes[m];
    const Material& material = scene.model.materials[mesh.material];
    for (const Edge& edge : scene.edges(choice)[m]) {
      std::array ends = {lit(mesh.vertices[edge.a], material),
                         lit(mesh.vertices[edge.b], material)};
      if (!clip_near(ends, view.near_plane())) continue;
      lines.push_back({{device_point(view, ends[0].position), device_point(view, ends[1].position)},
                       {device_color(ends[0].color), device_color(ends[1].color)}});
    }
  }
  return lines;
}

std::vector<Device_Dots> device_dots(const Scene& scene, const View& view, float opacity) {
  std::vector<Device_Dots> all;
  for (const Mesh& mesh : scene.model.meshes) {
    Color color = scene.model.materials[mesh.material].diffuse;
    color.alpha = opacity;
    Device_Dots dots{device_color(color), {}};
    for (const Vertex& vertex : mesh.vertices) {
      const Vec3 eye_point = view.to_eye(vertex.position);
      if (eye_point.z >= view.near_plane()) dots.points.push_back(device_point(view, eye_point));
    }
    all.push_back(std::move(dots));
  }
  return all;
}

}  // namespace kv
