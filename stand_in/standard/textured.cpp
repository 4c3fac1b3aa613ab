// Textured polytriangles of every kind, drawn as rows of image: perspective, wrapping, smooth
// texels, vertex colours and light, which renderers leave to the framework.
#include <algorithm>
#include <cmath>
#include <optional>

#include "stand_in/rounding.h"
#include "stand_in/standard/calls.h"
#include "stand_in/standard/hatches.h"
#include "stand_in/standard/textured_triangle.h"

namespace stand_in {
namespace {

/// A call of any of the actions; what the call does not have is null.
template <class Point>
struct Textured_Call {
  const KT_Renderer_Data& renderer;
  const KT_Rendition& rendition;
  int count;
  const Point* points;
  const KT_RGB32* colors;
  const KT_Parameter* parameters;
  int parameter_width;
  const float* w;
  const KT_Vector* vectors;
};

KT_DCI_Point whole(const KT_DCI_Point& point) {
  return point;
}

KT_DCI_Point whole(const KT_Point& point) {
  return round_to_pixel(KT_Point_D{static_cast<double>(point.x), static_cast<double>(point.y),
                                   static_cast<double>(point.z)});
}

/// The light of points: what the surface scatters, which multiplies texels, and what it mirrors,
/// which is added to them.
class Point_Light {
 public:
  explicit Point_Light(const KT_Rendition& rendition) : lit_(rendition), black_(rendition) {
    black_.set_color({0, 0, 0, 255}, false);
  }

  /// `color`: of the surface, at that point.
  void enter(Carried& carried, KT_RGB32 color, const KT_Vector& vector) {
    float mirrored[3];
    float all[3];
    shade(mirrored, black_, vector);
    lit_.set_color(color, false);
    shade(all, lit_, vector);
    constexpr Carried::Lane lanes[3] = {Carried::red, Carried::green, Carried::blue};
    constexpr Carried::Lane added[3] = {Carried::added_red, Carried::added_green,
                                        Carried::added_blue};
    for (int n = 0; n < 3; ++n) {
      carried[lanes[n]] = static_cast<double>(all[n]) - static_cast<double>(mirrored[n]);
      carried[added[n]] = static_cast<double>(mirrored[n]) * 255;
    }
    carried[Carried::alpha] = color.alpha / 255.0;
  }

 private:
  static void shade(float result[3], const KT_Rendition& rendition, const KT_Vector& vector) {
    rendition->material->basic_material->shade(result, rendition, vector, 0, 0, 0, 1, 0);
  }

  KT_Rendition lit_;
  KT_Rendition black_;
};

void enter_color(Carried& carried, KT_RGB32 color) {
  carried[Carried::blue] = color.blue / 255.0;
  carried[Carried::green] = color.green / 255.0;
  carried[Carried::red] = color.red / 255.0;
  carried[Carried::alpha] = color.alpha / 255.0;
}

/// Texels that are blended are marked by their alpha.
KT_Rendition row_rendition(const KT_Rendition& source) {
  KT_Rendition rendition = source;
  KT_Advanced_Options options = source->misc_attributes->advanced_options;
  options.bits &= ~KT_Advanced_Options::opaque_image_bit;
  rendition.set_advanced_options(options, false);
  return rendition;
}

template <class Point>
class Textured_Strip {
 public:
  Textured_Strip(const Textured_Call<Point>& call, const Texture& texture)
      : call_(call),
        is_colored_(call.colors != nullptr && texture.modulates()),
        is_lit_(call.vectors != nullptr && call.rendition->material->lighting != nullptr),
        has_w_(call.w != nullptr && (call.rendition->misc_attributes->texture_options &
                                     KT_Misc_Attributes::perspective_bit) != 0),
        rendition_(row_rendition(call.rendition)),
        triangles_(call.renderer, rendition_, texture, is_colored_ || is_lit_) {
    if (is_lit_) light_.emplace(call.rendition);
  }

  void draw() {
    Corner a = corner(0);
    Corner b = corner(1);
    for (int n = 2; n < call_.count; ++n) {
      const Corner c = corner(n);
      draw_triangle(n - 2, a, b, c);
      a = b;
      b = c;
    }
  }

 private:
  Corner corner(int n) {
    const KT_DCI_Point point = whole(call_.points[n]);
    const KT_Parameter& parameter =
        call_.parameters[std::ptrdiff_t{n} * std::max(call_.parameter_width, 1)];
    Corner made = {{point.x, point.y}, {}};
    made.carried[Carried::depth] =
        static_cast<double>(point.z) + call_.rendition->face_attributes->face_depth_offset;
    made.carried[Carried::unit] = 1;
    made.carried[Carried::s] = static_cast<double>(parameter.s);
    made.carried[Carried::t] = static_cast<double>(parameter.t);
    const KT_RGB32 color = is_colored_ ? call_.colors[n] : KT_RGB32{255, 255, 255, 255};
    if (is_lit_) {
      light_->enter(made.carried, color, call_.vectors[n]);
    } else if (is_colored_) {
      enter_color(made.carried, color);
    }
    return made;
  }

  /// Points at or behind the eye have no perspective; their triangles are drawn straight.
  void draw_triangle(int first, Corner a, Corner b, Corner c) {
    const auto is_good = [](float w) { return std::isfinite(w) && w > 0; };
    const float* w = has_w_ ? call_.w + first : nullptr;
    if (has_w_ && std::all_of(w, w + 3, is_good)) {
      divide(a, w[0]);
      divide(b, w[1]);
      divide(c, w[2]);
    }
    triangles_.draw(a, b, c);
  }

  static void divide(Corner& corner, float w) {
    for (std::size_t n = Carried::unit; n < Carried::lane_count; ++n) {
      corner.carried.lanes[n] /= static_cast<double>(w);
    }
  }

  const Textured_Call<Point>& call_;
  bool is_colored_;
  bool is_lit_;
  bool has_w_;
  KT_Rendition rendition_;
  std::optional<Point_Light> light_;
  Textured_Triangles triangles_;
};

/// Without a texture a surface has its colours alone.
template <KT_Action plain, KT_Action gouraud, class Point>
void draw_textured(const Textured_Call<Point>& of) {
  const Texture texture(of.rendition);
  if (of.count < 3) return;
  if (texture && of.parameters != nullptr) return Textured_Strip<Point>(of, texture).draw();
  const KT_Rendition rendition = with_drawable_pattern(of.rendition);
  if (of.colors != nullptr)
    return call<gouraud>(of.renderer, rendition, of.count, of.points, of.colors);
  call<plain>(of.renderer, rendition, of.count, of.points);
}

}  // namespace
}  // namespace stand_in

#define DRAW_TEXTURED(layer, Point)                                                              \
  void KD_Standard_Draw_##layer##_Textured_Polytriangle(                                         \
      KT_Renderer_Data* renderer, const KT_Rendition& rendition, int count, const Point* points, \
      const KT_RGB32* colors, const KT_Parameter* parameters, int parameter_width,               \
      const float* extra_floats, const KT_Vector* vectors) {                                     \
    stand_in::draw_textured<KT_Action::Draw_##layer##_Polytriangle,                              \
                            KT_Action::Draw_##layer##_Gouraud_Polytriangle, Point>(              \
        {*renderer, rendition, count, points, colors, parameters, parameter_width, extra_floats, \
         vectors});                                                                              \
  }

DRAW_TEXTURED(2D, KT_Point)
DRAW_TEXTURED(DC, KT_Point)
DRAW_TEXTURED(2DI, KT_DCI_Point)
DRAW_TEXTURED(DCI, KT_DCI_Point)
