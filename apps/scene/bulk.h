// Damaged and careless files have vertices so far out that all the rest would be less than a pixel.
#pragma once

#include <cstddef>

#include "apps/load/model.h"

namespace kv {

struct Found_Bulk {
  Bulk bulk;
  std::size_t vertices = 0, left_out = 0;
};

// At least three quarters of the vertices, and as much more as is not a thousand times farther out
// than they are.
Found_Bulk bulk_of(const Model& model);

}  // namespace kv
