// The materials of a model that is being read. Part of the loader process.
#pragma once

#include <assimp/scene.h>

#include <optional>
#include <vector>

#include "apps/load/model.h"
#include "apps/load/texture_importer.h"

namespace kv {

enum class Format { gltf, obj, stl, other };

// Colours of glTF are linear light; a model's colours here are those of the display.
Color color_of(const aiColor4D& color, Format format);

// How a mesh is seen.
struct Look {
  std::uint32_t material = 0;
  const Texture_Mapping* mapping = nullptr;  // gives `place` for a vertex; null: no texture
  bool vertex_alpha = true;                  // the alpha of vertex colours counts
};

class Material_Importer {
 public:
  // Without `textures` materials have their colours alone.
  Material_Importer(const aiScene& scene, Format format, Texture_Importer* textures);

  const std::vector<Material>& list() const { return list_; }
  std::uint32_t white() const { return white_; }
  Look look_of(const aiMesh& mesh) const;
  Look plain_look_of(const aiMesh& mesh) const;  // without a texture
  // What a textured or emissive material shines by is drawn over it, as a layer of the same faces;
  // nothing for those that do not shine.
  std::optional<Look> layer_of(const aiMesh& mesh) const;

 private:
  struct Source {
    std::uint32_t textured, plain, layer;  // numbers in the list
    Texture_Mapping mapping, layer_mapping;
    bool vertex_alpha;
  };

  std::uint32_t add(const Material& material);
  std::uint32_t layer_for(const aiMaterial& source, Texture_Mapping& mapping,
                          Texture_Importer* textures);
  bool has_texture(const aiMesh& mesh) const;

  Format format_;
  std::vector<Material> list_;
  std::vector<Source> sources_;
  std::uint32_t white_ = 0;
};

}  // namespace kv
