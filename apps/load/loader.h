// Loads a model file that may be damaged or hostile.
#pragma once

#include <cstddef>
#include <string>

#include "apps/load/model.h"

namespace kv {

struct Load_Limits {
  double seconds = 60;
  std::size_t memory_bytes = std::size_t{4} << 30;
  std::size_t triangles = 10'000'000;
};

struct Load_Choices {
  bool textures = true;
  bool polygons = false;  // faces keep all their corners; without textures then
};

// Delivers a checked model with at least one triangle, with normals, and with equal vertices
// joined; or throws a Failure of Exit_Code::input. Forks: call it while there is one thread.
Model load_model(const std::string& path, const Load_Limits& limits,
                 const Load_Choices& choices = {});

// A picture of any size (PNG, JPEG or TGA), under the same limits of time and memory.
Image load_image(const std::string& path, const Load_Limits& limits);

}  // namespace kv
