// Runs in the loader process. From the scene of the import library, whatever its format, come
// meshes in the coordinates of the world, with the colours of the display.
#include "apps/load/importer.h"

#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "apps/load/material_importer.h"
#include "apps/load/model_folder.h"
#include "apps/load/model_io.h"
#include "apps/load/mtl_maps.h"
#include "apps/load/stl_colors.h"
#include "apps/load/texture_importer.h"
#include "apps/load/wire.h"

namespace kv {
namespace {

struct Instance {
  const aiMesh* mesh = nullptr;
  aiMatrix4x4 to_world;
};

struct Part {
  Instance instance;
  Look look;
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
  if (first == "obj") return Format::obj;
  return first == "stl" ? Format::stl : Format::other;
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

// Points and lines go another way.
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

// Gives the vertices of an instance, one after the other.
class Vertex_Source {
 public:
  Vertex_Source(const Instance& instance, Format format, const Look& look, bool with_normals)
      : source_(*instance.mesh),
        to_world_(instance.to_world),
        of_normals_(aiMatrix3x3(to_world_).Inverse().Transpose()),
        format_(format),
        look_(look),
        with_normals_(with_normals) {
    // Some writers leave the alpha of vertices empty.
    for (unsigned i = 0; source_.HasVertexColors(0) && i < source_.mNumVertices; ++i)
      has_alpha_ = has_alpha_ || source_.mColors[0][i].a > 0;
    has_alpha_ = has_alpha_ && look.vertex_alpha;
  }

  Vertex vertex(unsigned i) const {
    Vertex vertex;
    const aiVector3D position = to_world_ * source_.mVertices[i];
    vertex.position = {position.x, position.y, position.z};
    if (with_normals_) {
      const aiVector3D normal = of_normals_ * source_.mNormals[i];
      vertex.normal = {normal.x, normal.y, normal.z};
    }
    if (source_.HasVertexColors(0)) {
      vertex.color = color_of(source_.mColors[0][i], format_);
      if (!has_alpha_) vertex.color.alpha = 1;
    }
    if (look_.mapping)
      vertex.place = look_.mapping->place(source_.mTextureCoords[look_.mapping->channel][i]);
    return vertex;
  }

 private:
  const aiMesh& source_;
  aiMatrix4x4 to_world_;
  aiMatrix3x3 of_normals_;
  Format format_;
  Look look_;
  bool with_normals_, has_alpha_ = false;
};

Mesh mesh_of(const Instance& instance, Format format, const Look& look) {
  const aiMesh& source = *instance.mesh;
  Mesh mesh;
  mesh.material = look.material;
  // The normals of STL are those of its facets and not of the smooth surface.
  mesh.has_normals = source.HasNormals() && format != Format::stl;
  const Vertex_Source vertices(instance, format, look, mesh.has_normals);
  mesh.vertices.resize(source.mNumVertices);
  for (unsigned i = 0; i < source.mNumVertices; ++i) mesh.vertices[i] = vertices.vertex(i);
  add_faces(mesh, source, aiMatrix3x3(instance.to_world).Determinant() < 0);
  return mesh;
}

// The points and lines of an instance, without those that have no place.
Loose loose_of(const Instance& instance, Format format, const Look& look) {
  constexpr std::uint32_t unused = ~std::uint32_t{0};
  const aiMesh& source = *instance.mesh;
  Loose loose;
  loose.material = look.material;
  loose.has_normals = source.HasNormals();
  const Vertex_Source vertices(instance, format, look, loose.has_normals);
  std::vector<std::uint32_t> numbers(source.mNumVertices, unused);
  const auto number_of = [&](unsigned i) {
    if (numbers[i] == unused) {
      numbers[i] = static_cast<std::uint32_t>(loose.vertices.size());
      loose.vertices.push_back(vertices.vertex(i));
    }
    return numbers[i];
  };
  const auto has_place = [&](unsigned i) {
    const aiVector3D& p = source.mVertices[i];
    return i < source.mNumVertices && is_finite(Vec3f{p.x, p.y, p.z});
  };
  for (unsigned i = 0; i < source.mNumFaces; ++i) {
    const aiFace& face = source.mFaces[i];
    if (is_drawn(face) || !std::all_of(face.mIndices, face.mIndices + face.mNumIndices, has_place))
      continue;
    std::vector<std::uint32_t>& indices = face.mNumIndices == 2 ? loose.lines : loose.points;
    for (unsigned c = 0; c < face.mNumIndices; ++c) indices.push_back(number_of(face.mIndices[c]));
  }
  // Without any face the vertices themselves are meant.
  for (unsigned i = 0; source.mNumFaces == 0 && i < source.mNumVertices; ++i)
    if (has_place(i)) loose.points.push_back(number_of(i));
  return loose;
}

// STL has colours for facets, each of which has three vertices of its own.
void color_facets(Mesh& mesh, const std::vector<Color>& colors, std::uint32_t white) {
  if (colors.size() * 3 != mesh.vertices.size()) return;
  mesh.material = white;
  for (std::size_t i = 0; i < mesh.vertices.size(); ++i) mesh.vertices[i].color = colors[i / 3];
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
  Texture_Importer textures(*scene, folder, format == Format::gltf,
                            format == Format::obj ? read_mtl_maps(path, folder) : Mtl_Maps());
  const Material_Importer materials(*scene, format, with_textures ? &textures : nullptr);
  warnings.insert(warnings.end(), textures.warnings().begin(), textures.warnings().end());
  std::vector<Part> parts;
  std::vector<Loose> loose;
  for (const Instance& instance : instances) {
    if (triangles_of(*instance.mesh) > 0) {
      parts.push_back({instance, materials.look_of(*instance.mesh)});
      if (const std::optional<Look> layer = materials.layer_of(*instance.mesh))
        parts.push_back({instance, *layer});
    }
    Loose rest = loose_of(instance, format, materials.plain_look_of(*instance.mesh));
    if (!rest.vertices.empty()) loose.push_back(std::move(rest));
  }
  send(encode_head({materials.list(), warnings, textures.images().size(), parts.size(),
                    loose.size(), format == Format::stl}));
  for (const Image& image : textures.images()) send(encode_image(image));
  const std::vector<Color> facet_colors =
      format == Format::stl ? read_stl_colors(path) : std::vector<Color>();
  for (const Part& part : parts) {
    Mesh mesh = mesh_of(part.instance, format, part.look);
    color_facets(mesh, facet_colors, materials.white());
    send(encode_mesh(mesh));
  }
  for (const Loose& rest : loose) send(encode_loose(rest));
}

}  // namespace kv
