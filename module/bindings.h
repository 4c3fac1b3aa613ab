// Which routine stands behind which action. Every family of routines binds its own actions; the
// table of this file says for each variant whether it does.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer {

/// Binds all actions for `variant`. Actions that the table keeps are not touched.
void bind_actions(Software_Z_Buffer& renderer, Variant variant);
/// Binds the seven `2DD` actions; they are the same in every variant.
void bind_tiling_actions(Software_Z_Buffer& renderer);

// Defined by the families: each binds its own routines of `variant`.
void bind_polygons(Software_Z_Buffer& renderer);
void bind_polytriangles(Software_Z_Buffer& renderer, Variant variant);
void bind_textured_polytriangles(Software_Z_Buffer& renderer, Variant variant);
void bind_polylines(Software_Z_Buffer& renderer, Variant variant);
void bind_dots(Software_Z_Buffer& renderer, Variant variant);
void bind_polymarkers(Software_Z_Buffer& renderer, Variant variant);
void bind_rgb32_images(Software_Z_Buffer& renderer, Variant variant);
void bind_index8_images(Software_Z_Buffer& renderer, Variant variant);
void bind_depth_clear(Software_Z_Buffer& renderer, Variant variant);
void bind_depth_transfer(Software_Z_Buffer& renderer, Variant variant);
void bind_color_services(Software_Z_Buffer& renderer, bool direct);

/// Binds a routine whose address is known at compile time.
template <KT_Action action>
void bind(Software_Z_Buffer& renderer, korvel::Routine_Of<action>* routine) {
  renderer.actions.bind<action>(&renderer, routine);
}

}  // namespace zbuffer
