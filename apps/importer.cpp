#include "apps/importer.h"

#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <cmath>
#include <sstream>
#include <vector>

#include "apps/wire.h"

namespace kv {
namespace {

enum class Format { gltf, stl, other };

struct Instance {
  const aiMesh* mesh = nullptr;
  aiMatrix4x4 to_world;
};

// Of the many formats the library guesses at, only the wanted ones stay: each one more is one more
// parser that a damaged file can reach.
void keep_wanted_formats(Assimp::Importer& importer) {
  constexpr std::array<std::string_view, 5> wanted = {"obj", "ply", "stl", "gltf", "glb"};
  for (std::size_t i = importer.GetImporterCount(); i-- > 0;) {
    std::istringstream extensions(importer.GetImporterInfo(i)->mFileExtensions);
    bool keep = false;
    for (std::string name; extensions >> name;)
      keep = keep || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    if (!keep) importer.UnregisterLoader(importer.GetImporter(i));
  }
}

Format format_of(const Assimp::Importer& importer) {
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  if (index < 0) return Format::other;
  std::istringstream extensions(
      importer.GetImporterInfo(static_cast<std::size_t>(index))->mFileExtensions);
  std::string first;
  extensions >> first;
  if (first == "gltf" || first == "glb") return Format::gltf;
  return first == "stl" ? Format::stl : Format::other;
}

// Colours of glTF are linear light; a model's colours here are those of the display.
float to_display(float linear) {
  const float x = std::clamp(linear, 0.0f, 1.0f);
  return x <= 0.0031308f ? 12.92f * x : 1.055f * std::pow(x, 1 / 2.4f) - 0.055f;
}

Color color_of(const aiColor4D& color, Format format) {
  if (format != Format::gltf) return {color.r, color.g, color.b, color.a};
  return {to_display(color.r), to_display(color.g), to_display(color.b), color.a};
}

std::vector<Material> materials_of(const aiScene& scene, Format format) {
  std::vector<Material> materials(scene.mNumMaterials);
  for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
    const aiMaterial& source = *scene.mMaterials[i];
    aiColor4D diffuse(0.6f, 0.6f, 0.6f, 1.0f);
    if (source.Get(AI_MATKEY_BASE_COLOR, diffuse) != aiReturn_SUCCESS) {
      source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
      float opacity = 1;
      if (source.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS) diffuse.a = opacity;
    }
    materials[i].diffuse = color_of(diffuse, format);
  }
  return materials;
}

// Walks the nodes without recursion: a damaged file may nest them without end.
std::vector<Instance> instances_of(const aiScene& scene) {
  struct Visit {
    const aiNode* node;
    aiMatrix4x4 to_parent;
  };
  std::vector<Instance> instances;
  std::vector<Visit> waiting;
  if (scene.mRootNode) waiting.push_back({scene.mRootNode, aiMatrix4x4()});
  while (!waiting.empty()) {
    const Visit visit = waiting.back();
    waiting.pop_back();
    const aiMatrix4x4 to_world = visit.to_parent * visit.node->mTransformation;
    for (unsigned i = 0; i < visit.node->mNumMeshes; ++i) {
      const unsigned mesh = visit.node->mMeshes[i];
      if (mesh < scene.mNumMeshes) instances.push_back({scene.mMeshes[mesh], to_world});
    }
    for (unsigned i = 0; i < visit.node->mNumChildren; ++i)
      waiting.push_back({visit.node->mChildren[i], to_world});
  }
  return instances;
}

std::size_t triangles_of(const aiMesh& mesh) {
  return static_cast<std::size_t>(
      std::count_if(mesh.mFaces, mesh.mFaces + mesh.mNumFaces,
                    [](const aiFace& face) { return face.mNumIndices == 3; }));
}

void add_triangles(Mesh& mesh, const aiMesh& source, bool mirrored) {
  mesh.indices.reserve(3 * triangles_of(source));
  for (unsigned i = 0; i < source.mNumFaces; ++i) {
    const aiFace& face = source.mFaces[i];
    if (face.mNumIndices != 3) continue;  // points and lines
    mesh.indices.push_back(face.mIndices[0]);
    mesh.indices.push_back(face.mIndices[mirrored ? 2 : 1]);
    mesh.indices.push_back(face.mIndices[mirrored ? 1 : 2]);
  }
}

// `own_color_material` is white: outside glTF the colours of vertices stand for the material.
Mesh mesh_of(const Instance& instance, Format format, std::uint32_t own_color_material) {
  const aiMesh& source = *instance.mesh;
  const aiMatrix3x3 linear(instance.to_world);
  const aiMatrix3x3 of_normals = aiMatrix3x3(linear).Inverse().Transpose();
  const bool has_colors = source.HasVertexColors(0);
  Mesh mesh;
  mesh.material = has_colors && format != Format::gltf ? own_color_material : source.mMaterialIndex;
  // The normals of STL are those of its facets and say nothing of the smooth surface.
  mesh.has_normals = source.HasNormals() && format != Format::stl;
  mesh.vertices.resize(source.mNumVertices);
  for (unsigned i = 0; i < source.mNumVertices; ++i) {
    Vertex& vertex = mesh.vertices[i];
    const aiVector3D position = instance.to_world * source.mVertices[i];
    vertex.position = {position.x, position.y, position.z};
    if (mesh.has_normals) {
      const aiVector3D normal = of_normals * source.mNormals[i];
      vertex.normal = {normal.x, normal.y, normal.z};
    }
    if (has_colors) vertex.color = color_of(source.mColors[0][i], format);
  }
  add_triangles(mesh, source, linear.Determinant() < 0);
  return mesh;
}

std::string too_large(const char* things, std::size_t count, std::size_t most) {
  return "the model has " + std::to_string(count) + " " + things + ", more than the " +
         std::to_string(most) + " allowed; --max-triangles raises the limit";
}

// Why these instances are not to be sent; empty when they are.
std::string objection_to(const std::vector<Instance>& instances, std::size_t most_triangles) {
  std::size_t triangles = 0, vertices = 0;
  for (const Instance& instance : instances) {
    triangles += triangles_of(*instance.mesh);
    vertices += instance.mesh->mNumVertices;
  }
  if (triangles > most_triangles) return too_large("triangles", triangles, most_triangles);
  if (vertices > 3 * most_triangles) return too_large("vertices", vertices, 3 * most_triangles);
  return {};
}

}  // namespace

void import_model(const std::string& path, std::size_t most_triangles, const Child_Send& send) {
  Assimp::Importer importer;
  keep_wanted_formats(importer);
  const aiScene* scene = importer.ReadFile(path, aiProcess_Triangulate);
  if (!scene)
    return send(
        encode_refusal(std::string("cannot be read as a model: ") + importer.GetErrorString()));
  const std::vector<Instance> instances = instances_of(*scene);
  if (const std::string objection = objection_to(instances, most_triangles); !objection.empty())
    return send(encode_refusal(objection));
  const Format format = format_of(importer);
  std::vector<Material> materials = materials_of(*scene, format);
  const auto own_color_material = static_cast<std::uint32_t>(materials.size());
  materials.push_back(Material{});
  send(encode_head(materials, instances.size()));
  for (const Instance& instance : instances)
    send(encode_mesh(mesh_of(instance, format, own_color_material)));
}

}  // namespace kv
