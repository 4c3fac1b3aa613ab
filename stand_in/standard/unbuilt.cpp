// The general routines that are not built yet. Each call is counted, and each routine says once
// that it draws nothing. A routine that gets built leaves this file for one of its family.
#include "host/standard.h"
#include "stand_in/standard/undrawn.h"

namespace {

/// The point type of a routine that takes a list of points.
template <class Routine>
struct Points_Of;
template <class Point, class... Rest>
struct Points_Of<void(KT_Renderer_Data*, const KT_Rendition&, int, const Point*, Rest...)> {
  using Type = const Point*;
};

}  // namespace

#define UNBUILT(name, signature, ...)                                              \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int,             \
                          Points_Of<signature>::Type __VA_OPT__(, ) __VA_ARGS__) { \
    stand_in::report_undrawn("KD_Standard_" #name);                                \
  }
#define UNBUILT_PLAIN(name, signature) UNBUILT(name, signature)
#define UNBUILT_COLORIZED(name, signature) UNBUILT(name, signature, const KT_RGB32*, bool)
#define UNBUILT_GOURAUD(name, signature) UNBUILT(name, signature, const KT_RGB32*)
#define UNBUILT_TEXTURED(name, signature)                                           \
  UNBUILT(name, signature, const KT_RGB32*, const KT_Parameter*, int, const float*, \
          const KT_Vector*)

KORVEL_STANDARD_POLYTRIANGLES(UNBUILT_PLAIN)
KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(UNBUILT_COLORIZED)
KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(UNBUILT_GOURAUD)
KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(UNBUILT_TEXTURED)
KORVEL_STANDARD_POLYLINES(UNBUILT_PLAIN)
KORVEL_STANDARD_COLORIZED_POLYLINES(UNBUILT_COLORIZED)
KORVEL_STANDARD_GOURAUD_POLYLINES(UNBUILT_GOURAUD)
UNBUILT_PLAIN(Draw_2DI_Polymarker, korvel::Strip_Routine<KT_DCI_Point>)
UNBUILT_GOURAUD(Draw_2D_Polygon, korvel::Polygon_Routine<KT_Point>)
UNBUILT_GOURAUD(Draw_DC_Polygon, korvel::Polygon_Routine<KT_Point>)
UNBUILT_GOURAUD(Draw_2DI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)
UNBUILT_GOURAUD(Draw_DCI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)

void KD_Standard_Draw_DCI_Dot(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point*,
                              const KT_RGB32*) {
  stand_in::report_undrawn("KD_Standard_Draw_DCI_Dot");
}

void KD_Standard_Draw_DCI_RGB32_Image(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point*,
                                      const KT_DCI_Point*, int, const KT_RGB32*, int,
                                      const KT_Packing*) {
  stand_in::report_undrawn("KD_Standard_Draw_DCI_RGB32_Image");
}

void KD_Standard_Draw_DCI_Index8_Image(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point*,
                                       const KT_DCI_Point*, int, const std::uint8_t*) {
  stand_in::report_undrawn("KD_Standard_Draw_DCI_Index8_Image");
}
