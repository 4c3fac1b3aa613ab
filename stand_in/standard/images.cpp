// Images of the colour system that the renderer does not have, row by row: colours become indices
// by dither, indices colours by palette.
#include <algorithm>
#include <array>
#include <vector>

#include "stand_in/standard/calls.h"
#include "stand_in/standard/rows.h"

namespace stand_in {
namespace {

constexpr std::size_t index_count = 256;

/// Opaque, as an index is. Without a palette indices are grey levels.
std::array<KT_RGB32, index_count> colors_of(const KT_Palette& palette) {
  std::array<KT_RGB32, index_count> colors;
  for (std::size_t n = 0; n < index_count; ++n) {
    const auto grey = static_cast<std::uint8_t>(n);
    colors[n] = {grey, grey, grey, 255};
    if (!palette) continue;
    const bool has_entry = static_cast<std::int32_t>(n) < palette->entry_count;
    colors[n] = has_entry ? palette->entries[n].color : KT_RGB32{};
    colors[n].alpha = 255;
  }
  return colors;
}

/// Calls `paint_row` with the source of each row and the row to complete. The image's depth runs
/// on from row to row: each begins with the depth at which the one above it ended.
template <class Pixel, class Paint_Row>
void for_each_row(const KT_DCI_Point& start, const KT_DCI_Point& end, int stride,
                  const Pixel* pixels, Paint_Row paint_row) {
  const double climb = static_cast<double>(end.z) - start.z;
  const double across = static_cast<double>(end.x) - start.x;
  const double step = across > 0 ? climb / across : 0;
  const auto* source = reinterpret_cast<const std::uint8_t*>(pixels);
  for (int y = start.y; y >= end.y; --y, source += stride) {
    paint_row(reinterpret_cast<const Pixel*>(source),
              Color_Row{start.x, y, start.z + climb * (start.y - y), step, {}});
  }
}

/// Pixels of a row up to the window's right edge, as the renderer's own images are cut.
std::size_t width_of(const KT_Renderer_Data& renderer, const KT_DCI_Point& start,
                     const KT_DCI_Point& end) {
  const KT_Renderer_Options& options = renderer.options();
  const std::int64_t left = options.local_coordinates() ? 0 : options.window_origin().x;
  const std::int64_t last = left + options.window_size().x - 1;
  const std::int64_t width = std::min<std::int64_t>(end.x, last) - start.x + 1;
  return width > 0 ? static_cast<std::size_t>(width) : 0;
}

bool is_mapped(const KT_Renderer_Data& renderer) {
  return renderer.options().color_system() == KT_Color_System::mapped;
}

}  // namespace
}  // namespace stand_in

void KD_Standard_Draw_DCI_RGB32_Image(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                      const KT_DCI_Point* start, const KT_DCI_Point* end,
                                      int stride, const KT_RGB32* pixels, int number,
                                      const KT_Packing* packing) {
  if (!stand_in::is_mapped(*renderer)) {
    return stand_in::call_own<KT_Action::Draw_DCI_RGB32_Image>(*renderer, rendition, start, end,
                                                               stride, pixels, number, packing);
  }
  stand_in::Row_Painter painter(*renderer, rendition);
  const std::size_t width = stand_in::width_of(*renderer, *start, *end);
  stand_in::for_each_row(*start, *end, stride, pixels,
                         [&](const KT_RGB32* source, stand_in::Color_Row row) {
                           row.colors = {source, width};
                           painter.draw(row);
                         });
}

void KD_Standard_Draw_DCI_Index8_Image(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                       const KT_DCI_Point* start, const KT_DCI_Point* end,
                                       int stride, const std::uint8_t* pixels) {
  if (stand_in::is_mapped(*renderer)) {
    return stand_in::call_own<KT_Action::Draw_DCI_Index8_Image>(*renderer, rendition, start, end,
                                                                stride, pixels);
  }
  stand_in::Row_Painter painter(*renderer, rendition);
  const auto palette = stand_in::colors_of(renderer->options().palette());
  std::vector<KT_RGB32> colors(stand_in::width_of(*renderer, *start, *end));
  stand_in::for_each_row(*start, *end, stride, pixels,
                         [&](const std::uint8_t* source, stand_in::Color_Row row) {
                           for (std::size_t n = 0; n < colors.size(); ++n) {
                             colors[n] = palette[source[n]];
                           }
                           row.colors = colors;
                           painter.draw(row);
                         });
}
