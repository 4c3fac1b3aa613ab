// Texels of an image at places from 0 to 1, t upward: the nearest one, or the mean of the nearest
// four. Outside the image each direction's wrap decides: no texel, the edge, a repeat or a mirror.
#include "stand_in/standard/texture.h"

#include <algorithm>
#include <cmath>

#include "host/application.h"
#include "stand_in/standard/line.h"

namespace stand_in {
namespace {

/// Steps of a texel that are lost to rounding on the way along edges and rows.
constexpr double slack = 1.0 / 65536;

/// Texel numbers beyond this are no longer exact enough to be of use.
constexpr double farthest = 1 << 30;

/// Position on one axis in texels, or not a number where there is nothing.
double in_texels(double coordinate, std::int32_t size, std::uint32_t wrap) {
  const double place = coordinate * size + slack;
  const bool inside = place >= 0 && place < size;
  if (wrap == KT_Texture_Wrap::none && !inside) return std::nan("");
  return std::clamp(place, -farthest, farthest);
}

std::int64_t remainder_of(std::int64_t value, std::int64_t divisor) {
  const std::int64_t rest = value % divisor;
  return rest < 0 ? rest + divisor : rest;
}

/// The texel of a number that may lie outside the image.
std::int64_t wrapped(std::int64_t number, std::int64_t size, std::uint32_t wrap) {
  switch (wrap) {
    case KT_Texture_Wrap::tile:
      return remainder_of(number, size);
    case KT_Texture_Wrap::mirror: {
      const std::int64_t place = remainder_of(number, 2 * size);
      return place < size ? place : 2 * size - 1 - place;
    }
    default:
      return std::clamp<std::int64_t>(number, 0, size - 1);
  }
}

}  // namespace

Texture::Texture(const KT_Rendition& rendition) {
  const auto& material = rendition->material->basic_material;
  if (!material) return;
  material->texture(source_, 0, 0, 0);
  if (!source_) return;
  source_->image(image_, 0, 0, 0);
  is_smooth_ = source_->standard_only != 0;
}

Texel Texture::nearest(double s, double t) const {
  const double u = in_texels(s, image_->width, source_->wrap_s);
  const double v = in_texels(t, image_->height, source_->wrap_t);
  if (std::isnan(u) || std::isnan(v)) return {};
  return {texel(static_cast<std::int64_t>(std::floor(u)), static_cast<std::int64_t>(std::floor(v))),
          true};
}

Texel Texture::smooth(double s, double t) const {
  const double u = in_texels(s, image_->width, source_->wrap_s) - 0.5;
  const double v = in_texels(t, image_->height, source_->wrap_t) - 0.5;
  if (std::isnan(u) || std::isnan(v)) return {};
  const double left = std::floor(u);
  const double upper = std::floor(v);
  const auto column = static_cast<std::int64_t>(left);
  const auto line = static_cast<std::int64_t>(upper);
  const KT_RGB32 above = mixed(texel(column, line), texel(column + 1, line), u - left);
  const KT_RGB32 below = mixed(texel(column, line + 1), texel(column + 1, line + 1), u - left);
  return {mixed(above, below, v - upper), true};
}

KT_RGB32 Texture::texel(std::int64_t column, std::int64_t line) const {
  const std::int64_t x = wrapped(column, image_->width, source_->wrap_s);
  const std::int64_t y = wrapped(line, image_->height, source_->wrap_t);
  return reinterpret_cast<const KT_RGB32*>(image_->rows[y])[x];
}

}  // namespace stand_in
