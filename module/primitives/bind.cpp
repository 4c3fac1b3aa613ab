// Routines with the arguments of their actions, and which of them a variant binds.
#include "module/primitives/bind.h"

#include "module/core/bind.h"
#include "module/primitives/dots.h"
#include "module/primitives/frame_services.h"
#include "module/primitives/images.h"
#include "module/primitives/polygons.h"
#include "module/primitives/polymarkers.h"

namespace zbuffer::primitives {

void bind_dots(Software_Z_Buffer& renderer, Variant variant) {
  with_constant(variant, [&]<Variant v>() {
    bind<KT_Action::Draw_DCI_Dot>(renderer, [](KT_Renderer_Data* object, const KT_Rendition& with,
                                               const KT_DCI_Point* point, const KT_RGB32* color) {
      draw_dot(v, renderer_of(object), with, *point, color);
    });
  });
}

void bind_polymarkers(Software_Z_Buffer& renderer, Variant variant) {
  with_constant(variant, [&]<Variant v>() {
    bind<KT_Action::Draw_2DI_Polymarker>(
        renderer, [](KT_Renderer_Data* object, const KT_Rendition& with, int count,
                     const KT_DCI_Point* points) {
          Strip_Call markers = polymarker_call(renderer_of(object), v, with, count, points);
          enter_polymarker(v, markers);
        });
  });
}

// The last two arguments of the action are not used.
void bind_rgb32_images(Software_Z_Buffer& renderer, Variant variant) {
  with_constant(variant, [&]<Variant v>() {
    bind<KT_Action::Draw_DCI_RGB32_Image>(
        renderer,
        [](KT_Renderer_Data* object, const KT_Rendition& with, const KT_DCI_Point* start,
           const KT_DCI_Point* end, int stride, const KT_RGB32* pixels, int, const KT_Packing*) {
          Image_Call image = image_call(renderer_of(object), v, with, start, end, stride, pixels);
          enter_image(v, image);
        });
  });
}

void bind_index8_images(Software_Z_Buffer& renderer, Variant variant) {
  with_constant(variant, [&]<Variant v>() {
    bind<KT_Action::Draw_DCI_Index8_Image>(
        renderer, [](KT_Renderer_Data* object, const KT_Rendition& with, const KT_DCI_Point* start,
                     const KT_DCI_Point* end, int stride, const std::uint8_t* pixels) {
          Image_Call image = image_call(renderer_of(object), v, with, start, end, stride, pixels);
          enter_image(v, image);
        });
  });
}

void bind_polygons(Software_Z_Buffer& renderer) {
  bind<KT_Action::Draw_2D_Polygon>(renderer, &draw_2d_polygon);
  bind<KT_Action::Draw_2DI_Polygon>(renderer, &draw_2di_polygon);
  bind<KT_Action::Draw_DC_Polygon>(renderer, &draw_dc_polygon);
  bind<KT_Action::Draw_DCI_Polygon>(renderer, &draw_dci_polygon);
}

void bind_depth_clear(Software_Z_Buffer& renderer, Variant) {
  bind<KT_Action::Clear_Depth>(renderer, &clear_depth);
}

void bind_depth_transfer(Software_Z_Buffer& renderer, Variant) {
  bind<KT_Action::Get_Depth>(renderer, &get_depth);
  bind<KT_Action::Put_Depth>(renderer, &put_depth);
}

void bind_color_services(Software_Z_Buffer& renderer, Variant variant) {
  const bool mapped = is_mapped(variant);
  bind<KT_Action::Clear_Color>(renderer, mapped ? &clear_color_mapped : &clear_color_direct);
  bind<KT_Action::Get_Image>(renderer, mapped ? &get_image_mapped : &get_image_direct);
}

}  // namespace zbuffer::primitives
