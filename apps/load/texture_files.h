// Finding the files that a model names as its textures: names are often those of another machine.
#pragma once

#include <string>

#include "apps/load/model_folder.h"

namespace kv {

// The file as it is named, seen from the model's folder; else one of that base name, in whatever
// case, in the folder or its subfolder "textures". When none can be read, the state gives the
// reason.
Reference find_texture(const Model_Folder& folder, const std::string& name);

}  // namespace kv
