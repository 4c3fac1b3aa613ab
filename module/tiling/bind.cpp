// Puts the double-precision entries behind their actions; one set serves every variant.
#include "module/bindings.h"
#include "module/tiling/polylines.h"
#include "module/tiling/polytriangles.h"

namespace zbuffer {

void bind_tiling_actions(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  bind<Draw_2DD_Polytriangle>(renderer, &tiling::draw_polytriangle);
  bind<Draw_2DD_Colorized_Polytriangle>(renderer, &tiling::draw_colorized_polytriangle);
  bind<Draw_2DD_Gouraud_Polytriangle>(renderer, &tiling::draw_gouraud_polytriangle);
  bind<Draw_2DD_Textured_Polytriangle>(renderer, &tiling::draw_textured_polytriangle);
  bind<Draw_2DD_Polyline>(renderer, &tiling::draw_polyline);
  bind<Draw_2DD_Colorized_Polyline>(renderer, &tiling::draw_colorized_polyline);
  bind<Draw_2DD_Gouraud_Polyline>(renderer, &tiling::draw_gouraud_polyline);
}

}  // namespace zbuffer
