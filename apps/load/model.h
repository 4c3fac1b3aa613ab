// A model as plain data: what the loader delivers and everything else reads.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "apps/common/color.h"
#include "apps/load/image.h"
#include "apps/load/vec.h"

namespace kv {

// A place in a texture in units of the whole image, t upward from its lower border.
struct Texture_Place {
  float s = 0, t = 0;
};

struct Vertex {
  Vec3f position;
  Vec3f normal;  // unit length, or meaningless while Mesh::has_normals is false
  Color color;   // multiplies the diffuse colour of the material
  Texture_Place place{};
};

inline constexpr std::uint32_t no_texture = ~std::uint32_t{0};

// What there is beyond the image.
enum class Wrap : std::uint32_t { repeat, clamp, mirror };

struct Material {
  Color diffuse;  // multiplies the texture; its alpha is the opacity
  std::uint32_t texture = no_texture;
  Wrap wrap_s = Wrap::repeat, wrap_t = Wrap::repeat;
  Color emission{0, 0, 0, 1};  // added to what the light shows; not of textured materials
  std::uint32_t unlit = 0;     // 1: seen in its own colour, whatever the light
  std::uint32_t layer = 0;     // 1: its faces repeat those of another mesh and lie on them
};

// The sides of textures are powers of two: renderers find texels by masks.
inline constexpr std::uint32_t largest_texture_side = 4096;

struct Texture {
  Image image;
  bool sees_through = false;  // some texel is not opaque
};

// One material's faces, in the coordinates of the world (node transforms are applied).
struct Mesh {
  std::vector<Vertex> vertices;
  std::vector<std::uint32_t> indices;  // the corners of one face after the other
  // How many corners each face has; empty: three.
  std::vector<std::uint32_t> face_sizes{};
  std::uint32_t material = 0;
  bool has_normals = false;

  bool has_polygons() const { return !face_sizes.empty(); }
};

// Points and lines that are no part of a face.
struct Loose {
  std::vector<Vertex> vertices;
  std::vector<std::uint32_t> points, lines;  // of vertices; two a line
  std::uint32_t material = 0;
  bool has_normals = false;
};

// A ball that holds what pictures are framed around; everything unless it was found otherwise.
struct Bulk {
  Vec3 middle;
  double radius = HUGE_VAL;

  bool holds(Vec3f position) const { return length(widen(position) - middle) <= radius; }
};

struct Model {
  std::vector<Material> materials;
  std::vector<Mesh> meshes;
  std::vector<Texture> textures{};
  std::vector<Loose> loose{};
  Bulk bulk{};
  bool up_is_z = false;                 // by the custom of its format
  std::vector<std::string> warnings{};  // what is drawn otherwise than the file says
};

// Calls `visit` with the corners of each face.
template <class Visit>
void for_each_face(const Mesh& mesh, Visit visit) {
  const std::span<const std::uint32_t> corners(mesh.indices);
  if (!mesh.has_polygons()) {
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) visit(corners.subspan(i, 3));
    return;
  }
  std::size_t first = 0;
  for (const std::uint32_t size : mesh.face_sizes) {
    visit(corners.subspan(first, size));
    first += size;
  }
}

// Twice the area of a face long, on the side from which it runs counter-clockwise.
inline Vec3 area_vector(const Mesh& mesh, std::span<const std::uint32_t> face) {
  const auto at = [&](std::size_t i) { return widen(mesh.vertices[face[i]].position); };
  const Vec3 first = at(0);
  Vec3 sum;
  for (std::size_t i = 1; i + 1 < face.size(); ++i)
    sum = sum + cross(at(i) - first, at(i + 1) - first);
  return sum;
}

template <class Visit>
void for_each_position(const Model& model, Visit visit) {
  for (const Mesh& mesh : model.meshes)
    for (const Vertex& vertex : mesh.vertices) visit(vertex.position);
  for (const Loose& loose : model.loose)
    for (const Vertex& vertex : loose.vertices) visit(vertex.position);
}

inline std::size_t face_count(const Mesh& mesh) {
  return mesh.has_polygons() ? mesh.face_sizes.size() : mesh.indices.size() / 3;
}

// Of polygons as many as they would be cut into.
inline std::size_t triangle_count(const Model& model) {
  std::size_t triangles = 0;
  for (const Mesh& mesh : model.meshes)
    triangles += mesh.has_polygons() ? mesh.indices.size() - 2 * mesh.face_sizes.size()
                                     : mesh.indices.size() / 3;
  return triangles;
}

}  // namespace kv
