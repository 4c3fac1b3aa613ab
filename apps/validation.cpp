#include "apps/validation.h"

#include <algorithm>
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

bool normalize_normals(Mesh& mesh) {
  for (Vertex& vertex : mesh.vertices) {
    const Vec3 direction = is_finite(vertex.normal) ? normalized(widen(vertex.normal)) : Vec3{};
    if (dot(direction, direction) < 0.5) return false;
    vertex.normal = narrow(direction);
  }
  return true;
}

void check_mesh(Mesh& mesh, const std::string& name, std::size_t material_count) {
  if (mesh.material >= material_count) refuse(name + " names a material that does not exist");
  if (mesh.indices.size() % 3 != 0) refuse(name + " ends in the middle of a triangle");
  const std::size_t vertex_count = mesh.vertices.size();
  for (const std::uint32_t index : mesh.indices)
    if (index >= vertex_count)
      refuse(name + " names vertex " + std::to_string(index) + " of " +
             std::to_string(vertex_count));
  for (Vertex& vertex : mesh.vertices) {
    if (!is_finite(vertex.position)) refuse(name + " has a coordinate that is not a finite number");
    clamp_color(vertex.color);
  }
  mesh.has_normals = mesh.has_normals && normalize_normals(mesh);
}

}  // namespace

void check_model(Model& model, std::size_t most_triangles) {
  const std::size_t triangles = triangle_count(model);
  if (triangles > most_triangles)
    refuse("it has " + std::to_string(triangles) + " triangles, more than " +
           std::to_string(most_triangles));
  for (Material& material : model.materials) clamp_color(material.diffuse);
  for (std::size_t i = 0; i < model.meshes.size(); ++i)
    check_mesh(model.meshes[i], "mesh " + std::to_string(i), model.materials.size());
}

}  // namespace kv
