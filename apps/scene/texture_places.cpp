// Keeps texture coordinates where a renderer's 16-bit texel numbers are exact.
#include "apps/scene/texture_places.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// How many images further a texture looks the same; 0: nowhere.
double period_of(Wrap wrap) {
  switch (wrap) {
    case Wrap::repeat:
      return 1;
    case Wrap::mirror:
      return 2;
    default:
      return 0;
  }
}

bool settle(std::span<KT_Parameter> places, float KT_Parameter::*axis, Wrap wrap,
            std::uint32_t size) {
  const auto [low, high] = std::minmax_element(
      places.begin(), places.end(),
      [axis](const KT_Parameter& a, const KT_Parameter& b) { return a.*axis < b.*axis; });
  const double least = static_cast<double>((*low).*axis);
  const double most = static_cast<double>((*high).*axis);
  const double period = period_of(wrap);
  const double shift = period > 0 ? -std::floor(least / period) * period : 0;
  // A far border that is the near one of the next repeat belongs to the last texel before it:
  // renderers draw from the middles of texels on, and would let the next repeat be seen.
  const auto settled = [&](double place) {
    const bool far_border = wrap == Wrap::repeat && place > least && place == std::floor(place);
    return place + shift - (far_border ? 0.5 / size : 0);
  };
  for (KT_Parameter& place : places)
    place.*axis = static_cast<float>(settled(static_cast<double>(place.*axis)));
  return (most + shift) * size <= last_texel && (least + shift) * size >= -last_texel;
}

}  // namespace

bool settle_places(std::span<KT_Parameter> places, const Material& material, const Image& image) {
  const bool s_in_reach =
      settle(places, &KT_Parameter::s, material.wrap_s, drawn_side(image.width));
  const bool t_in_reach =
      settle(places, &KT_Parameter::t, material.wrap_t, drawn_side(image.height));
  return s_in_reach && t_in_reach;
}

// In perspective the middle of the side on the picture is not the middle of its texture:
// it lies w_a / (w_a + w_b) of the way.
bool is_even_side(const Textured_Corner& a, const Textured_Corner& b, const Image& image) {
  const float off = std::abs(a.w - b.w) / (2 * (a.w + b.w));
  const float texels = std::hypot((a.place.s - b.place.s) * static_cast<float>(image.width),
                                  (a.place.t - b.place.t) * static_cast<float>(image.height));
  const float pixels = std::hypot(a.point.x - b.point.x, a.point.y - b.point.y);
  return off * std::min(texels, pixels) <= 0.5f;
}

}  // namespace kv
