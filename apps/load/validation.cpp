// After these checks every index, size and number of a model can be computed with.
#include "apps/load/validation.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>
#include <string>

namespace kv {
namespace {

[[noreturn]] void refuse(const std::string& what) {
  throw std::runtime_error(what);
}

float clamped(float component) {
  return std::isnan(component) ? 0.0f : std::clamp(component, 0.0f, 1.0f);
}

void clamp_color(Color& color) {
  color = {clamped(color.red), clamped(color.green), clamped(color.blue), clamped(color.alpha)};
}

bool normalize_normals(std::vector<Vertex>& vertices) {
  for (Vertex& vertex : vertices) {
    const Vec3 direction = is_finite(vertex.normal) ? normalized(widen(vertex.normal)) : Vec3{};
    if (dot(direction, direction) < 0.5) return false;
    vertex.normal = narrow(direction);
  }
  return true;
}

void check_material(Material& material, std::size_t texture_count) {
  clamp_color(material.diffuse);
  clamp_color(material.emission);
  if (material.texture != no_texture && material.texture >= texture_count)
    refuse("a material names a texture that does not exist");
  for (const Wrap wrap : {material.wrap_s, material.wrap_t})
    if (wrap > Wrap::mirror) refuse("a material repeats its texture in no known way");
}

void check_texture(const Texture& texture) {
  for (const std::uint32_t side : {texture.image.width, texture.image.height})
    if (!std::has_single_bit(side) || side > largest_texture_side)
      refuse("a texture has sides that are not prepared for drawing");
}

void check_faces(const Mesh& mesh, const std::string& name) {
  std::size_t corners = 0;
  for (const std::uint32_t size : mesh.face_sizes) {
    if (size < 3) refuse(name + " has a face of fewer than three corners");
    corners += size;
  }
  if (mesh.has_polygons() ? corners != mesh.indices.size() : mesh.indices.size() % 3 != 0)
    refuse(name + " ends in the middle of a face");
}

void check_mesh(Mesh& mesh, const std::string& name, std::size_t material_count) {
  if (mesh.material >= material_count) refuse(name + " names a material that does not exist");
  check_faces(mesh, name);
  const std::size_t vertex_count = mesh.vertices.size();
  for (const std::uint32_t index : mesh.indices)
    if (index >= vertex_count)
      refuse(name + " names vertex " + std::to_string(index) + " of " +
             std::to_string(vertex_count));
  for (Vertex& vertex : mesh.vertices) {
    if (!is_finite(vertex.position)) refuse(name + " has a coordinate that is not a finite number");
    clamp_color(vertex.color);
    if (!std::isfinite(vertex.place.s) || !std::isfinite(vertex.place.t)) vertex.place = {};
  }
  mesh.has_normals = mesh.has_normals && normalize_normals(mesh.vertices);
}

void check_loose(Loose& loose, std::size_t material_count) {
  if (loose.material >= material_count) refuse("a line or point names a material that is missing");
  if (loose.lines.size() % 2 != 0) refuse("a line ends at its first point");
  for (const auto* indices : {&loose.points, &loose.lines})
    for (const std::uint32_t index : *indices)
      if (index >= loose.vertices.size()) refuse("a line or point names a vertex that is missing");
  for (Vertex& vertex : loose.vertices) {
    if (!is_finite(vertex.position)) refuse("a point has a coordinate that is not a finite number");
    clamp_color(vertex.color);
  }
  loose.has_normals = loose.has_normals && normalize_normals(loose.vertices);
}

}  // namespace

void check_model(Model& model, std::size_t most_triangles) {
  for (std::size_t i = 0; i < model.meshes.size(); ++i)
    check_mesh(model.meshes[i], "mesh " + std::to_string(i), model.materials.size());
  for (Loose& loose : model.loose) check_loose(loose, model.materials.size());
  const std::size_t triangles = triangle_count(model);
  if (triangles > most_triangles)
    refuse("it has " + std::to_string(triangles) + " triangles, more than " +
           std::to_string(most_triangles));
  for (Material& material : model.materials) check_material(material, model.textures.size());
  for (const Texture& texture : model.textures) check_texture(texture);
}

}  // namespace kv
