// The nineteen options of the renderer.
#pragma once

#include "host/z_buffer_options.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer {

/// Makes all options in `table`, in their order of creation, and returns those with a slot.
Software_Z_Buffer::Option_Set make_options(KT_Option_Table& table);

/// Puts the setters into the values of "ZBuffer Write" and "ZBuffer Test" of `table`.
void install_depth_setters(KT_Option_Table& table);

/// Held by "ZBuffer Write": stores `write` in `zbuffer_write`.
void set_zbuffer_write(KT_Renderer_Data* renderer, std::uint8_t write);
/// Held by "ZBuffer Test": stores `*mode` in `zbuffer_test`.
void set_zbuffer_test(KT_Renderer_Data* renderer, const unsigned* mode);

}  // namespace zbuffer
