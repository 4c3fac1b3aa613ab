// The edges of a mesh, for pictures of lines.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/load/model.h"

namespace kv {

enum class Edge_Choice {
  all,
  feature  // borders and creases
};

// Faces that meet at more than this make a crease.
inline constexpr double feature_degrees = 25;

struct Edge {
  std::uint32_t a, b;  // vertices of the mesh
};

// Each edge once, although vertices of one place may differ in normal or colour.
std::vector<Edge> edges_of(const Mesh& mesh, Edge_Choice choice);

}  // namespace kv
