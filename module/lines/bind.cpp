// Six actions, by layer and kind. Polylines have no float layers.
#include "module/lines/bind.h"

#include "module/core/strip_actions.h"
#include "module/lines/entry.h"
#include "module/lines/rules.h"

namespace zbuffer::lines {

void bind_polylines(Software_Z_Buffer& renderer, Variant variant) {
  using enum KT_Action;
  constexpr Entry_Step_Set relevant = steps_in(entry_steps);
  with_constant(variant, [&]<Variant v>() {
    Strip_Actions<enter, relevant, Layer::int_any, v>::template bind_all<
        Draw_2DI_Polyline, Draw_2DI_Colorized_Polyline, Draw_2DI_Gouraud_Polyline>(renderer);
    Strip_Actions<enter, relevant, Layer::int_inside, v>::template bind_all<
        Draw_DCI_Polyline, Draw_DCI_Colorized_Polyline, Draw_DCI_Gouraud_Polyline>(renderer);
  });
}

}  // namespace zbuffer::lines
