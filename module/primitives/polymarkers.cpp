#include "module/primitives/polymarkers.h"

#include <array>
#include <utility>

#include "module/primitives/plot.h"

namespace zbuffer {
namespace {

/// The tests at the head, in the order of their list; the first that holds takes the whole call.
enum class Head_Test : std::uint8_t {
  none,
  opaque,    ///< the colour's alpha is 255: the variant without blending
  no_depth,  ///< depth is not enabled: the variant without depth
  symbol,    ///< not a dot: the general routine
  empty      ///< no points, which a symbol is asked before
};

using Head = std::array<Head_Test, 4>;

constexpr Head head_of(Variant variant) {
  using enum Head_Test;
  switch (variant) {
    case Variant::rgb_alpha:
      return {opaque, symbol, empty};
    case Variant::rgb_z:
      return {no_depth, symbol, empty};
    case Variant::rgb_alpha_z:
      return {opaque, no_depth, symbol, empty};
    default:
      return {symbol, empty};
  }
}

template <Head_Test test, Variant variant>
bool taken(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
           const KT_DCI_Point* points) {
  if constexpr (test == Head_Test::opaque) {
    if (rendition->material->color.alpha != 255) return false;
    draw_polymarker<without_alpha(variant)>(&renderer, rendition, count, points);
  } else if constexpr (test == Head_Test::no_depth) {
    if (rendition->display_context->depth_enabled != 0) return false;
    draw_polymarker<without_depth(variant)>(&renderer, rendition, count, points);
  } else if constexpr (test == Head_Test::symbol) {
    if (rendition->marker_attributes->marker_symbol == 0) return false;
    KD_Standard_Draw_2DI_Polymarker(&renderer, rendition, count, points);
  } else if constexpr (test == Head_Test::empty) {
    return count < 1;
  } else {
    return false;
  }
  return true;
}

template <Variant variant, std::size_t... at>
bool taken_by_head(Software_Z_Buffer& renderer, const KT_Rendition& rendition, int count,
                   const KT_DCI_Point* points, std::index_sequence<at...>) {
  constexpr Head head = head_of(variant);
  return (taken<head[at], variant>(renderer, rendition, count, points) || ...);
}

template <Variant variant>
auto ink_of(const KT_Material& material) {
  if constexpr (is_mapped(variant)) {
    return static_cast<std::uint8_t>(material.color_index);
  } else {
    return material.color.word();
  }
}

bool outside(const KT_Int_Rectangle& clip, const KT_DCI_Point& point) {
  return point.x < clip.left || point.x > clip.right || point.y < clip.bottom || point.y > clip.top;
}

}  // namespace

template <Variant variant>
void draw_polymarker(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                     const KT_DCI_Point* points) {
  Software_Z_Buffer& renderer = renderer_of(object);
  if (taken_by_head<variant>(renderer, rendition, count, points, std::make_index_sequence<4>{})) {
    return;
  }
  const Plotter<variant> plotter(renderer, rendition);
  const auto ink = ink_of<variant>(*rendition->material);
  const KT_Int_Rectangle clip = rendition->display_context->hard_clip;
  for (int i = 0; i < count; ++i) {
    if (outside(clip, points[i])) continue;
    if (auto* pixel = plotter.open(points[i])) plotter.put(pixel, ink);
  }
}

template void draw_polymarker<Variant::rgb_alpha>(KT_Renderer_Data*, const KT_Rendition&, int,
                                                  const KT_DCI_Point*);
template void draw_polymarker<Variant::rgb>(KT_Renderer_Data*, const KT_Rendition&, int,
                                            const KT_DCI_Point*);
template void draw_polymarker<Variant::mapped>(KT_Renderer_Data*, const KT_Rendition&, int,
                                               const KT_DCI_Point*);
template void draw_polymarker<Variant::rgb_alpha_z>(KT_Renderer_Data*, const KT_Rendition&, int,
                                                    const KT_DCI_Point*);
template void draw_polymarker<Variant::rgb_z>(KT_Renderer_Data*, const KT_Rendition&, int,
                                              const KT_DCI_Point*);

}  // namespace zbuffer
