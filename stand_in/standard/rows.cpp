// Rows of colours become calls of the image actions, one for each stretch without holes; depth runs
// on over the holes.
#include "stand_in/standard/rows.h"

#include <cmath>

#include "host/global.h"
#include "stand_in/standard/calls.h"

namespace stand_in {
namespace {

KT_Int_XY origin_of(const KT_Renderer_Options& options) {
  return options.local_coordinates() ? KT_Int_XY{} : options.window_origin();
}

std::int32_t cube_step(std::uint8_t channel, std::int32_t scale, std::int32_t threshold) {
  return (channel * scale * 256 + threshold) >> 16;
}

std::uint8_t grey_level(KT_RGB32 color) {
  return static_cast<std::uint8_t>((color.red * 77 + color.green * 151 + color.blue * 28) >> 8);
}

// Depths wrap as they do along the ramp of a whole image.
std::int32_t depth_at(const Color_Row& row, std::size_t at) {
  const double depth = row.z + row.z_step * static_cast<double>(at);
  return static_cast<std::int32_t>(static_cast<std::int64_t>(std::floor(depth + 0.5)) & 0xFFFF);
}

}  // namespace

std::uint8_t Indexer::index(KT_RGB32 color, int x, int y) const {
  if (!palette_) return grey_level(color);
  const KT_Color_Cube* cube = palette_->color_cube;
  if (cube == nullptr) return static_cast<std::uint8_t>(palette_.closest_match(color, false));
  const auto cell =
      static_cast<unsigned>(y - origin_.y) % 8 * 8 + static_cast<unsigned>(x - origin_.x) % 8;
  const std::int32_t threshold = SHARED.dither_table[cell];
  return static_cast<std::uint8_t>(
      cube->base_index + cube->red_stride * cube_step(color.red, cube->red_scale, threshold) +
      cube->green_stride * cube_step(color.green, cube->green_scale, threshold) +
      cube->blue_stride * cube_step(color.blue, cube->blue_scale, threshold));
}

Row_Painter::Row_Painter(const KT_Renderer_Data& renderer, const KT_Rendition& rendition)
    : renderer_(renderer),
      rendition_(rendition),
      is_mapped_(renderer.options().color_system() == KT_Color_System::mapped),
      cuts_out_(is_mapped_ && renderer.options().alpha_blending() &&
                (rendition->misc_attributes->advanced_options.bits &
                 KT_Advanced_Options::opaque_image_bit) == 0),
      origin_(origin_of(renderer.options())),
      indexer_(renderer.options().palette(), origin_) {}

void Row_Painter::draw(const Color_Row& row) {
  const std::size_t count = row.colors.size();
  for (std::size_t at = 0; at < count;) {
    if (is_hole(row, at)) {
      ++at;
      continue;
    }
    const std::size_t first = at;
    while (at < count && !is_hole(row, at)) ++at;
    draw_stretch(row, first, at);
  }
}

bool Row_Painter::is_hole(const Color_Row& row, std::size_t at) const {
  return (row.visible != nullptr && row.visible[at] == 0) ||
         (cuts_out_ && row.colors[at].alpha == 0);
}

void Row_Painter::draw_stretch(const Color_Row& row, std::size_t first, std::size_t end) {
  const int count = static_cast<int>(end - first);
  const KT_DCI_Point from = {row.x + static_cast<int>(first), row.y, depth_at(row, first)};
  const KT_DCI_Point to = {from.x + count - 1, row.y, depth_at(row, end - 1)};
  if (!is_mapped_) {
    return call_own<KT_Action::Draw_DCI_RGB32_Image>(renderer_, rendition_, &from, &to,
                                                     count * static_cast<int>(sizeof(KT_RGB32)),
                                                     row.colors.data() + first, 0, nullptr);
  }
  indices_.clear();
  for (int n = 0; n < count; ++n) {
    indices_.push_back(
        indexer_.index(row.colors[first + static_cast<std::size_t>(n)], from.x + n, row.y));
  }
  call_own<KT_Action::Draw_DCI_Index8_Image>(renderer_, rendition_, &from, &to, count,
                                             indices_.data());
}

}  // namespace stand_in
