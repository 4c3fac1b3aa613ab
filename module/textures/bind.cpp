// Puts a set's routines behind the textured polytriangle actions.

#include "module/bindings.h"
#include "module/textures/routines.h"

namespace zbuffer {

namespace textures {
namespace {

template <Set set, Layer layer, class Point>
void draw_action(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                 const Point* points, const KT_RGB32* colors, const KT_Parameter* parameters,
                 int parameter_width, const float* extra_floats, const KT_Vector* vectors) {
  enter<set, layer>(Strip_Of<Point>{renderer_of(object), rendition, count, points, colors,
                                    parameters, parameter_width, extra_floats, vectors});
}

template <Set set>
void bind_set(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  bind<Draw_2D_Textured_Polytriangle>(renderer, &draw_action<set, Layer::float_any, KT_Point>);
  bind<Draw_DC_Textured_Polytriangle>(renderer, &draw_action<set, Layer::float_inside, KT_Point>);
  bind<Draw_2DI_Textured_Polytriangle>(renderer, &draw_action<set, Layer::int_any, KT_DCI_Point>);
  bind<Draw_DCI_Textured_Polytriangle>(renderer,
                                       &draw_action<set, Layer::int_inside, KT_DCI_Point>);
}

}  // namespace
}  // namespace textures

// Variants without depth have no textured routines and do not come here.
void bind_textured_polytriangles(Software_Z_Buffer& renderer, Variant variant) {
  using namespace textures;
  if (variant == Variant::rgb_z) {
    bind_set<Set::rgb_z>(renderer);
  } else if (variant == Variant::rgb_alpha_z) {
    bind_set<Set::rgb_alpha_z>(renderer);
  } else if (renderer.current_options.alpha_blending()) {
    bind_set<Set::cut_out>(renderer);
  } else {
    bind_set<Set::mapped_z>(renderer);
  }
}

}  // namespace zbuffer
