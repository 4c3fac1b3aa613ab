// Brings a checked mesh into the form that drawing expects.
#pragma once

#include "apps/load/model.h"

namespace kv {

// Edges sharper than this stay edges when normals are made.
inline constexpr double crease_degrees = 40;

// Drops faces without an area, makes normals where there are none, joins equal vertices.
void repair_mesh(Mesh& mesh);

}  // namespace kv
