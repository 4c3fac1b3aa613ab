// Checks what came back from the loader process before anything computes with it.
#pragma once

#include <cstddef>

#include "apps/load/model.h"

namespace kv {

// Throws std::runtime_error saying what is wrong: an index out of range, a position that is no
// number, a texture that is not prepared, more than `most_triangles`. What can be repaired is:
// colours are brought into 0..1, normals that are no directions are dropped (has_normals becomes
// false).
void check_model(Model& model, std::size_t most_triangles);

}  // namespace kv
