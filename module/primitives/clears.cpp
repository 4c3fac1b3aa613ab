// Clears of colour and depth: the hard clip rectangle, which comes in device coordinates.
#include <algorithm>
#include <cstring>

#include "module/pixels/run.h"
#include "module/primitives/frame_services.h"

namespace zbuffer::primitives {
namespace {

struct Area {
  std::int64_t x0, x1, y0, y1;  // buffer coordinates, inclusive; wide, as a clip may be any
};

Area hard_clip_area(const Software_Z_Buffer& renderer, const KT_Rendition& rendition) {
  const KT_Int_Rectangle& clip = rendition->display_context->hard_clip;
  const KT_Int_XY origin = renderer.device_origin;
  return {std::int64_t{clip.left} - origin.x, std::int64_t{clip.right} - origin.x,
          std::int64_t{clip.bottom} - origin.y, std::int64_t{clip.top} - origin.y};
}

std::size_t block_bytes(const KT_Shared_Image& image, const Area& area) {
  return static_cast<std::size_t>(area.y1 - area.y0 + 1) *
         static_cast<std::size_t>(image->row_bytes);
}

// Full-width areas are one block, from the top row at the lowest address on, padding included.
template <class Pixel>
void fill_area(const KT_Shared_Image& image, const Area& area, Pixel value) {
  if (area.x0 == 0 && area.x1 == image->width - 1) {
    const std::size_t count = block_bytes(image, area) / sizeof(Pixel);
    fill_run(image->row<Pixel>(static_cast<int>(area.y1)), static_cast<std::ptrdiff_t>(count),
             value);
    return;
  }
  const auto count = static_cast<std::ptrdiff_t>(area.x1 - area.x0 + 1);
  for (std::int64_t y = area.y0; y <= area.y1; ++y) {
    fill_run(image->row<Pixel>(static_cast<int>(y)) + area.x0, count, value);
  }
}

template <class Pixel>
void clear_color(KT_Renderer_Data* object, Variant variant, const KT_Rendition& rendition,
                 Pixel value) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  const KT_Int_Rectangle& clip = rendition->display_context->hard_clip;
  if (rendition->face_attributes->face_pattern != KT_Face_Attributes::solid) {
    KD_Span_DC_Rectangle(object, rendition, clip.left, clip.right, clip.bottom, clip.top);
    return;
  }
  if (lacks_image(renderer, variant)) return;
  const KT_Shared_Image& image = renderer.color_image;
  Area area = hard_clip_area(renderer, rendition);
  area.x0 = std::max<std::int64_t>(area.x0, 0);
  area.x1 = std::min<std::int64_t>(area.x1, image->width - 1);
  area.y0 = std::max<std::int64_t>(area.y0, 0);
  area.y1 = std::min<std::int64_t>(area.y1, image->height - 1);
  if (area.x1 < area.x0 || area.y1 < area.y0) return;
  fill_area(image, area, value);
}

}  // namespace

void clear_color_direct(KT_Renderer_Data* object, const KT_Rendition& rendition) {
  clear_color<std::uint32_t>(object, Variant::rgb, rendition,
                             rendition->material->window_color.word());
}

void clear_color_mapped(KT_Renderer_Data* object, const KT_Rendition& rendition) {
  clear_color<std::uint8_t>(object, Variant::mapped, rendition, rendition->material->window_index);
}

void clear_depth(KT_Renderer_Data* object, const KT_Rendition& rendition) {
  const Software_Z_Buffer& renderer = renderer_of(object);
  if (lacks_depth_image(renderer)) return;
  const Area area = hard_clip_area(renderer, rendition);
  if (area.x1 < area.x0 || area.y1 < area.y0) return;
  fill_area<std::uint16_t>(renderer.depth_image, area, 0xFFFF);
}

}  // namespace zbuffer::primitives
