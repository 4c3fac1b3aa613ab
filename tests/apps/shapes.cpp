// Small closed shapes whose faces run counter-clockwise seen from outside.
#include "tests/apps/shapes.h"

#include <cmath>
#include <numbers>

namespace shapes {

kv::Model box(kv::Vec3 center, kv::Vec3 size) {
  kv::Mesh mesh;
  for (int corner = 0; corner < 8; ++corner) {
    const kv::Vec3 offset{(corner & 1 ? 0.5 : -0.5) * size.x, (corner & 2 ? 0.5 : -0.5) * size.y,
                          (corner & 4 ? 0.5 : -0.5) * size.z};
    mesh.vertices.push_back({kv::narrow(center + offset), {}, {}});
  }
  mesh.indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                  2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
  return {{kv::Material{}}, {mesh}};
}

kv::Mesh sphere(std::size_t rings) {
  kv::Mesh mesh;
  const std::size_t columns = 2 * rings;
  for (std::size_t r = 0; r <= rings; ++r)
    for (std::size_t c = 0; c < columns; ++c) {
      const double down = std::numbers::pi * static_cast<double>(r) / static_cast<double>(rings);
      const double around =
          2 * std::numbers::pi * static_cast<double>(c) / static_cast<double>(columns);
      const kv::Vec3 p{std::sin(down) * std::cos(around), std::cos(down),
                       std::sin(down) * std::sin(around)};
      mesh.vertices.push_back({kv::narrow(p), {}, {}});
    }
  const auto at = [columns](std::size_t r, std::size_t c) {
    return static_cast<std::uint32_t>(r * columns + c % columns);
  };
  for (std::size_t r = 0; r < rings; ++r)
    for (std::size_t c = 0; c < columns; ++c)
      mesh.indices.insert(mesh.indices.end(), {at(r, c), at(r, c + 1), at(r + 1, c), at(r, c + 1),
                                               at(r + 1, c + 1), at(r + 1, c)});
  return mesh;
}

}  // namespace shapes
