// A model as plain data: what the loader delivers and everything else reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "apps/vec.h"

namespace kv {

// Components from 0 to 1, as shown on the display (not linear light).
struct Color {
  float red = 1, green = 1, blue = 1, alpha = 1;
};

struct Vertex {
  Vec3f position;
  Vec3f normal;  // unit length, or meaningless while Mesh::has_normals is false
  Color color;   // multiplies the diffuse colour of the material
};

struct Material {
  Color diffuse;
};

// One material's triangles, in the coordinates of the world (node transforms are applied).
struct Mesh {
  std::vector<Vertex> vertices;
  std::vector<std::uint32_t> indices;  // three a triangle
  std::uint32_t material = 0;
  bool has_normals = false;
};

struct Model {
  std::vector<Material> materials;
  std::vector<Mesh> meshes;
};

inline std::size_t triangle_count(const Model& model) {
  std::size_t indices = 0;
  for (const Mesh& mesh : model.meshes) indices += mesh.indices.size();
  return indices / 3;
}

}  // namespace kv
