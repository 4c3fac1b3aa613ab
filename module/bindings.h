// Which routine each action has. Every family binds its own actions; the table in bindings.cpp says
// for each variant whether it does.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer {

/// Binds all actions for `variant`. Actions that the table keeps are not touched.
void bind_actions(Software_Z_Buffer& renderer, Variant variant);

}  // namespace zbuffer
