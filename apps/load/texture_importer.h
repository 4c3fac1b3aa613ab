// The textures of a model that is being read, made ready for drawing. Part of the loader process.
#pragma once

#include <assimp/scene.h>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "apps/load/model.h"
#include "apps/load/model_folder.h"
#include "apps/load/mtl_maps.h"

namespace kv {

// Where a material's texture lies on a surface.
struct Texture_Mapping {
  unsigned channel = 0;  // of the coordinates
  // From the coordinates of the mesh, row by row.
  std::array<double, 3> s = {1, 0, 0}, t = {0, 1, 0};

  Texture_Place place(const aiVector3D& coordinates) const;
};

// The meaning of alpha in a material.
struct Alpha_Use {
  enum class Kind { kept, opaque, cut } kind = Kind::kept;
  float least_shown = 0;  // of `cut`, from 0 to 1
};
Alpha_Use alpha_use_of(const aiMaterial& source, bool is_gltf);

class Texture_Importer {
 public:
  // `maps`: what the library does not tell of the textures of OBJ.
  Texture_Importer(const aiScene& scene, const Model_Folder& folder, bool is_gltf, Mtl_Maps maps);

  // Gives `material` the texture that `source` names, if any, with its opacity; a texture that
  // cannot be had is replaced by a checker, with one warning.
  Texture_Mapping add_texture(Material& material, const aiMaterial& source);
  // The same for the texture of the light that a material gives off, which becomes its alpha.
  Texture_Mapping add_emission(Material& layer, const aiMaterial& source);

  const std::vector<Image>& images() const { return images_; }
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  // A texture as a material names it.
  struct Named {
    std::string name;  // empty: none
    Wrap wrap_s = Wrap::repeat, wrap_t = Wrap::repeat;
    Texture_Mapping mapping{};
  };
  // What becomes of the image of a file on its way to a texture.
  struct Use {
    Alpha_Use alpha{};
    std::string opacity{};  // the file of its alpha; empty: its own
    bool as_light = false;

    std::string text() const;
  };

  Named find(const aiMaterial& source, aiTextureType type) const;
  Texture_Mapping set(Material& material, const Named& found, const Use& use);
  std::uint32_t index_of(const std::string& name, const Use& use);
  std::uint32_t checker_index();
  Image read(const std::string& name) const;
  Image image_of(const std::string& name, const Use& use);
  Image prepared(Image image, const Use& use) const;
  void warn(const std::string& name, const std::string& what, const std::string& instead);

  const aiScene& scene_;
  const Model_Folder& folder_;
  bool is_gltf_;
  Mtl_Maps maps_;
  std::vector<Image> images_;
  std::vector<std::string> warnings_;
  std::map<std::string, std::uint32_t> known_;
  std::uint32_t checker_ = no_texture;
  std::size_t texels_ = 0;
};

// What all textures of a model may take together.
inline constexpr std::size_t most_texels = std::size_t{1} << 27;

// The picture in place of a texture that cannot be had.
Image checker_image();

}  // namespace kv
