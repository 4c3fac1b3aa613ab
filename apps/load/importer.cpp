// Runs in the loader process. From the scene of the import library, whatever its format, come
// meshes in the coordinates of the world, with the colours of the display.
#include "apps/load/importer.h"

#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <cmath>
#include <sstream>
#include <vector>

#include "apps/load/model_folder.h"
#include "apps/load/model_io.h"
#include "apps/load/texture_importer.h"
#include "apps/load/wire.h"

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

Color diffuse_of(const aiMaterial& source, Format format) {
  aiColor4D diffuse(0.6f, 0.6f, 0.6f, 1.0f);
  if (source.Get(AI_MATKEY_BASE_COLOR, diffuse) != aiReturn_SUCCESS) {
    source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
    float opacity = 1;
    if (source.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS) diffuse.a = opacity;
  }
  return color_of(diffuse, format);
}

// The file's materials, a white one, and again the file's without textures.
class Materials {
 public:
  Materials(const aiScene& scene, Format format, Texture_Importer* textures)
      : sources_(scene.mNumMaterials), format_(format) {
    for (unsigned i = 0; i < sources_; ++i) {
      const aiMaterial& source = *scene.mMaterials[i];
      Material& material = list_.emplace_back();
      material.diffuse = diffuse_of(source, format);
      plain_.push_back(material);
      mappings_.push_back(textures ? textures->add_texture(material, source) : Texture_Mapping{});
    }
    list_.emplace_back();
    list_.insert(list_.end(), plain_.begin(), plain_.end());
  }

  const std::vector<Material>& list() const { return list_; }

  std::uint32_t of(const aiMesh& mesh) const {
    if (mapping_of(mesh)) return mesh.mMaterialIndex;
    // Outside glTF the colours of vertices replace the material's.
    if (mesh.HasVertexColors(0) && format_ != Format::gltf) return sources_;
    return sources_ + 1 + mesh.mMaterialIndex;
  }

  // Gives `place` for a vertex; null when the mesh shows no texture.
  const Texture_Mapping* mapping_of(const aiMesh& mesh) const {
    const unsigned material = mesh.mMaterialIndex;
    if (material >= sources_ || list_[material].texture == no_texture) return nullptr;
    const Texture_Mapping& mapping = mappings_[material];
    return mesh.HasTextureCoords(mapping.channel) ? &mapping : nullptr;
  }

 private:
  std::uint32_t sources_;
  Format format_;
  std::vector<Material> list_, plain_;
  std::vector<Texture_Mapping> mappings_;
};

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

// Points and lines are left out.
bool is_drawn(const aiFace& face) {
  return face.mNumIndices >= 3;
}

std::size_t triangles_of(const aiMesh& mesh) {
  std::size_t triangles = 0;
  for (unsigned i = 0; i < mesh.mNumFaces; ++i)
    if (is_drawn(mesh.mFaces[i])) triangles += mesh.mFaces[i].mNumIndices - 2;
  return triangles;
}

// `mirrored`: the corners run the other way round. Each face begins with its first corner.
void add_faces(Mesh& mesh, const aiMesh& source, bool mirrored) {
  for (unsigned i = 0; i < source.mNumFaces; ++i) {
    const aiFace& face = source.mFaces[i];
    if (!is_drawn(face)) continue;
    const unsigned count = face.mNumIndices;
    for (unsigned c = 0; c < count; ++c)
      mesh.indices.push_back(face.mIndices[mirrored && c > 0 ? count - c : c]);
    mesh.face_sizes.push_back(count);
  }
  const auto is_triangle = [](std::uint32_t size) { return size == 3; };
  if (std::all_of(mesh.face_sizes.begin(), mesh.face_sizes.end(), is_triangle))
    mesh.face_sizes.clear();
}

Mesh mesh_of(const Instance& instance, Format format, const Materials& materials) {
  const aiMesh& source = *instance.mesh;
  const aiMatrix3x3 linear(instance.to_world);
  const aiMatrix3x3 of_normals = aiMatrix3x3(linear).Inverse().Transpose();
  const Texture_Mapping* const mapping = materials.mapping_of(source);
  Mesh mesh;
  mesh.material = materials.of(source);
  // The normals of STL are those of its facets and not of the smooth surface.
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
    if (source.HasVertexColors(0)) vertex.color = color_of(source.mColors[0][i], format);
    if (mapping) vertex.place = mapping->place(source.mTextureCoords[mapping->channel][i]);
  }
  add_faces(mesh, source, linear.Determinant() < 0);
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

void import_model(const std::string& path, std::size_t most_triangles, const Load_Choices& choices,
                  const Child_Send& send) {
  // Polygons are drawn in one colour each.
  const bool with_textures = choices.textures && !choices.polygons;
  const Model_Folder folder(path);
  std::vector<std::string> warnings;
  Assimp::Importer importer;
  importer.SetIOHandler(new Model_IO(path, folder, warnings));  // the importer deletes it
  keep_wanted_formats(importer);
  const aiScene* scene = importer.ReadFile(path, choices.polygons ? 0u : aiProcess_Triangulate);
  if (!scene)
    return send(encode_refusal(
        "cannot be read as a model: " +
        (warnings.empty() ? std::string(importer.GetErrorString()) : warnings.front())));
  const std::vector<Instance> instances = instances_of(*scene);
  if (const std::string objection = objection_to(instances, most_triangles); !objection.empty())
    return send(encode_refusal(objection));
  const Format format = format_of(importer);
  Texture_Importer textures(*scene, folder, format == Format::gltf);
  const Materials materials(*scene, format, with_textures ? &textures : nullptr);
  warnings.insert(warnings.end(), textures.warnings().begin(), textures.warnings().end());
  send(encode_head({materials.list(), warnings, textures.images().size(), instances.size()}));
  for (const Image& image : textures.images()) send(encode_image(image));
  for (const Instance& instance : instances)
    send(encode_mesh(mesh_of(instance, format, materials)));
}

}  // namespace kv
