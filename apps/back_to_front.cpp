#include <algorithm>
#include <array>

#include "apps/device_geometry.h"
#include "apps/strips.h"

namespace kv {
namespace {

struct Ranked_Triangle {
  float depth;
  std::uint32_t strip;
  std::uint32_t triangle;
};

std::vector<Ranked_Triangle> ranked_triangles(const Device_Geometry& geometry) {
  std::vector<Ranked_Triangle> ranked;
  for (std::size_t s = 0; s < geometry.strips().size(); ++s) {
    const std::span<const KT_Point> points = geometry.points(geometry.strips()[s]);
    for (std::size_t t = 0; t + 2 < points.size(); ++t)
      ranked.push_back({points[t].z + points[t + 1].z + points[t + 2].z,
                        static_cast<std::uint32_t>(s), static_cast<std::uint32_t>(t)});
  }
  return ranked;
}

}  // namespace

Device_Geometry back_to_front(const Device_Geometry& geometry) {
  std::vector<Ranked_Triangle> ranked = ranked_triangles(geometry);
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.depth > b.depth; });
  Device_Geometry sorted(geometry.mode());
  for (const Ranked_Triangle& triangle : ranked) {
    const Device_Strip& strip = geometry.strips()[triangle.strip];
    const std::span<const KT_Point> points = geometry.points(strip);
    const std::span<const KT_RGB32> colors = geometry.colors(strip);
    const Corners corners = strip_triangle(triangle.triangle);
    const std::array three = {points[corners.a], points[corners.b], points[corners.c]};
    if (geometry.mode() == Mode::flat)
      sorted.add(three, colors.subspan(triangle.triangle, 1), strip.faces_away);
    else
      sorted.add(three, std::array{colors[corners.a], colors[corners.b], colors[corners.c]},
                 strip.faces_away);
  }
  return sorted;
}

}  // namespace kv
