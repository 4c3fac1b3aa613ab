// Puts a variant's routines behind the polytriangle actions.
#pragma once

#include "module/core/action_forms.h"
#include "module/triangles/instances.h"

namespace zbuffer {

template <Layer layer, Variant variant>
using Polytriangle_Actions =
    Action_Forms<Strip_At<layer>, std::conditional_t<is_float_layer<layer>, KT_Point, KT_DCI_Point>,
                 &enter<layer, variant, Kind::flat>, &enter<layer, variant, Kind::colorized>,
                 &enter<layer, variant, Kind::gouraud>>;

template <Variant variant>
void bind_polytriangles_of(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  Polytriangle_Actions<Layer::float_any, variant>::template bind_all<
      Draw_2D_Polytriangle, Draw_2D_Colorized_Polytriangle, Draw_2D_Gouraud_Polytriangle>(renderer);
  Polytriangle_Actions<Layer::float_inside, variant>::template bind_all<
      Draw_DC_Polytriangle, Draw_DC_Colorized_Polytriangle, Draw_DC_Gouraud_Polytriangle>(renderer);
  Polytriangle_Actions<Layer::int_any, variant>::template bind_all<
      Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle, Draw_2DI_Gouraud_Polytriangle>(
      renderer);
  Polytriangle_Actions<Layer::int_inside, variant>::template bind_all<
      Draw_DCI_Polytriangle, Draw_DCI_Colorized_Polytriangle, Draw_DCI_Gouraud_Polytriangle>(
      renderer);
}

}  // namespace zbuffer
