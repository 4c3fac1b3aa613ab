// Strips in double precision: runs inside the guard rectangle stay whole, triangles that cross it
// are cut by the framework one by one.
#include "module/tiling/polytriangles.h"

#include "host/clip.h"
#include "module/raster/strip_split.h"
#include "module/tiling/guarded_call.h"
#include "module/tiling/perspective.h"

namespace zbuffer::tiling {
namespace {

/// The attributes of a strip's points; null where the kind has none.
struct Attributes {
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  int parameter_width = 1;
  const float* floats = nullptr;
  const KT_Vector* vectors = nullptr;

  Attributes from_point(int n) const {
    return {from(colors, n), from(parameters, std::ptrdiff_t{n} * parameter_width), parameter_width,
            from(floats, n), from(vectors, n)};
  }
};

/// Room for the attributes of a cut triangle.
class Cut_Attributes {
 public:
  explicit Cut_Attributes(const Attributes& given)
      : given_(given),
        parameters_(given.parameters == nullptr
                        ? 0
                        : std::ptrdiff_t{most_corners} * given.parameter_width) {}

  /// Cuts the triangle from point `n` on into results of `call`; false when nothing is left.
  bool cut(const Guarded_Call& call, int n, int& result_count) {
    const auto less_origin = [&](const KT_Point_D& p) {
      return KT_Point_D{p.x - call.origin.x, p.y - call.origin.y, p.z};
    };
    // The framework may count on the first alone; one that cuts by all three finds them.
    const KT_Point_D corners[3] = {less_origin(call.points[n]), less_origin(call.points[n + 1]),
                                   less_origin(call.points[n + 2])};
    const Attributes in = given_.from_point(n);
    return KD_Preclip_2D_Triangle(&call.renderer, call.rendition, guard_around({0, 0}), corners,
                                  &result_count, call.results, in.colors, room(in.colors, colors_),
                                  in.parameters, room(in.parameters, parameters_),
                                  in.parameter_width, in.floats, room(in.floats, floats_),
                                  in.vectors, room(in.vectors, vectors_));
  }

  Attributes results() {
    return {room(given_.colors, colors_), room(given_.parameters, parameters_),
            given_.parameter_width, room(given_.floats, floats_), room(given_.vectors, vectors_)};
  }

 private:
  static constexpr int most_points = 64;  // as the results have room for at least
  static constexpr int most_corners = 9;  // four sides give seven, and rounding two at most

  template <class Element>
  static Element* room(const Element* given, Scratch<Element>& scratch) {
    return given == nullptr ? nullptr : scratch.data();
  }

  const Attributes& given_;
  Scratch<KT_RGB32> colors_{most_points};
  Scratch<KT_Parameter, most_points> parameters_;  // on the stack up to seven records a point
  Scratch<float> floats_{most_points};
  Scratch<KT_Vector> vectors_{most_points};
};

/// Takes a strip apart by the guard rectangle. `draw_run(first, n)` gets what lies inside,
/// converted; `draw_cut(first)` one triangle with a point outside.
template <class Draw_Run, class Draw_Cut>
void walk_strip(const Guarded_Call& call, Draw_Run draw_run, Draw_Cut draw_cut) {
  const auto convert_and_draw = [&](int first, int n) {
    call.convert(first, n);
    draw_run(first, n);
  };
  split_strip(call.count, call.codes, convert_and_draw, draw_cut);
}

struct Flat_Strip {
  void draw(const Guarded_Call& call, int count, const Attributes&) const {
    call.draw<KT_Action::Draw_2DI_Polytriangle>(count);
  }
};

struct Gouraud_Strip {
  void draw(const Guarded_Call& call, int count, const Attributes& with) const {
    call.draw<KT_Action::Draw_2DI_Gouraud_Polytriangle>(count, with.colors);
  }
};

struct Textured_Strip {
  void draw(const Guarded_Call& call, int count, const Attributes& with) const {
    call.draw<KT_Action::Draw_2DI_Textured_Polytriangle>(
        count, with.colors, with.parameters, with.parameter_width, with.floats, with.vectors);
  }
};

/// A kind whose attributes belong to points.
template <class Strip>
struct Strip_By_Point {
  Attributes attributes;

  void draw_whole(const Guarded_Call& call) const { Strip{}.draw(call, call.count, attributes); }
  void draw_pieces(const Guarded_Call& call) const {
    Cut_Attributes cut(attributes);
    walk_strip(
        call, [&](int first, int n) { Strip{}.draw(call, n, attributes.from_point(first)); },
        [&](int first) {
          int n = 0;
          if (cut.cut(call, first, n)) Strip{}.draw(call, n, cut.results());
        });
  }
};

/// Colours belong to triangles, so that the framework has none to cut.
struct Colorized_Strip {
  const KT_RGB32* colors;
  bool single_color;

  const KT_RGB32* colors_from(int triangle) const {
    return single_color ? colors : from(colors, triangle);
  }
  void draw(const Guarded_Call& call, int count, int triangle, bool single) const {
    call.draw<KT_Action::Draw_2DI_Colorized_Polytriangle>(count, colors_from(triangle), single);
  }
  void draw_whole(const Guarded_Call& call) const { draw(call, call.count, 0, single_color); }
  void draw_pieces(const Guarded_Call& call) const {
    const Attributes none;
    Cut_Attributes cut(none);
    walk_strip(
        call, [&](int first, int n) { draw(call, n, first, single_color); },
        [&](int first) {
          int n = 0;
          if (cut.cut(call, first, n)) draw(call, n, first, true);
        });
  }
};

}  // namespace

void draw_polytriangle(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                       const KT_Point_D* points) {
  draw_guarded(object, rendition, count, points, Strip_By_Point<Flat_Strip>{});
}

void draw_colorized_polytriangle(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                                 const KT_Point_D* points, const KT_RGB32* colors,
                                 bool single_color) {
  draw_guarded(object, rendition, count, points, Colorized_Strip{colors, single_color});
}

void draw_gouraud_polytriangle(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                               const KT_Point_D* points, const KT_RGB32* colors) {
  draw_guarded(object, rendition, count, points, Strip_By_Point<Gouraud_Strip>{{.colors = colors}});
}

void draw_textured_polytriangle(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                                const KT_Point_D* points, const KT_RGB32* colors,
                                const KT_Parameter* parameters, int parameter_width,
                                const float* extra_floats, const KT_Vector* vectors) {
  const bool lacks_floats =
      extra_floats == nullptr && rendition->misc_attributes->texture_options != 0;
  Scratch<float> made(lacks_floats ? count : 0);
  if (lacks_floats) {
    make_perspective_floats(*rendition->display_context, count, points, made.data());
    extra_floats = made.data();
  }
  draw_guarded(
      object, rendition, count, points,
      Strip_By_Point<Textured_Strip>{{colors, parameters, parameter_width, extra_floats, vectors}});
}

}  // namespace zbuffer::tiling
