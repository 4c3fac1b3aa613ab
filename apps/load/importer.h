// The half of loading that runs in the loader process: it may crash, hang or eat memory.
#pragma once

#include <cstddef>
#include <string>

#include "apps/load/child_process.h"
#include "apps/load/loader.h"

namespace kv {

// Reads OBJ, PLY, STL or glTF and sends one answer in the form of apps/wire.h.
void import_model(const std::string& path, std::size_t most_triangles, const Load_Choices& choices,
                  const Child_Send& send);

}  // namespace kv
