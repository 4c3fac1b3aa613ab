// Puts a variant's routines behind the polyline actions.
#pragma once

#include "core/bindings.h"
#include "lines/instances.h"

namespace zbuffer::lines {

/// The actions of one layer: arguments of the contract in, a polyline out.
template <Layer layer, Variant variant>
struct Polyline_Actions {
  static void plain(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                    const KT_DCI_Point* points) {
    enter<layer, variant, Kind::plain>({renderer_of(object), rendition, count, points});
  }
  static void colorized(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                        const KT_DCI_Point* points, const KT_RGB32* colors, bool single_color) {
    enter<layer, variant, Kind::colorized>(
        {renderer_of(object), rendition, count, points, colors, single_color});
  }
  static void gouraud(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points, const KT_RGB32* colors) {
    enter<layer, variant, Kind::gouraud>({renderer_of(object), rendition, count, points, colors});
  }

  template <KT_Action plain_action, KT_Action colorized_action, KT_Action gouraud_action>
  static void bind_all(Software_Z_Buffer& renderer) {
    bind<plain_action>(renderer, &plain);
    bind<colorized_action>(renderer, &colorized);
    bind<gouraud_action>(renderer, &gouraud);
  }
};

template <Variant variant>
void bind_polylines_of(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  Polyline_Actions<Layer::any, variant>::template bind_all<
      Draw_2DI_Polyline, Draw_2DI_Colorized_Polyline, Draw_2DI_Gouraud_Polyline>(renderer);
  Polyline_Actions<Layer::inside, variant>::template bind_all<
      Draw_DCI_Polyline, Draw_DCI_Colorized_Polyline, Draw_DCI_Gouraud_Polyline>(renderer);
}

}  // namespace zbuffer::lines
