// Puts a variant's routines behind the actions of dots, polymarkers, images and polygons.

#include "module/bindings.h"
#include "module/primitives/dots.h"
#include "module/primitives/images.h"
#include "module/primitives/polygons.h"
#include "module/primitives/polymarkers.h"

namespace zbuffer {
namespace {

template <Variant variant>
void draw_dot_action(KT_Renderer_Data* object, const KT_Rendition& rendition,
                     const KT_DCI_Point* point, const KT_RGB32* color) {
  draw_dot<variant>(renderer_of(object), rendition, *point, color);
}

}  // namespace

void bind_dots(Software_Z_Buffer& renderer, Variant variant) {
  static constexpr korvel::Routine_Of<KT_Action::Draw_DCI_Dot>* routines[variant_count] = {
      &draw_dot_action<Variant::rgb_alpha>,   &draw_dot_action<Variant::rgb>,
      &draw_dot_action<Variant::mapped>,      &draw_dot_action<Variant::mapped_z>,
      &draw_dot_action<Variant::rgb_alpha_z>, &draw_dot_action<Variant::rgb_z>};
  bind<KT_Action::Draw_DCI_Dot>(renderer, routines[index_of(variant)]);
}

// The variants without an entry have no routine of their own and are not bound here.

void bind_polymarkers(Software_Z_Buffer& renderer, Variant variant) {
  static constexpr korvel::Routine_Of<KT_Action::Draw_2DI_Polymarker>* routines[variant_count] = {
      &draw_polymarker<Variant::rgb_alpha>,   &draw_polymarker<Variant::rgb>,
      &draw_polymarker<Variant::mapped>,      nullptr,
      &draw_polymarker<Variant::rgb_alpha_z>, &draw_polymarker<Variant::rgb_z>};
  bind<KT_Action::Draw_2DI_Polymarker>(renderer, routines[index_of(variant)]);
}

void bind_rgb32_images(Software_Z_Buffer& renderer, Variant variant) {
  static constexpr korvel::Routine_Of<KT_Action::Draw_DCI_RGB32_Image>* routines[variant_count] = {
      &draw_rgb32_image<Variant::rgb_alpha>,   &draw_rgb32_image<Variant::rgb>,  nullptr, nullptr,
      &draw_rgb32_image<Variant::rgb_alpha_z>, &draw_rgb32_image<Variant::rgb_z>};
  bind<KT_Action::Draw_DCI_RGB32_Image>(renderer, routines[index_of(variant)]);
}

void bind_index8_images(Software_Z_Buffer& renderer, Variant variant) {
  bind<KT_Action::Draw_DCI_Index8_Image>(renderer, has_depth(variant)
                                                       ? &draw_index8_image<Variant::mapped_z>
                                                       : &draw_index8_image<Variant::mapped>);
}

void bind_polygons(Software_Z_Buffer& renderer) {
  bind<KT_Action::Draw_2D_Polygon>(renderer, &draw_2d_polygon);
  bind<KT_Action::Draw_2DI_Polygon>(renderer, &draw_2di_polygon);
  bind<KT_Action::Draw_DC_Polygon>(renderer, &draw_dc_polygon);
  bind<KT_Action::Draw_DCI_Polygon>(renderer, &draw_dci_polygon);
}

}  // namespace zbuffer
