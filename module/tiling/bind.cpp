// Seven actions of points in double precision.
#include "module/tiling/bind.h"

#include "module/core/bind.h"
#include "module/tiling/polylines.h"
#include "module/tiling/polytriangles.h"

namespace zbuffer::tiling {

void bind_tiling_actions(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  bind<Draw_2DD_Polytriangle>(renderer, &draw_polytriangle);
  bind<Draw_2DD_Colorized_Polytriangle>(renderer, &draw_colorized_polytriangle);
  bind<Draw_2DD_Gouraud_Polytriangle>(renderer, &draw_gouraud_polytriangle);
  bind<Draw_2DD_Textured_Polytriangle>(renderer, &draw_textured_polytriangle);
  bind<Draw_2DD_Polyline>(renderer, &draw_polyline);
  bind<Draw_2DD_Colorized_Polyline>(renderer, &draw_colorized_polyline);
  bind<Draw_2DD_Gouraud_Polyline>(renderer, &draw_gouraud_polyline);
}

}  // namespace zbuffer::tiling
