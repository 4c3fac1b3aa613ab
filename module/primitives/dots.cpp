// Dots in the six variants. Where depth is off a variant's dot is that of the variant without.
#include "module/primitives/dots.h"

#include "module/core/bind.h"
#include "module/pixels/dither.h"
#include "module/primitives/plot.h"

namespace zbuffer::primitives {
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

void draw_dot(Variant variant, Software_Z_Buffer& renderer, const KT_Rendition& rendition,
              const KT_DCI_Point& point, const KT_RGB32* color) {
  if (rendition->display_context->depth_enabled == 0) variant = without_depth(variant);
  if (lacks_image(renderer, variant)) return;
  with_constant(variant, [&]<Variant v>() {
    if constexpr (is_mapped(v)) {
      draw_mapped<v>(renderer, rendition, point, color);
    } else {
      draw_direct<v>(renderer, rendition, point, color);
    }
  });
}

}  // namespace zbuffer::primitives
