// Finding the files that a model names as its textures: names are often those of another machine.
#pragma once

#include <filesystem>
#include <string>

namespace kv {

// The file as it is named, seen from the model's folder; else one of that base name, in whatever
// case, in the folder or its subfolder "textures". Empty when there is none.
std::filesystem::path find_texture(const std::filesystem::path& folder, const std::string& name);

}  // namespace kv
