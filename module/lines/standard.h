// Handing a polyline to the framework's general routine of the same action.
#pragma once

#include "module/core/action_forms.h"
#include "module/lines/polyline.h"
#include "module/lines/rules.h"

namespace zbuffer::lines {

/// Calls the general routine with the arguments of `line`.
template <Layer layer, Kind kind>
void call_standard(const Polyline& line) {
  const auto call = [&](auto* plain, auto* colorized, auto* gouraud) {
    if constexpr (kind == Kind::plain) {
      hand_over(line, plain);
    } else if constexpr (kind == Kind::colorized) {
      hand_over(line, colorized);
    } else {
      hand_over(line, gouraud);
    }
  };
  if constexpr (layer == Layer::any) {
    call(KD_Standard_Draw_2DI_Polyline, KD_Standard_Draw_2DI_Colorized_Polyline,
         KD_Standard_Draw_2DI_Gouraud_Polyline);
  } else {
    call(KD_Standard_Draw_DCI_Polyline, KD_Standard_Draw_DCI_Colorized_Polyline,
         KD_Standard_Draw_DCI_Gouraud_Polyline);
  }
}

}  // namespace zbuffer::lines
