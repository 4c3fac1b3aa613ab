// Faces of one plane that touch each other, as one: the large flat faces of parts.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/load/vec.h"

namespace kv {

// By face, the area of all faces that it lies in one plane with and is joined to by others of them,
// doubled. `facets` are the area vectors of the faces, `directions` the same of unit length; the
// faces around place p are those from `first[p]` on.
std::vector<double> region_areas(std::span<const Vec3> facets, std::span<const Vec3> directions,
                                 std::span<const std::uint32_t> first,
                                 std::span<const std::uint32_t> faces);

}  // namespace kv
