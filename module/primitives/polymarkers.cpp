// Entry steps of polymarkers, and the loop over their points.
#include "module/primitives/polymarkers.h"

#include <span>

#include "module/core/bind.h"
#include "module/core/outcode.h"
#include "module/primitives/plot.h"

namespace zbuffer::primitives {
namespace {

using enum Variant;
using enum Entry_Step;

// A symbol goes to the general routine even without points.
constexpr auto entry_steps =
    rule_table<Members<Variant>>(
        Entry_Steps{standard_marker, no_points, missing_image},
        {{{rgb_alpha}, {opaque_color, standard_marker, no_points, missing_image}},
         {{rgb_z}, {depth_off, standard_marker, no_points, missing_image}},
         {{rgb_alpha_z}, {opaque_color, depth_off, standard_marker, no_points, missing_image}}})
        .all();

struct Steps {
  static bool holds(Entry_Step step, Variant variant, const Strip_Call& markers) {
    if (step == opaque_color) return markers.material().color.alpha == 255;
    return image_step_holds(step, markers.renderer, variant);
  }

  static void take(Entry_Step step, Variant variant, Strip_Call& markers) {
    switch (step) {
      case opaque_color:
        return enter_polymarker(without_alpha(variant), markers);
      case depth_off:
        return enter_polymarker(without_depth(variant), markers);
      case standard_marker:
        return KD_Standard_Draw_2DI_Polymarker(&markers.renderer, markers.rendition, markers.count,
                                               markers.points);
      default:
        return;  // no points, missing image
    }
  }
};

template <Variant variant>
auto color_of(const KT_Material& material) {
  if constexpr (is_mapped(variant)) {
    return static_cast<std::uint8_t>(material.color_index);
  } else {
    return material.color.word();
  }
}

// Six loops, kept apart: in one function they would share its registers.
template <Variant variant>
[[gnu::noinline]] void draw_markers(const Strip_Call& markers) {
  const Plotter<variant> plotter(markers.renderer, markers.rendition);
  const auto color = color_of<variant>(markers.material());
  const KT_Int_Rectangle clip = markers.display_context().hard_clip;
  for (const KT_DCI_Point& point :
       std::span(markers.points, static_cast<std::size_t>(markers.count))) {
    if (!is_inside(clip, point.x, point.y)) continue;
    if (auto* pixel = plotter.open(point)) plotter.put(pixel, color);
  }
}

void draw(Variant variant, Strip_Call& markers) {
  with_constant(variant, [&]<Variant v>() { draw_markers<v>(markers); });
}

}  // namespace

void enter_polymarker(Variant variant, Strip_Call& markers) {
  enter_by<Steps, draw>(entry_steps[Members<Variant>::index(variant)], variant, markers);
}

Strip_Call polymarker_call(Software_Z_Buffer& renderer, Variant variant,
                           const KT_Rendition& rendition, int count, const KT_DCI_Point* points) {
  const Entry_Step_Set held =
      held_steps<steps_in(entry_steps)>(renderer, variant, rendition, count);
  return {{renderer, rendition, held}, count, points, nullptr};
}

}  // namespace zbuffer::primitives
