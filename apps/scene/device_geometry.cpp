// Faces of a scene lit, projected and cut at the near plane. Device coordinates: y up, depth from
// 0, the nearest, to 65535.
#include "apps/scene/device_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "apps/scene/lighting.h"
#include "apps/scene/near_clip.h"
#include "apps/scene/texture_places.h"

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

// Whether a face of any number of corners runs clockwise on the device.
bool face_faces_away(std::span<const KT_Point> points) {
  float area = 0;
  for (std::size_t i = 1; i + 1 < points.size(); ++i) {
    const KT_Point a = points[0], b = points[i], c = points[i + 1];
    area += (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
  }
  return area < 0;
}

// Turns the strips or polygons of one mesh into those of the device.
class Mesh_Projector {
 public:
  Mesh_Projector(const Scene& scene, const View& view, float opacity, Device_Geometry& result)
      : model_(scene.model), view_(view), lighting_(view), opacity_(opacity), result_(result) {}

  void project(const Mesh& mesh, const Strip_Set& strips) {
    material_ = mesh.material;
    textured_ = material().texture != no_texture && result_.mode() != Mode::polygons;
    place_vertices(mesh);
    if (result_.mode() == Mode::polygons)
      return for_each_face(mesh,
                           [&](std::span<const std::uint32_t> face) { add_polygon(mesh, face); });
    for (std::size_t i = 0; i < strips.count(); ++i) add_strip(mesh, strips.strip(i));
  }

 private:
  const Material& material() const { return model_.materials[material_]; }
  const Texture& texture() const { return model_.textures[material().texture]; }

  // Eye points, in the light of the vertex for the shaded mode, in plain colour for the others.
  void place_vertices(const Mesh& mesh) {
    placed_.resize(mesh.vertices.size());
    for (std::size_t i = 0; i < placed_.size(); ++i) {
      const Vertex& vertex = mesh.vertices[i];
      Color color = vertex.color * material().diffuse;
      color.alpha *= opacity_;
      if (result_.mode() == Mode::shaded)
        color = lighting_.shade(widen(vertex.normal), view_.toward_eye(vertex.position), color,
                                material());
      placed_[i] = {view_.to_eye(vertex.position), color, vertex.place};
    }
  }

  // A facet is plane: what the viewer sees of it is the side that faces him.
  KT_RGB32 facet_color(const Mesh& mesh, std::span<const std::uint32_t> face) const {
    const Vec3 facet = area_vector(mesh, face);
    const Vec3 viewer = view_.toward_eye(mesh.vertices[face[0]].position);
    const Vec3 normal = normalized(dot(facet, viewer) < 0 ? -facet : facet);
    Color sum{0, 0, 0, 0};
    for (const std::uint32_t vertex : face) {
      const Color& color = placed_[vertex].color;
      sum = {sum.red + color.red, sum.green + color.green, sum.blue + color.blue,
             sum.alpha + color.alpha};
    }
    const auto corners = static_cast<float>(face.size());
    return device_color(lighting_.shade(
        normal, viewer,
        {sum.red / corners, sum.green / corners, sum.blue / corners, sum.alpha / corners},
        material()));
  }

  void add_strip(const Mesh& mesh, std::span<const std::uint32_t> strip) {
    const auto visible = std::count_if(strip.begin(), strip.end(), [&](std::uint32_t vertex) {
      return placed_[vertex].position.z >= view_.near_plane();
    });
    if (visible == 0) return;
    if (result_.mode() == Mode::flat) light_facets(mesh, strip);
    const bool whole = visible == std::ssize(strip);
    // A facet's colour is one of three points when it is textured: no two facets share a point.
    if (whole && !(textured_ && result_.mode() == Mode::flat))
      add_whole(strip);
    else
      add_triangles(strip);
  }

  void light_facets(const Mesh& mesh, std::span<const std::uint32_t> strip) {
    facet_colors_.clear();
    for (std::size_t t = 0; t + 2 < strip.size(); ++t) {
      const Corners corners = strip_triangle(t);
      const std::array face = {strip[corners.a], strip[corners.b], strip[corners.c]};
      facet_colors_.push_back(facet_color(mesh, face));
    }
  }

  void add_whole(std::span<const std::uint32_t> strip) {
    clear_points();
    for (const std::uint32_t vertex : strip) add_point(placed_[vertex]);
    add_runs(result_.mode() == Mode::flat ? facet_colors_ : point_colors_);
  }

  // One by one, cut at the near plane.
  void add_triangles(std::span<const std::uint32_t> strip) {
    for (std::size_t t = 0; t + 2 < strip.size(); ++t) {
      const Corners corners = strip_triangle(t);
      const Clipped_Strip clipped = clip_near(
          {placed_[strip[corners.a]], placed_[strip[corners.b]], placed_[strip[corners.c]]},
          view_.near_plane());
      if (clipped.count < 3) continue;
      clear_points();
      for (const Eye_Point& point : clipped.span()) add_point(point);
      if (result_.mode() == Mode::flat)
        point_colors_.assign(result_.color_count(clipped.count, textured_), facet_colors_[t]);
      add_runs(point_colors_);
    }
  }

  void add_polygon(const Mesh& mesh, std::span<const std::uint32_t> face) {
    polygon_.clear();
    for (const std::uint32_t vertex : face) polygon_.push_back(placed_[vertex]);
    clip_near(polygon_, view_.near_plane());
    if (polygon_.size() < 3) return;
    clear_points();
    for (const Eye_Point& point : polygon_) add_point(point);
    const std::array color = {facet_color(mesh, face)};
    result_.add(points_, color, face_faces_away(points_));
  }

  // Adds the points as a strip, in pieces that face one way and take their texture one way.
  void add_runs(std::span<const KT_RGB32> colors) {
    const std::span<const KT_Point> points = points_;
    const std::size_t triangles = points.size() - 2;
    for (std::size_t first = 0, end = 0; first < triangles; first = end) {
      const bool faces_away = triangle_faces_away(points, first);
      const bool in_plane = is_in_plane(first);
      while (end < triangles && triangle_faces_away(points, end) == faces_away &&
             is_in_plane(end) == in_plane)
        ++end;
      const std::size_t count = end - first + 2;
      result_.add(points.subspan(first, count),
                  colors.subspan(first, result_.color_count(count, textured_)), faces_away,
                  run_texture(first, count, in_plane));
    }
  }

  // Whether triangle `t` of the points may take its texture in the plane.
  bool is_in_plane(std::size_t t) const {
    if (!textured_ || view_.orthographic()) return true;
    const auto side = [&](std::size_t a, std::size_t b) {
      return is_even_side({points_[a], places_[a], w_[a]}, {points_[b], places_[b], w_[b]},
                          texture().image);
    };
    return side(t, t + 1) && side(t + 1, t + 2) && side(t, t + 2);
  }

  Strip_Texture run_texture(std::size_t first, std::size_t count, bool in_plane) {
    if (!textured_) return {};
    run_places_.assign(places_.begin() + static_cast<std::ptrdiff_t>(first),
                       places_.begin() + static_cast<std::ptrdiff_t>(first + count));
    const bool in_reach = settle_places(run_places_, material(), texture().image);
    return {material_, run_places_, std::span(w_).subspan(first, count),
            in_reach,  in_plane,    texture().sees_through};
  }

  void clear_points() {
    points_.clear();
    point_colors_.clear();
    places_.clear();
    w_.clear();
  }

  void add_point(const Eye_Point& point) {
    points_.push_back(view_.to_device(point.position));
    point_colors_.push_back(device_color(point.color));
    if (!textured_) return;
    places_.push_back({point.place.s, point.place.t, 0});
    w_.push_back(view_.orthographic() ? 1 : static_cast<float>(point.position.z));
  }

  const Model& model_;
  const View& view_;
  Lighting lighting_;
  float opacity_;
  Device_Geometry& result_;
  std::uint32_t material_ = 0;  // of the mesh that is being projected
  bool textured_ = false;
  std::vector<Eye_Point> placed_, polygon_;
  std::vector<KT_RGB32> facet_colors_;
  // Of one strip or polygon.
  std::vector<KT_Point> points_;
  std::vector<KT_RGB32> point_colors_;
  std::vector<KT_Parameter> places_, run_places_;
  std::vector<float> w_;
};

}  // namespace

KT_RGB32 device_color(const Color& color) {
  return {byte_of(color.blue), byte_of(color.green), byte_of(color.red), byte_of(color.alpha)};
}

void Device_Geometry::add(std::span<const KT_Point> points, std::span<const KT_RGB32> colors,
                          bool faces_away, const Strip_Texture& texture) {
  const auto alpha_below = [&](int limit) {
    return [limit](const KT_RGB32& color) { return color.alpha < limit; };
  };
  if (std::all_of(colors.begin(), colors.end(), alpha_below(1))) return;
  const bool translucent =
      texture.sees_through || std::any_of(colors.begin(), colors.end(), alpha_below(255));
  strips_.push_back({points_.size(), points.size(), colors_.size(), faces_away, texture.material,
                     places_.size(), texture.in_reach, texture.in_plane, translucent});
  points_.insert(points_.end(), points.begin(), points.end());
  colors_.insert(colors_.end(), colors.begin(), colors.end());
  places_.insert(places_.end(), texture.places.begin(), texture.places.end());
  w_.insert(w_.end(), texture.w.begin(), texture.w.end());
}

bool Device_Geometry::translucent() const {
  return std::any_of(strips_.begin(), strips_.end(),
                     [](const Device_Strip& strip) { return strip.translucent; });
}

void Device_Geometry::put_backs_first() {
  std::stable_partition(strips_.begin(), strips_.end(),
                        [](const Device_Strip& strip) { return strip.faces_away; });
}

Device_Geometry device_geometry(const Scene& scene, const View& view, Mode mode, float opacity) {
  Device_Geometry geometry(mode);
  Mesh_Projector projector(scene, view, opacity, geometry);
  for (std::size_t i = 0; i < scene.model.meshes.size(); ++i)
    projector.project(scene.model.meshes[i], scene.strips[i]);
  geometry.put_backs_first();
  return geometry;
}

}  // namespace kv
