// Triangle strips of a mesh. They do not depend on the view, so one making serves many pictures.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/load/model.h"

namespace kv {

// A module needs no allocation for a call of up to this many points. Even, so that a strip that
// is cut here goes on with the same winding.
inline constexpr std::size_t longest_strip = 64;

// Strips over the vertices of one mesh: triangle i of a strip is (i, i+1, i+2), with the first two
// exchanged when i is odd.
struct Strip_Set {
  std::vector<std::uint32_t> indices;
  std::vector<std::uint32_t> first = {0};  // by strip, and one more

  std::size_t count() const { return first.size() - 1; }
  std::span<const std::uint32_t> strip(std::size_t i) const {
    return std::span(indices).subspan(first[i], first[i + 1] - first[i]);
  }
};

// Every triangle of the mesh, once and with its winding; of a mesh with polygons nothing.
Strip_Set make_strips(const Mesh& mesh);

// The corners of triangle `t` of a strip, in the winding of the mesh.
struct Corners {
  std::size_t a, b, c;
};
constexpr Corners strip_triangle(std::size_t t) {
  return t % 2 == 0 ? Corners{t, t + 1, t + 2} : Corners{t + 1, t, t + 2};
}

}  // namespace kv
