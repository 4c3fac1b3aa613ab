// Entry steps of strips, the four layers, and the split of a strip that crosses the hard clip.
#include "module/triangles/entry.h"

#include "module/core/scratch.h"
#include "module/core/strip_actions.h"
#include "module/lines/strip_edges.h"
#include "module/pixels/mask.h"
#include "module/pixels/pixel_bits.h"
#include "module/raster/near_flat.h"
#include "module/raster/strip_split.h"
#include "module/triangles/rules.h"
#include "module/triangles/scans.h"

namespace zbuffer::triangles {
namespace {

// Rules by the place of a routine, as the routine is known at run time alone.
constexpr auto point_z = rules::point_z.all();
constexpr auto whole_strips = rules::whole_strips.all();
const Scans& scans_of(Variant variant) {
  static constexpr const Scans* by_variant[variant_count] = {&scans_rgb_alpha,   &scans_rgb,
                                                             &scans_mapped,      &scans_mapped_z,
                                                             &scans_rgb_alpha_z, &scans_rgb_z};
  return *by_variant[index_of(variant)];
}

void scan(Routine r, const Strip_Call& strip, const Scans::Table& table) {
  table[static_cast<std::size_t>(r.kind())][static_cast<std::size_t>(r.masking())](strip);
}

/// The framework's general routine of the same action.
void call_standard(Routine r, const Strip_Call& strip) {
  switch (r.layer()) {
    case Layer::float_any:
      return hand_over(r.kind(), strip, strip.floats, KD_Standard_Draw_2D_Polytriangle,
                       KD_Standard_Draw_2D_Colorized_Polytriangle,
                       KD_Standard_Draw_2D_Gouraud_Polytriangle);
    case Layer::float_inside:
      return hand_over(r.kind(), strip, strip.floats, KD_Standard_Draw_DC_Polytriangle,
                       KD_Standard_Draw_DC_Colorized_Polytriangle,
                       KD_Standard_Draw_DC_Gouraud_Polytriangle);
    case Layer::int_any:
      return hand_over(r.kind(), strip, strip.points, KD_Standard_Draw_2DI_Polytriangle,
                       KD_Standard_Draw_2DI_Colorized_Polytriangle,
                       KD_Standard_Draw_2DI_Gouraud_Polytriangle);
    case Layer::int_inside:
      return hand_over(r.kind(), strip, strip.points, KD_Standard_Draw_DCI_Polytriangle,
                       KD_Standard_Draw_DCI_Colorized_Polytriangle,
                       KD_Standard_Draw_DCI_Gouraud_Polytriangle);
  }
}

const Entry_Steps& steps_of(Routine r) {
  return entry_steps[r.place()];
}

void draw_inside(Routine r, Strip_Call& strip) {
  scan(r, strip, scans_of(r.variant()).inside);
}

struct Steps {
  static bool holds(Entry_Step step, Routine r, const Strip_Call& strip) {
    if (step == Entry_Step::mask) return mask_in_force(strip.renderer, strip.rendition);
    return image_step_holds(step, strip.renderer, r.variant(), strip.count);
  }

  static void take(Entry_Step step, Routine r, Strip_Call& strip) {
    switch (step) {
      case Entry_Step::blending:
      case Entry_Step::merging:
        return enter(r.in(with_alpha(r.variant())), strip);
      case Entry_Step::blending_filled:
        // The steps of the blending variant after its edge step, and its scan.
        return enter_by<Steps, draw_inside>(
            {Entry_Step::standard_pattern, Entry_Step::depth_off, Entry_Step::missing_image},
            r.in(with_alpha(r.variant())), strip);
      case Entry_Step::merging_opaque: {
        KT_RGB32 color = *strip.colors;
        color.alpha = 255;
        strip.set_one_color(&color);
        return enter(r.in(with_alpha(r.variant())), strip);
      }
      case Entry_Step::edges:
        return lines::draw_strip_edges(strip);
      case Entry_Step::standard_pattern:
        return call_standard(r, strip);
      case Entry_Step::depth_off:
        return enter(r.in(without_depth(r.variant())), strip);
      case Entry_Step::mask:
        return enter(r.masked(), strip);
      default:
        return;  // nothing to draw, missing image
    }
  }
};

// The layers stand apart from `enter`, which then saves no registers.

[[gnu::noinline]] void convert(Routine r, Strip_Call& strip) {
  Scratch<KT_DCI_Point> points(strip.count);
  round_points(strip.floats, strip.count, points.data(), point_z[r.place()]);
  strip.set_points(strip.count, points.data());
  enter(r.at(integer_layer(r.layer())), strip);
}

void draw_whole(Routine r, Strip_Call& s) {
  if (whole_strips[r.place()] == Whole_Strip::by_call) return enter(r.at(Layer::int_inside), s);
  const KT_Action_Table& actions = s.renderer.actions;
  if (r.kind() == Kind::gouraud) {
    actions.call<KT_Action::Draw_DCI_Gouraud_Polytriangle>(s.rendition, s.count, s.points,
                                                           s.colors);
  } else {
    actions.call<KT_Action::Draw_DCI_Colorized_Polytriangle>(s.rendition, s.count, s.points,
                                                             s.colors, s.single_color);
  }
}

void draw_clipped(Routine r, const Strip_Call& triangle) {
  if (r.kind() == Kind::gouraud && near_flat_clipped(triangle.colors)) {
    return draw_clipped(r.of(Kind::colorized), triangle.in_one_color(triangle.colors));
  }
  scan(r, triangle, scans_of(r.variant()).clipped);
}

[[gnu::noinline]] void draw_anywhere(Routine r, Strip_Call& strip) {
  Scratch<short> codes(strip.count);
  const int inside =
      KD_Clip(strip.display_context().hard_clip, strip.count, strip.points, codes.data());
  if (inside == strip.count) return draw_whole(r, strip);
  if (inside == 0 || draws_nothing(strip.rendition)) return;
  split_strip(
      strip.count, codes.data(),
      [&](int first, int count) {
        Strip_Call part = strip.part(r.kind(), first, count);
        enter(r.at(Layer::int_inside), part);
      },
      [&](int first) { draw_clipped(r, strip.part(r.kind(), first, 3)); });
}

/// A flat strip of direct colour has a few steps of its own and then is a colorized one.
[[gnu::noinline]] void enter_in_one_color(Routine r, Strip_Call& strip) {
  const KT_RGB32 color = strip.material().color;  // a copy, which nothing called can change
  strip.set_one_color(&color);
  enter_by<Steps, enter>(steps_of(r), r.of(Kind::colorized), strip);
}

/// A layer's own work.
void draw_layer(Routine r, Strip_Call& strip) {
  switch (r.layer()) {
    case Layer::float_any:
    case Layer::float_inside:
      return convert(r, strip);
    case Layer::int_any:
      return draw_anywhere(r, strip);
    case Layer::int_inside:
      return draw_inside(r, strip);
  }
}

}  // namespace

void enter(Routine r, Strip_Call& strip) {
  if (r.kind() == Kind::flat && !is_mapped(r.variant())) return enter_in_one_color(r, strip);
  enter_by<Steps, draw_layer>(steps_of(r), r, strip);
}

}  // namespace zbuffer::triangles
