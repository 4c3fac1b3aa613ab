// Puts a variant's routines behind the polyline actions.
#pragma once

#include "module/core/action_forms.h"
#include "module/lines/instances.h"

namespace zbuffer::lines {

template <Layer layer, Variant variant>
using Polyline_Actions =
    Action_Forms<Polyline, KT_DCI_Point, &enter<layer, variant, Kind::plain>,
                 &enter<layer, variant, Kind::colorized>, &enter<layer, variant, Kind::gouraud>>;

template <Variant variant>
void bind_polylines_of(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  Polyline_Actions<Layer::any, variant>::template bind_all<
      Draw_2DI_Polyline, Draw_2DI_Colorized_Polyline, Draw_2DI_Gouraud_Polyline>(renderer);
  Polyline_Actions<Layer::inside, variant>::template bind_all<
      Draw_DCI_Polyline, Draw_DCI_Colorized_Polyline, Draw_DCI_Gouraud_Polyline>(renderer);
}

}  // namespace zbuffer::lines
