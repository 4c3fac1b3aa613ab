// The general routines of a fuzz program, made from the lists of actions. Each is called with the
// arguments of its action and adds one event.
#include "tests/differential/recorder.h"

#include <utility>

#include "tests/differential/watched_materials.h"

namespace {

template <class Routine>
struct Points_Of;
template <class Points, class... Rest>
struct Points_Of<void(KT_Renderer_Data*, const KT_Rendition&, int, Points, Rest...)> {
  using Type = Points;
};
template <class Routine>
using Points = typename Points_Of<Routine>::Type;

void record(KT_Action action, const KT_Rendition& r, int n, const auto* points,
            const KT_RGB32* colors, bool single) {
  fuzz::events.push_back(model::call_line(action, r, n, points, colors, single));
  const bool polyline =
      action == KT_Action::Draw_2DI_Polyline || action == KT_Action::Draw_DCI_Polyline;
  if (polyline && fuzz::at_next_polyline) std::exchange(fuzz::at_next_polyline, nullptr)();
}

}  // namespace

#define PLAIN(name, signature)                                                                    \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition& r, int n, Points<signature> p) { \
    record(KT_Action::name, r, n, p, nullptr, false);                                             \
  }
#define COLORED(name, signature)                                                                \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition& r, int n, Points<signature> p, \
                          const KT_RGB32* c) {                                                  \
    record(KT_Action::name, r, n, p, c, false);                                                 \
  }
#define COLORIZED(name, signature)                                                              \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition& r, int n, Points<signature> p, \
                          const KT_RGB32* c, bool single) {                                     \
    record(KT_Action::name, r, n, p, c, single);                                                \
  }
#define TEXTURED(name, signature)                                                              \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int n, Points<signature> p,  \
                          const KT_RGB32* c, const KT_Parameter* s, int width, const float* f, \
                          const KT_Vector* v) {                                                \
    fuzz::events.push_back(model::line(#name, n, p, c, s, width, f, v));                       \
  }
KORVEL_STANDARD_POLYTRIANGLES(PLAIN)
KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(COLORIZED)
KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(COLORED)
KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(TEXTURED)
KORVEL_STANDARD_POLYLINES(PLAIN)
KORVEL_STANDARD_COLORIZED_POLYLINES(COLORIZED)
KORVEL_STANDARD_GOURAUD_POLYLINES(COLORED)
PLAIN(Draw_2DI_Polymarker, korvel::Strip_Routine<KT_DCI_Point>)
COLORED(Draw_2D_Polygon, korvel::Polygon_Routine<KT_Point>)
COLORED(Draw_DC_Polygon, korvel::Polygon_Routine<KT_Point>)
COLORED(Draw_2DI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)
COLORED(Draw_DCI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)

void KD_Standard_Draw_DCI_RGB32_Image(KT_Renderer_Data*, const KT_Rendition&,
                                      const KT_DCI_Point* start, const KT_DCI_Point* end,
                                      int stride, const KT_RGB32* pixels, int, const KT_Packing*) {
  fuzz::events.push_back(model::line("Draw_DCI_RGB32_Image", *start, *end, stride, pixels));
}
void KD_Standard_Draw_DCI_Index8_Image(KT_Renderer_Data*, const KT_Rendition&,
                                       const KT_DCI_Point* start, const KT_DCI_Point* end,
                                       int stride, const std::uint8_t* pixels) {
  fuzz::events.push_back(
      model::line("Draw_DCI_Index8_Image", *start, *end, stride, static_cast<const void*>(pixels)));
}
KT_Polygon_Rank KD_Rank_Polygon(int count, const KT_Point*) {
  fuzz::events.push_back(model::line("rank", count));
  return {fuzz::polygon_rank};
}
KT_Basic_Material::KT_Basic_Material() : KT_Handle(new fuzz::Watched_Material) {
  std::ranges::copy(fuzz::default_specular_color, get()->specular_color);
}
void KD_Span_DC_Rectangle(KT_Renderer_Data*, const KT_Rendition&, int left, int right, int bottom,
                          int top) {
  fuzz::events.push_back(model::line("pattern fill", KT_Int_Rectangle{left, right, bottom, top}));
}
