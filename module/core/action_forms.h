// The three forms in which strips and polylines are coloured, with the arguments that their
// actions have, so that the families deal in whole calls only.
//
// A `Call` is a family's record of the arguments: renderer, rendition, count, points, colors and
// single_color, in this order, the last two with defaults.
#pragma once

#include "module/bindings.h"

namespace zbuffer {

/// Routines of the contract's signatures that put their arguments into a call for an entry.
template <class Call, class Point, void (*plain_entry)(const Call&),
          void (*colorized_entry)(const Call&), void (*gouraud_entry)(const Call&)>
struct Action_Forms {
  static void plain(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                    const Point* points) {
    plain_entry({renderer_of(object), rendition, count, points});
  }
  static void colorized(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                        const Point* points, const KT_RGB32* colors, bool single_color) {
    colorized_entry({renderer_of(object), rendition, count, points, colors, single_color});
  }
  static void gouraud(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const Point* points, const KT_RGB32* colors) {
    gouraud_entry({renderer_of(object), rendition, count, points, colors});
  }

  template <KT_Action plain_action, KT_Action colorized_action, KT_Action gouraud_action>
  static void bind_all(Software_Z_Buffer& renderer) {
    bind<plain_action>(renderer, &plain);
    bind<colorized_action>(renderer, &colorized);
    bind<gouraud_action>(renderer, &gouraud);
  }
};

// A routine of the contract gets of a call what its form takes.

template <class Call, class Point>
void hand_over(const Call& call, korvel::Strip_Routine<Point>* routine) {
  routine(&call.renderer, call.rendition, call.count, call.points);
}
template <class Call, class Point>
void hand_over(const Call& call, korvel::Colorized_Routine<Point>* routine) {
  routine(&call.renderer, call.rendition, call.count, call.points, call.colors, call.single_color);
}
template <class Call, class Point>
void hand_over(const Call& call, korvel::Gouraud_Routine<Point>* routine) {
  routine(&call.renderer, call.rendition, call.count, call.points, call.colors);
}

}  // namespace zbuffer
