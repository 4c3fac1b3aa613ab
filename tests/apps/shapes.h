// Small models for the tests.
#pragma once

#include <cstddef>

#include "apps/load/model.h"

namespace shapes {

// A box around `center` with one corner shared by its three sides, without normals.
kv::Model box(kv::Vec3 center, kv::Vec3 size);

// A sphere of `rings` by 2 `rings` cells, its normals missing.
kv::Mesh sphere(std::size_t rings);

}  // namespace shapes
