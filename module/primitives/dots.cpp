#include "module/primitives/dots.h"

#include "module/core/fixed_point.h"
#include "module/pixels/dither.h"
#include "module/primitives/plot.h"

namespace zbuffer {
namespace {

template <Variant variant>
void draw_direct(const Software_Z_Buffer& renderer, const KT_Rendition& rendition,
                 const KT_DCI_Point& point, const KT_RGB32* color) {
  const Plotter<variant> plotter(renderer, rendition);
  if (std::uint32_t* pixel = plotter.open(point)) {
    plotter.put(pixel, (color ? *color : rendition->material->color).word());
  }
}

// A colour of its own is dithered, and that index is stored without merging.
template <Variant variant>
void draw_mapped(const Software_Z_Buffer& renderer, const KT_Rendition& rendition,
                 const KT_DCI_Point& point, const KT_RGB32* color) {
  const Plotter<variant> plotter(renderer, rendition);
  std::uint8_t* pixel = plotter.open(point);
  if (!pixel) return;
  if (!color) {
    return plotter.put(pixel, static_cast<std::uint8_t>(rendition->material->color_index));
  }
  const Cube cube(renderer.color_cube);
  const Channels scaled = cube.scaled(*color);
  const auto position = [](std::int32_t channel) { return as_signed(as_word(channel) << 8); };
  const Channels at{position(scaled.red), position(scaled.green), position(scaled.blue)};
  *pixel = cube.dithered(at, Dither_Row(plotter.row_of(point)).threshold(pixel));
}

}  // namespace

template <Variant variant>
void draw_dot(Software_Z_Buffer& renderer, const KT_Rendition& rendition, const KT_DCI_Point& point,
              const KT_RGB32* color) {
  if constexpr (has_depth(variant)) {
    if (rendition->display_context->depth_enabled == 0) {
      return draw_dot<without_depth(variant)>(renderer, rendition, point, color);
    }
  }
  if constexpr (is_mapped(variant)) {
    draw_mapped<variant>(renderer, rendition, point, color);
  } else {
    draw_direct<variant>(renderer, rendition, point, color);
  }
}

template void draw_dot<Variant::rgb_alpha>(Software_Z_Buffer&, const KT_Rendition&,
                                           const KT_DCI_Point&, const KT_RGB32*);
template void draw_dot<Variant::rgb>(Software_Z_Buffer&, const KT_Rendition&, const KT_DCI_Point&,
                                     const KT_RGB32*);
template void draw_dot<Variant::mapped>(Software_Z_Buffer&, const KT_Rendition&,
                                        const KT_DCI_Point&, const KT_RGB32*);
template void draw_dot<Variant::mapped_z>(Software_Z_Buffer&, const KT_Rendition&,
                                          const KT_DCI_Point&, const KT_RGB32*);
template void draw_dot<Variant::rgb_alpha_z>(Software_Z_Buffer&, const KT_Rendition&,
                                             const KT_DCI_Point&, const KT_RGB32*);
template void draw_dot<Variant::rgb_z>(Software_Z_Buffer&, const KT_Rendition&, const KT_DCI_Point&,
                                       const KT_RGB32*);

}  // namespace zbuffer
