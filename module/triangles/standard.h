// Handing a strip to the framework's general routine of the same action.
#pragma once

#include "module/core/action_forms.h"
#include "module/triangles/strip.h"

namespace zbuffer {

/// Calls the general routine with the arguments of `strip`.
template <Layer layer, Kind kind>
void call_standard(const Strip_At<layer>& strip) {
  const auto call = [&](auto* flat, auto* colorized, auto* gouraud) {
    if constexpr (kind == Kind::flat) {
      hand_over(strip, flat);
    } else if constexpr (kind == Kind::colorized) {
      hand_over(strip, colorized);
    } else {
      hand_over(strip, gouraud);
    }
  };
  if constexpr (layer == Layer::float_any) {
    call(KD_Standard_Draw_2D_Polytriangle, KD_Standard_Draw_2D_Colorized_Polytriangle,
         KD_Standard_Draw_2D_Gouraud_Polytriangle);
  } else if constexpr (layer == Layer::float_inside) {
    call(KD_Standard_Draw_DC_Polytriangle, KD_Standard_Draw_DC_Colorized_Polytriangle,
         KD_Standard_Draw_DC_Gouraud_Polytriangle);
  } else if constexpr (layer == Layer::int_any) {
    call(KD_Standard_Draw_2DI_Polytriangle, KD_Standard_Draw_2DI_Colorized_Polytriangle,
         KD_Standard_Draw_2DI_Gouraud_Polytriangle);
  } else {
    call(KD_Standard_Draw_DCI_Polytriangle, KD_Standard_Draw_DCI_Colorized_Polytriangle,
         KD_Standard_Draw_DCI_Gouraud_Polytriangle);
  }
}

}  // namespace zbuffer
