// A convex polygon of float points is one strip, taken from both ends in turn: p0, p1, p(n-1), p2,
// p(n-2), p3, ... Anything else goes through the framework's triangulation, with a call for each
// triangle.

#include "module/primitives/polygons.h"

#include <algorithm>

#include "module/core/scratch.h"

namespace zbuffer::primitives {
namespace {

constexpr int longest_strip = 64;

/// The actions that draw the triangles of a polygon with points of one kind.
template <KT_Action plain, KT_Action colorized>
struct Triangle_Actions {
  template <class Point>
  static void call(const Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                   const Point* points, const KT_RGB32* color, bool single_color) {
    if (color) {
      renderer.actions.template call<colorized>(rendition, count, points, color, single_color);
    } else {
      renderer.actions.template call<plain>(rendition, count, points);
    }
  }
};

using Triangles_2D =
    Triangle_Actions<KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2D_Colorized_Polytriangle>;
using Triangles_DC =
    Triangle_Actions<KT_Action::Draw_DC_Polytriangle, KT_Action::Draw_DC_Colorized_Polytriangle>;
using Triangles_2DI =
    Triangle_Actions<KT_Action::Draw_2DI_Polytriangle, KT_Action::Draw_2DI_Colorized_Polytriangle>;
using Triangles_DCI =
    Triangle_Actions<KT_Action::Draw_DCI_Polytriangle, KT_Action::Draw_DCI_Colorized_Polytriangle>;

struct Triangulation_Context {
  const Software_Z_Buffer* renderer;
  const KT_Rendition* rendition;
  const KT_RGB32* color;
};

template <class Triangles>
void draw_triangle(const KT_Point* a, const KT_Point* b, const KT_Point* c, void* context) {
  const auto& of = *static_cast<const Triangulation_Context*>(context);
  const KT_Point points[3] = {*a, *b, *c};
  Triangles::call(*of.renderer, *of.rendition, 3, points, of.color, true);
}

template <class Triangles>
void draw_triangulated(const Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                       const KT_Point* points, const KT_RGB32* color) {
  KT_Contour_Set contour(count, points, false);
  KT_Contour_Set_Data& data = contour.writable();
  data.force_projection({0, 0, 1});
  Triangulation_Context context{&renderer, &rendition, color};
  data.triangulate(&draw_triangle<Triangles>, &context);
}

template <class Triangles>
void draw_strip(const Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                const KT_Point* points, const KT_RGB32* color) {
  KT_Point strip[longest_strip];
  strip[0] = points[0];
  for (int i = 1, low = 1, high = count - 1; i < count; ++i) {
    strip[i] = points[i % 2 == 1 ? low++ : high--];
  }
  Triangles::call(renderer, rendition, count, strip, color, true);
}

bool is_standard(const KT_Rendition& rendition) {
  return rendition->face_attributes->face_pattern >= KT_Face_Attributes::first_standard;
}

/// The rendition to draw with: while a strip's edges are drawn, one with their depth offset.
KT_Rendition with_edge_offset(const Software_Z_Buffer& renderer, const KT_Rendition& rendition) {
  KT_Rendition local = rendition;
  const std::int32_t offset = renderer.edge_depth_offset;
  if (offset != 0 && offset != rendition->face_attributes->face_depth_offset) {
    local.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = offset;
  }
  return local;
}

template <class Triangles>
void draw_polygon(KT_Renderer_Data* object, const KT_Rendition& callers, int count,
                  const KT_Point* points, const KT_RGB32* color) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (count < 3) return;
  const KT_Rendition rendition = with_edge_offset(renderer, callers);
  if (count == 3) {
    Triangles::call(renderer, rendition, count, points, color, true);
  } else if (count <= longest_strip && KD_Rank_Polygon(count, points).rank == 0) {
    draw_strip<Triangles>(renderer, rendition, count, points, color);
  } else {
    draw_triangulated<Triangles>(renderer, rendition, count, points, color);
  }
}

/// Whole points: neither rank nor edge offset is used, and the colour of a lone triangle is not
/// passed as a single one.
template <class Triangles, class Float_Triangles>
void draw_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                  const KT_DCI_Point* points, const KT_RGB32* color) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (count < 3) return;
  if (count == 3) return Triangles::call(renderer, rendition, count, points, color, false);
  Scratch<KT_Point> converted(count);
  std::transform(points, points + count, converted.data(), [](const KT_DCI_Point& p) {
    return KT_Point{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
  });
  draw_triangulated<Float_Triangles>(renderer, rendition, count, converted.data(), color);
}

}  // namespace

void draw_2d_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_Point* points, const KT_RGB32* color) {
  if (is_standard(rendition)) {
    return KD_Standard_Draw_2D_Polygon(object, rendition, count, points, color);
  }
  draw_polygon<Triangles_2D>(object, rendition, count, points, color);
}

void draw_dc_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_Point* points, const KT_RGB32* color) {
  if (is_standard(rendition)) {
    return KD_Standard_Draw_DC_Polygon(object, rendition, count, points, color);
  }
  draw_polygon<Triangles_DC>(object, rendition, count, points, color);
}

void draw_2di_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points, const KT_RGB32* color) {
  if (is_standard(rendition)) {
    return KD_Standard_Draw_2DI_Polygon(object, rendition, count, points, color);
  }
  draw_polygon<Triangles_2DI, Triangles_2D>(object, rendition, count, points, color);
}

void draw_dci_polygon(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                      const KT_DCI_Point* points, const KT_RGB32* color) {
  if (is_standard(rendition)) {
    return KD_Standard_Draw_DCI_Polygon(object, rendition, count, points, color);
  }
  draw_polygon<Triangles_DCI, Triangles_DC>(object, rendition, count, points, color);
}

}  // namespace zbuffer::primitives
