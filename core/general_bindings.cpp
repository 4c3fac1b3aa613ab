// Families that are left to the framework's general routines so far.

#include "core/bindings.h"

namespace zbuffer {

void bind_tiling_actions(Software_Z_Buffer&) {}

}  // namespace zbuffer
