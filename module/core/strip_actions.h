// The actions of strips and polylines: from the contract's three lists of arguments to a call and
// back.
#pragma once

#include "module/core/bind.h"
#include "module/core/call.h"

namespace zbuffer {

/// Routines of the contract's signatures that put their arguments into a call for `enter`, a
/// function of a routine and a call.
template <auto enter, Entry_Step_Set relevant, Layer layer, Variant variant>
struct Strip_Actions {
  static constexpr bool takes_floats = layer == Layer::float_any || layer == Layer::float_inside;
  using Point = std::conditional_t<takes_floats, KT_Point, KT_DCI_Point>;

  static void flat(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                   const Point* points) {
    Strip_Call strip = call(object, rendition, count, points, nullptr, false);
    enter({layer, Kind::flat, variant}, strip);
  }
  static void colorized(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                        const Point* points, const KT_RGB32* colors, bool single_color) {
    Strip_Call strip = call(object, rendition, count, points, colors, single_color);
    enter({layer, Kind::colorized, variant}, strip);
  }
  static void gouraud(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const Point* points, const KT_RGB32* colors) {
    Strip_Call strip = call(object, rendition, count, points, colors, false);
    enter({layer, Kind::gouraud, variant}, strip);
  }

  template <KT_Action flat_action, KT_Action colorized_action, KT_Action gouraud_action>
  static void bind_all(Software_Z_Buffer& renderer) {
    bind<flat_action>(renderer, &flat);
    bind<colorized_action>(renderer, &colorized);
    bind<gouraud_action>(renderer, &gouraud);
  }

 private:
  static Strip_Call call(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                         const Point* points, const KT_RGB32* colors, bool single_color) {
    Software_Z_Buffer& renderer = renderer_of(object);
    const Entry_Step_Set held = held_steps<relevant>(renderer, variant, rendition, count);
    if constexpr (takes_floats) {
      return {{renderer, rendition, held}, count, nullptr, points, colors, single_color};
    } else {
      return {{renderer, rendition, held}, count, points, nullptr, colors, single_color};
    }
  }
};

/// Calls the one of three routines of the contract that is of `kind`, with the arguments of `call`.
template <class Point>
void hand_over(Kind kind, const Strip_Call& call, const Point* points,
               korvel::Strip_Routine<Point>* flat, korvel::Colorized_Routine<Point>* colorized,
               korvel::Gouraud_Routine<Point>* gouraud) {
  switch (kind) {
    case Kind::flat:
      return flat(&call.renderer, call.rendition, call.count, points);
    case Kind::colorized:
      return colorized(&call.renderer, call.rendition, call.count, points, call.colors,
                       call.single_color);
    case Kind::gouraud:
      return gouraud(&call.renderer, call.rendition, call.count, points, call.colors);
  }
}

}  // namespace zbuffer
