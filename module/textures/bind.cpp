// Four actions, by layer.
#include "module/textures/bind.h"

#include "module/core/bind.h"
#include "module/textures/entry.h"

namespace zbuffer::textures {
namespace {

template <Texture_Set set, Layer layer, class Point>
void draw_action(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                 const Point* points, const KT_RGB32* colors, const KT_Parameter* parameters,
                 int parameter_width, const float* extra_floats, const KT_Vector* vectors) {
  Software_Z_Buffer& renderer = renderer_of(object);
  const Entry_Step_Set held =
      held_steps<steps_in(entry_steps)>(renderer, variant_of(set), rendition, count);
  Strip_Call strip{{renderer, rendition, held}, count, nullptr, nullptr, colors};
  if constexpr (std::is_same_v<Point, KT_Point>) {
    strip.floats = points;
  } else {
    strip.points = points;
  }
  Textured_Call call{strip, parameters, parameter_width, extra_floats, vectors};
  enter({set, layer}, call);
}

template <Texture_Set set>
void bind_set(Software_Z_Buffer& renderer) {
  using enum KT_Action;
  bind<Draw_2D_Textured_Polytriangle>(renderer, &draw_action<set, Layer::float_any, KT_Point>);
  bind<Draw_DC_Textured_Polytriangle>(renderer, &draw_action<set, Layer::float_inside, KT_Point>);
  bind<Draw_2DI_Textured_Polytriangle>(renderer, &draw_action<set, Layer::int_any, KT_DCI_Point>);
  bind<Draw_DCI_Textured_Polytriangle>(renderer,
                                       &draw_action<set, Layer::int_inside, KT_DCI_Point>);
}

}  // namespace

void bind_textured_polytriangles(Software_Z_Buffer& renderer, Variant variant) {
  if (variant == Variant::rgb_z) return bind_set<Texture_Set::rgb_z>(renderer);
  if (variant == Variant::rgb_alpha_z) return bind_set<Texture_Set::rgb_alpha_z>(renderer);
  if (renderer.current_options.alpha_blending()) return bind_set<Texture_Set::cut_out>(renderer);
  bind_set<Texture_Set::mapped_z>(renderer);
}

}  // namespace zbuffer::textures
