// Sorts triangles and polygons by the mean of their depths, the farthest first.
#include <algorithm>
#include <array>

#include "apps/scene/device_geometry.h"
#include "apps/scene/strips.h"

namespace kv {
namespace {

// A triangle of a strip, or a polygon.
struct Ranked_Face {
  float depth;
  std::uint32_t strip;
  std::uint32_t triangle;
};

float mean_depth(std::span<const KT_Point> points) {
  float sum = 0;
  for (const KT_Point& point : points) sum += point.z;
  return sum / static_cast<float>(points.size());
}

std::vector<Ranked_Face> ranked_faces(const Device_Geometry& geometry, bool translucent_only) {
  std::vector<Ranked_Face> ranked;
  for (std::size_t s = 0; s < geometry.strips().size(); ++s) {
    if (translucent_only && !geometry.strips()[s].translucent) continue;
    const auto strip = static_cast<std::uint32_t>(s);
    const std::span<const KT_Point> points = geometry.points(geometry.strips()[s]);
    if (geometry.mode() == Mode::polygons) {
      ranked.push_back({mean_depth(points), strip, 0});
      continue;
    }
    for (std::size_t t = 0; t + 2 < points.size(); ++t)
      ranked.push_back({mean_depth(points.subspan(t, 3)), strip, static_cast<std::uint32_t>(t)});
  }
  return ranked;
}

template <class Item>
std::array<Item, 3> picked(std::span<const Item> items, const Corners& corners) {
  return {items[corners.a], items[corners.b], items[corners.c]};
}

void add_triangle(Device_Geometry& sorted, const Device_Geometry& geometry,
                  const Device_Strip& strip, std::size_t t) {
  const Corners corners = strip_triangle(t);
  const std::array points = picked(geometry.points(strip), corners);
  const std::span<const KT_RGB32> colors = geometry.colors(strip);
  if (geometry.mode() == Mode::flat && !strip.textured())
    return sorted.add(points, colors.subspan(t, 1), strip.faces_away);
  const std::array three_colors = picked(colors, corners);
  if (!strip.textured()) return sorted.add(points, three_colors, strip.faces_away);
  const Strip_Texture texture = geometry.texture(strip);
  const std::array places = picked(texture.places, corners);
  const std::array w = picked(texture.w, corners);
  sorted.add(
      points, three_colors, strip.faces_away,
      {texture.material, places, w, texture.in_reach, texture.in_plane, texture.sees_through});
}

}  // namespace

Device_Geometry back_to_front(const Device_Geometry& geometry, bool translucent_only) {
  std::vector<Ranked_Face> ranked = ranked_faces(geometry, translucent_only);
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.depth > b.depth; });
  Device_Geometry sorted(geometry.mode());
  for (const Ranked_Face& face : ranked) {
    const Device_Strip& strip = geometry.strips()[face.strip];
    if (geometry.mode() == Mode::polygons)
      sorted.add(geometry.points(strip), geometry.colors(strip), strip.faces_away);
    else
      add_triangle(sorted, geometry, strip, face.triangle);
  }
  return sorted;
}

}  // namespace kv
