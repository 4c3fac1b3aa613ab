// Puts a variant's routines behind the polytriangle actions.
#pragma once

#include "core/bindings.h"
#include "triangles/instances.h"

namespace zbuffer {

/// The actions of one layer: arguments of the contract in, a strip out.
template <Layer layer, Variant variant>
struct Polytriangle_Actions {
  using Point = std::conditional_t<is_float_layer<layer>, KT_Point, KT_DCI_Point>;

  static void flat(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                   const Point* points) {
    enter<layer, variant, Kind::flat>({renderer_of(object), rendition, count, points});
  }
  static void colorized(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                        const Point* points, const KT_RGB32* colors, bool single_color) {
    enter<layer, variant, Kind::colorized>(
        {renderer_of(object), rendition, count, points, colors, single_color});
  }
  static void gouraud(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const Point* points, const KT_RGB32* colors) {
    enter<layer, variant, Kind::gouraud>({renderer_of(object), rendition, count, points, colors});
  }

  template <KT_Action flat_action, KT_Action colorized_action, KT_Action gouraud_action>
  static void bind_all(Software_Z_Buffer& renderer) {
    bind<flat_action>(renderer, &flat);
    bind<colorized_action>(renderer, &colorized);
    bind<gouraud_action>(renderer, &gouraud);
  }
};

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
