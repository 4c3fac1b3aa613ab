// Polygons: with a pattern of the framework's own they go back to the renderer's polygon action,
// and all others become triangles here, so that no polygon comes back twice.
#include <algorithm>
#include <vector>

#include "stand_in/standard/calls.h"
#include "stand_in/standard/hatches.h"

namespace stand_in {
namespace {

template <KT_Action plain, KT_Action colorized>
struct Triangle_Actions {
  const KT_Renderer_Data& renderer;
  const KT_Rendition& rendition;
  const KT_RGB32* color;

  void draw(int count, const KT_Point* points) const {
    if (color != nullptr) {
      call<colorized>(renderer, rendition, count, points, color, true);
    } else {
      call<plain>(renderer, rendition, count, points);
    }
  }
};

using Triangles_2D =
    Triangle_Actions<KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2D_Colorized_Polytriangle>;
using Triangles_DC =
    Triangle_Actions<KT_Action::Draw_DC_Polytriangle, KT_Action::Draw_DC_Colorized_Polytriangle>;

/// A convex polygon as a strip, taken from both ends in turn.
std::vector<KT_Point> strip_of(int count, const KT_Point* points) {
  std::vector<KT_Point> strip = {points[0]};
  for (int low = 1, high = count - 1; low <= high;) {
    strip.push_back(points[low++]);
    if (low <= high) strip.push_back(points[high--]);
  }
  return strip;
}

template <class Triangles>
void draw_triangulated(const Triangles& triangles, int count, const KT_Point* points) {
  KT_Contour_Set contour(count, points, false);
  contour->force_projection({0, 0, 1});
  const auto draw_one = [](const KT_Point* a, const KT_Point* b, const KT_Point* c, void* context) {
    const KT_Point corners[3] = {*a, *b, *c};
    static_cast<const Triangles*>(context)->draw(3, corners);
  };
  contour->triangulate(draw_one, const_cast<Triangles*>(&triangles));
}

template <class Triangles>
void draw_triangles(const Triangles& triangles, int count, const KT_Point* points) {
  if (count < 3) return;
  if (KD_Rank_Polygon(count, points).rank != 0) return draw_triangulated(triangles, count, points);
  const std::vector<KT_Point> strip = strip_of(count, points);
  triangles.draw(count, strip.data());
}

template <class Triangles>
void draw_triangles(const Triangles& triangles, int count, const KT_DCI_Point* points) {
  std::vector<KT_Point> floats;
  for (int n = 0; n < count; ++n) {
    floats.push_back({static_cast<float>(points[n].x), static_cast<float>(points[n].y),
                      static_cast<float>(points[n].z)});
  }
  draw_triangles(triangles, count, floats.data());
}

template <KT_Action action, class Triangles, class Point>
void draw_polygon(const KT_Renderer_Data* renderer, const KT_Rendition& rendition, int count,
                  const Point* points, const KT_RGB32* color) {
  const bool is_hatched =
      rendition->face_attributes->face_pattern >= KT_Face_Attributes::first_standard;
  const KT_Rendition drawable = with_drawable_pattern(rendition);
  if (is_hatched && is_own<action>(*renderer)) {
    return call_own<action>(*renderer, drawable, count, points, color);
  }
  draw_triangles(Triangles{*renderer, drawable, color}, count, points);
}

}  // namespace
}  // namespace stand_in

void KD_Standard_Draw_2D_Polygon(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                 int count, const KT_Point* points, const KT_RGB32* color) {
  stand_in::draw_polygon<KT_Action::Draw_2D_Polygon, stand_in::Triangles_2D>(renderer, rendition,
                                                                             count, points, color);
}

void KD_Standard_Draw_DC_Polygon(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                 int count, const KT_Point* points, const KT_RGB32* color) {
  stand_in::draw_polygon<KT_Action::Draw_DC_Polygon, stand_in::Triangles_DC>(renderer, rendition,
                                                                             count, points, color);
}

void KD_Standard_Draw_2DI_Polygon(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                  int count, const KT_DCI_Point* points, const KT_RGB32* color) {
  stand_in::draw_polygon<KT_Action::Draw_2DI_Polygon, stand_in::Triangles_2D>(renderer, rendition,
                                                                              count, points, color);
}

void KD_Standard_Draw_DCI_Polygon(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                  int count, const KT_DCI_Point* points, const KT_RGB32* color) {
  stand_in::draw_polygon<KT_Action::Draw_DCI_Polygon, stand_in::Triangles_DC>(renderer, rendition,
                                                                              count, points, color);
}
