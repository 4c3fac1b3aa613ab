// Binds the seven `2DD` routines to their actions; they are the same in every variant.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer::tiling {

void bind_tiling_actions(Software_Z_Buffer& renderer);

}  // namespace zbuffer::tiling
