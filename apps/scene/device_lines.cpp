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

enum class Light { on, off };

// Vertices of one material in eye coordinates, in their colours.
class Vertex_Colors {
 public:
  Vertex_Colors(const View& view, float opacity)
      : view_(view), lighting_(view), opacity_(opacity) {}

  Eye_Point operator()(const Vertex& vertex, const Material& material,
                       Light light = Light::on) const {
    Color color = vertex.color * material.diffuse;
    color.alpha = opacity_;
    if (light == Light::on)
      color =
          lighting_.shade(widen(vertex.normal), view_.toward_eye(vertex.position), color, material);
    return {view_.to_eye(vertex.position), color};
  }

 private:
  const View& view_;
  Lighting lighting_;
  float opacity_;
};

void add_line(std::vector<Device_Line>& lines, const View& view, std::array<Eye_Point, 2> ends,
              bool in_own_colors) {
  if (!clip_near(ends, view.near_plane())) return;
  lines.push_back({{device_point(view, ends[0].position), device_point(view, ends[1].position)},
                   {device_color(ends[0].color), device_color(ends[1].color)},
                   in_own_colors});
}

void add_dot(std::vector<Device_Dot>& dots, const View& view, const Eye_Point& point) {
  if (point.position.z < view.near_plane()) return;
  dots.push_back({device_point(view, point.position), device_color(point.color)});
}

// Whether a viewer sees one of the faces from its front and the other from its back.
bool is_outline(const Bend& bend, Vec3 toward_eye) {
  return (dot(widen(bend.first), toward_eye) >= 0) != (dot(widen(bend.second), toward_eye) >= 0);
}

Light light_of(const Loose& loose) {
  return loose.has_normals ? Light::on : Light::off;
}

}  // namespace

std::vector<Device_Line> device_lines(const Scene& scene, const View& view, Edge_Choice choice,
                                      float opacity) {
  const Vertex_Colors seen(view, opacity);
  std::vector<Device_Line> lines;
  for (std::size_t m = 0; m < scene.model.meshes.size(); ++m) {
    const Mesh& mesh = scene.model.meshes[m];
    const Material& material = scene.model.materials[mesh.material];
    const auto add = [&](const Edge& edge) {
      add_line(lines, view,
               {seen(mesh.vertices[edge.a], material), seen(mesh.vertices[edge.b], material)},
               false);
    };
    const Edges& edges = scene.edges(choice)[m];
    for (const Edge& edge : edges.shown) add(edge);
    for (const Bend& bend : edges.bends)
      if (is_outline(bend, view.toward_eye(mesh.vertices[bend.edge.a].position))) add(bend.edge);
  }
  return lines;
}

std::vector<Device_Line> loose_lines(const Scene& scene, const View& view, float opacity) {
  const Vertex_Colors seen(view, opacity);
  std::vector<Device_Line> lines;
  for (const Loose& loose : scene.model.loose) {
    const auto end = [&](std::uint32_t vertex) {
      return seen(loose.vertices[vertex], scene.model.materials[loose.material], light_of(loose));
    };
    for (std::size_t i = 0; i + 1 < loose.lines.size(); i += 2)
      add_line(lines, view, {end(loose.lines[i]), end(loose.lines[i + 1])}, true);
  }
  return lines;
}

std::vector<Device_Dot> device_dots(const Scene& scene, const View& view, float opacity) {
  const Vertex_Colors seen(view, opacity);
  std::vector<Device_Dot> dots;
  for (const Mesh& mesh : scene.model.meshes)
    for (const Vertex& vertex : mesh.vertices)
      add_dot(dots, view, seen(vertex, scene.model.materials[mesh.material], Light::off));
  return dots;
}

std::vector<Device_Dot> loose_dots(const Scene& scene, const View& view, float opacity) {
  const Vertex_Colors seen(view, opacity);
  std::vector<Device_Dot> dots;
  for (const Loose& loose : scene.model.loose)
    for (const std::uint32_t point : loose.points)
      add_dot(dots, view,
              seen(loose.vertices[point], scene.model.materials[loose.material], light_of(loose)));
  return dots;
}

}  // namespace kv
