// The textures of a model that is being read, made ready for drawing. Part of the loader process.
#pragma once

#include <assimp/scene.h>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "apps/load/model.h"
#include "apps/load/model_folder.h"

namespace kv {

// Where a material's texture lies on a surface.
struct Texture_Mapping {
  unsigned channel = 0;  // of the coordinates
  // From the coordinates of the mesh, row by row.
  std::array<double, 3> s = {1, 0, 0}, t = {0, 1, 0};

  Texture_Place place(const aiVector3D& coordinates) const;
};

class Texture_Importer {
 public:
  Texture_Importer(const aiScene& scene, const Model_Folder& folder, bool is_gltf);

  // Gives `material` the texture that `source` names, if any; a texture that cannot be had is
  // replaced by a checker, with one warning.
  Texture_Mapping add_texture(Material& material, const aiMaterial& source);

  const std::vector<Image>& images() const { return images_; }
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  // The meaning of the alpha of texels.
  struct Alpha_Use {
    enum class Kind { kept, opaque, cut } kind = Kind::kept;
    float least_shown = 0;  // of `cut`, from 0 to 1
  };

  Alpha_Use alpha_use_of(const aiMaterial& source) const;
  std::uint32_t index_of(const std::string& name, const Alpha_Use& alpha);
  std::uint32_t checker_index();
  Image read(const std::string& name) const;
  Image prepared(Image image, const Alpha_Use& alpha) const;
  void warn(const std::string& name, const std::string& what);

  const aiScene& scene_;
  const Model_Folder& folder_;
  bool is_gltf_;
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
