// What material files of OBJ say of their textures and the import library leaves out: where the
// textures lie.
#pragma once

#include <assimp/material.h>

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "apps/load/model_folder.h"

namespace kv {

// A texture with an offset or a scale: place = coordinates * scale + offset.
struct Mtl_Map {
  std::string file;
  std::array<double, 2> offset{0, 0}, scale{1, 1};
};

using Mtl_Maps = std::map<std::pair<std::string, aiTextureType>, Mtl_Map>;  // by material

// Of the material files that an OBJ file names. Files that cannot be read are passed over: the
// import says so.
Mtl_Maps read_mtl_maps(const std::filesystem::path& model, const Model_Folder& folder);

}  // namespace kv
