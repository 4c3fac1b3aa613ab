#include "apps/device_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "apps/lighting.h"
#include "apps/near_clip.h"

namespace kv {
namespace {

std::uint8_t byte_of(float component) {
  return static_cast<std::uint8_t>(std::lround(255 * std::clamp(component, 0.0f, 1.0f)));
}

// Whether triangle `t` of a strip runs clockwise on the device.
bool triangle_faces_away(std::span<const KT_Point> points, std::size_t t) {
  const Corners corners = strip_triangle(t);
  const KT_Point a = points[corners.a], b = points[corners.b], c = points[corners.c];
  return (b.x - a.x) * (c.y - a.y) < (b.y - a.y) * (c.x - a.x);
}

// Turns the strips of one mesh into device strips.
class Mesh_Projector {
 public:
  Mesh_Projector(const View& view, float opacity, Device_Geometry& result)
      : view_(view), lighting_(view), opacity_(opacity), result_(result) {}

  void project(const Mesh& mesh, const Material& material, const Strip_Set& strips) {
    place_vertices(mesh, material);
    for (std::size_t i = 0; i < strips.count(); ++i) {
      const std::span<const std::uint32_t> strip = strips.strip(i);
      if (result_.mode() == Mode::flat) light_facets(mesh, strip);
      const auto visible = std::count_if(strip.begin(), strip.end(), [&](std::uint32_t vertex) {
        return placed_[vertex].position.z >= view_.near_plane();
      });
      if (visible == std::ssize(strip))
        add_whole(strip);
      else if (visible > 0)
        add_clipped(strip);
    }
  }

 private:
  // Eye points, in the light of the vertex for the shaded mode, in plain colour for the flat one.
  void place_vertices(const Mesh& mesh, const Material& material) {
    placed_.resize(mesh.vertices.size());
    for (std::size_t i = 0; i < placed_.size(); ++i) {
      const Vertex& vertex = mesh.vertices[i];
      Color color = vertex.color * material.diffuse;
      color.alpha = opacity_;
      if (result_.mode() == Mode::shaded)
        color = lighting_.shade(widen(vertex.normal), view_.toward_eye(vertex.position), color);
      placed_[i] = {view_.to_eye(vertex.position), color};
    }
  }

  void light_facets(const Mesh& mesh, std::span<const std::uint32_t> strip) {
    facet_colors_.clear();
    for (std::size_t t = 0; t + 2 < strip.size(); ++t) {
      const Corners corners = strip_triangle(t);
      const std::uint32_t a = strip[corners.a], b = strip[corners.b], c = strip[corners.c];
      const Vec3 at_a = widen(mesh.vertices[a].position);
      const Vec3 facet =
          cross(widen(mesh.vertices[b].position) - at_a, widen(mesh.vertices[c].position) - at_a);
      const Vec3 viewer = view_.toward_eye(mesh.vertices[a].position);
      // A facet is plane: what the viewer sees of it is the side that faces him.
      const Vec3 normal = normalized(dot(facet, viewer) < 0 ? -facet : facet);
      const Color color = mean(placed_[a].color, placed_[b].color, placed_[c].color);
      facet_colors_.push_back(device_color(lighting_.shade(normal, viewer, color)));
    }
  }

  static Color mean(const Color& a, const Color& b, const Color& c) {
    return {(a.red + b.red + c.red) / 3, (a.green + b.green + c.green) / 3,
            (a.blue + b.blue + c.blue) / 3, (a.alpha + b.alpha + c.alpha) / 3};
  }

  void add_whole(std::span<const std::uint32_t> strip) {
    points_.clear();
    point_colors_.clear();
    for (const std::uint32_t vertex : strip) add_point(placed_[vertex]);
    add_runs(points_, result_.mode() == Mode::flat ? facet_colors_ : point_colors_);
  }

  void add_clipped(std::span<const std::uint32_t> strip) {
    for (std::size_t t = 0; t + 2 < strip.size(); ++t) {
      const Corners corners = strip_triangle(t);
      const Clipped_Strip clipped = clip_near(
          {placed_[strip[corners.a]], placed_[strip[corners.b]], placed_[strip[corners.c]]},
          view_.near_plane());
      if (clipped.count < 3) continue;
      points_.clear();
      point_colors_.clear();
      for (const Eye_Point& point : clipped.span()) add_point(point);
      if (result_.mode() == Mode::flat) point_colors_.assign(clipped.count - 2, facet_colors_[t]);
      add_runs(points_, point_colors_);
    }
  }

  // Adds the strip in pieces that face one way.
  void add_runs(std::span<const KT_Point> points, std::span<const KT_RGB32> colors) {
    const std::size_t triangles = points.size() - 2;
    for (std::size_t first = 0, end = 0; first < triangles; first = end) {
      const bool faces_away = triangle_faces_away(points, first);
      while (end < triangles && triangle_faces_away(points, end) == faces_away) ++end;
      const std::size_t count = end - first + 2;
      result_.add(points.subspan(first, count), colors.subspan(first, result_.color_count(count)),
                  faces_away);
    }
  }

  void add_point(const Eye_Point& point) {
    points_.push_back(view_.to_device(point.position));
    point_colors_.push_back(device_color(point.color));
  }

  const View& view_;
  Lighting lighting_;
  float opacity_;
  Device_Geometry& result_;
  std::vector<Eye_Point> placed_;
  std::vector<KT_RGB32> facet_colors_;
  std::vector<KT_Point> points_;
  std::vector<KT_RGB32> point_colors_;
};

}  // namespace

KT_RGB32 device_color(const Color& color) {
  return {byte_of(color.blue), byte_of(color.green), byte_of(color.red), byte_of(color.alpha)};
}

void Device_Geometry::add(std::span<const KT_Point> points, std::span<const KT_RGB32> colors,
                          bool faces_away) {
  strips_.push_back({points_.size(), points.size(), colors_.size(), faces_away});
  points_.insert(points_.end(), points.begin(), points.end());
  colors_.insert(colors_.end(), colors.begin(), colors.end());
}

bool Device_Geometry::translucent() const {
  return std::any_of(colors_.begin(), colors_.end(),
                     [](const KT_RGB32& color) { return color.alpha < 255; });
}

void Device_Geometry::put_backs_first() {
  std::stable_partition(strips_.begin(), strips_.end(),
                        [](const Device_Strip& strip) { return strip.faces_away; });
}

Device_Geometry device_geometry(const Scene& scene, const View& view, Mode mode, float opacity) {
  Device_Geometry geometry(mode);
  Mesh_Projector projector(view, opacity, geometry);
  for (std::size_t i = 0; i < scene.model.meshes.size(); ++i) {
    const Mesh& mesh = scene.model.meshes[i];
    projector.project(mesh, scene.model.materials[mesh.material], scene.strips[i]);
  }
  geometry.put_backs_first();
  return geometry;
}

}  // namespace kv
