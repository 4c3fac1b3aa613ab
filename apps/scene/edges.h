// The edges of a mesh, for pictures of lines.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/load/model.h"

namespace kv {

enum class Edge_Choice {
  all,
  feature  // borders, creases and outlines
};

// Faces that meet at more than this make a crease.
inline constexpr double feature_degrees = 25;

struct Edge {
  std::uint32_t a, b;  // vertices of the mesh
};

// An edge of a smooth surface, which is seen where it is the outline of the surface.
struct Bend {
  Edge edge;
  Vec3f first, second;  // normals of its two faces, on one side of the surface
};

struct Edges {
  std::vector<Edge> shown;  // from everywhere
  std::vector<Bend> bends;  // none where all edges are shown
};

// Each edge once, although vertices of one place may differ in normal or colour.
Edges edges_of(const Mesh& mesh, Edge_Choice choice);

}  // namespace kv
