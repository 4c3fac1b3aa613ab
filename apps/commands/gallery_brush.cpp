// Places a primitive's coordinates, 0 to 1 with v upward, in device coordinates, and picks its
// colours.
#include "apps/commands/gallery_brush.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "apps/draw/canvas.h"

namespace kv {
namespace {

constexpr float farthest = 65535;

// Blue, green, red.
using Hue = std::array<KT_RGB32, 4>;
constexpr Hue hues[] = {
    {{{40, 60, 220, 255}, {60, 190, 90, 255}, {220, 110, 40, 255}, {30, 190, 240, 255}}},
    {{{200, 180, 20, 255}, {220, 220, 90, 255}, {170, 150, 0, 255}, {240, 240, 150, 255}}},
    {{{130, 130, 130, 255}, {130, 130, 130, 255}, {130, 130, 130, 255}, {130, 130, 130, 255}}}};

}  // namespace

Brush::Brush(KT_Renderer_Data& renderer, const KT_Rendition& its_rendition, const Place& place,
             const Paint& paint)
    : rendition(its_rendition), renderer_(renderer), place_(place), paint_(paint) {
  set_color(color(0));
}

KT_Point Brush::at(float u, float v) const {
  return {place_.left + u * place_.side, place_.bottom + v * place_.side,
          farthest * std::clamp(u, 0.0f, 1.0f)};
}

KT_DCI_Point Brush::pixel_at(float u, float v) const {
  const KT_Point point = at(u, v);
  return {static_cast<int>(std::lround(point.x)), static_cast<int>(std::lround(point.y)),
          static_cast<int>(std::lround(point.z))};
}

bool Brush::in_window(const KT_DCI_Point& point) const {
  return std::min(point.x, point.y) >= 0 && std::max(point.x, point.y) < cell_side;
}

KT_RGB32 Brush::color(int number) const {
  const Hue& hue = hues[paint_.hue];
  KT_RGB32 color = hue[static_cast<std::size_t>(number) % hue.size()];
  color.alpha = paint_.alpha;
  return color;
}

std::vector<KT_RGB32> Brush::colors(std::size_t count) const {
  std::vector<KT_RGB32> colors;
  for (std::size_t i = 0; i < count; ++i) colors.push_back(color(static_cast<int>(i)));
  return colors;
}

void Brush::set_color(const KT_RGB32& color) {
  kv::set_color(rendition, color, renderer_.options().palette());
}

void Brush::add_option(std::uint32_t advanced_bit) {
  const std::uint32_t bits = rendition->misc_attributes->advanced_options.bits;
  rendition.set_advanced_options({bits | advanced_bit}, false);
}

}  // namespace kv
