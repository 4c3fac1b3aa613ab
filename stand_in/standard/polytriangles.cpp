// Polytriangles with the framework's own face patterns go back to the renderer with a user pattern.
#include "stand_in/standard/calls.h"
#include "stand_in/standard/hatches.h"

namespace {

template <KT_Action action, class... Arguments>
void draw(const KT_Renderer_Data* renderer, const KT_Rendition& rendition, Arguments... arguments) {
  stand_in::call_own<action>(*renderer, stand_in::with_drawable_pattern(rendition), arguments...);
}

/// The point type of a routine that takes a list of points.
template <class Routine>
struct Points_Of;
template <class Point, class... Rest>
struct Points_Of<void(KT_Renderer_Data*, const KT_Rendition&, int, const Point*, Rest...)> {
  using Type = const Point*;
};

}  // namespace

#define DRAW_PLAIN(name, signature)                                                             \
  void KD_Standard_##name(KT_Renderer_Data* renderer, const KT_Rendition& rendition, int count, \
                          Points_Of<signature>::Type points) {                                  \
    draw<KT_Action::name>(renderer, rendition, count, points);                                  \
  }
#define DRAW_COLORIZED(name, signature)                                                         \
  void KD_Standard_##name(KT_Renderer_Data* renderer, const KT_Rendition& rendition, int count, \
                          Points_Of<signature>::Type points, const KT_RGB32* colors,            \
                          bool single_color) {                                                  \
    draw<KT_Action::name>(renderer, rendition, count, points, colors, single_color);            \
  }
#define DRAW_GOURAUD(name, signature)                                                           \
  void KD_Standard_##name(KT_Renderer_Data* renderer, const KT_Rendition& rendition, int count, \
                          Points_Of<signature>::Type points, const KT_RGB32* colors) {          \
    draw<KT_Action::name>(renderer, rendition, count, points, colors);                          \
  }

KORVEL_STANDARD_POLYTRIANGLES(DRAW_PLAIN)
KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(DRAW_COLORIZED)
KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(DRAW_GOURAUD)
