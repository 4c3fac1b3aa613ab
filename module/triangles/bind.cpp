// Twelve actions, by layer and kind.
#include "module/triangles/bind.h"

#include "module/core/strip_actions.h"
#include "module/triangles/entry.h"
#include "module/triangles/rules.h"

namespace zbuffer::triangles {

void bind_polytriangles(Software_Z_Buffer& renderer, Variant variant) {
  using enum KT_Action;
  constexpr Entry_Step_Set relevant = steps_in(entry_steps);
  with_constant(variant, [&]<Variant v>() {
    Strip_Actions<enter, relevant, Layer::float_any, v>::template bind_all<
        Draw_2D_Polytriangle, Draw_2D_Colorized_Polytriangle, Draw_2D_Gouraud_Polytriangle>(
        renderer);
    Strip_Actions<enter, relevant, Layer::float_inside, v>::template bind_all<
        Draw_DC_Polytriangle, Draw_DC_Colorized_Polytriangle, Draw_DC_Gouraud_Polytriangle>(
        renderer);
    Strip_Actions<enter, relevant, Layer::int_any, v>::template bind_all<
        Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle, Draw_2DI_Gouraud_Polytriangle>(
        renderer);
    Strip_Actions<enter, relevant, Layer::int_inside, v>::template bind_all<
        Draw_DCI_Polytriangle, Draw_DCI_Colorized_Polytriangle, Draw_DCI_Gouraud_Polytriangle>(
        renderer);
  });
}

}  // namespace zbuffer::triangles
