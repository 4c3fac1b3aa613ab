// Entry steps of polylines, the two layers, and the split of a list that crosses the hard clip.
#include "module/lines/entry.h"

#include "module/core/outcode.h"
#include "module/core/scratch.h"
#include "module/core/strip_actions.h"
#include "module/lines/antialiased.h"
#include "module/lines/outline.h"
#include "module/lines/range_clip.h"
#include "module/lines/rules.h"
#include "module/lines/scans.h"
#include "module/pixels/mask.h"
#include "module/primitives/dots.h"

namespace zbuffer::lines {
namespace {

constexpr Entry_Step_Set relevant = steps_in(entry_steps);
constexpr auto inside_pairs = rules::inside_pairs.all();

const Scans& scans_of(Variant variant) {
  static constexpr const Scans* by_variant[variant_count] = {&scans_rgb_alpha,   &scans_rgb,
                                                             &scans_mapped,      &scans_mapped_z,
                                                             &scans_rgb_alpha_z, &scans_rgb_z};
  return *by_variant[index_of(variant)];
}

constexpr std::size_t at(Kind kind) {
  return static_cast<std::size_t>(kind);
}
constexpr std::size_t at(Masking masking) {
  return static_cast<std::size_t>(masking);
}

const Entry_Steps& steps_of(Routine r) {
  return entry_steps[r.place()];
}

void draw_list(Routine r, const Strip_Call& line, Merging merging) {
  scans_of(r.variant()).inside[at(r.kind())][at(r.masking())](line, merging);
}

/// The framework's general routine of the same action.
[[gnu::noinline]] void call_standard(Routine r, const Strip_Call& line) {
  if (r.layer() == Layer::int_any) {
    return hand_over(r.kind(), line, line.points, KD_Standard_Draw_2DI_Polyline,
                     KD_Standard_Draw_2DI_Colorized_Polyline,
                     KD_Standard_Draw_2DI_Gouraud_Polyline);
  }
  hand_over(r.kind(), line, line.points, KD_Standard_Draw_DCI_Polyline,
            KD_Standard_Draw_DCI_Colorized_Polyline, KD_Standard_Draw_DCI_Gouraud_Polyline);
}

Strip_Call drawn_by(Routine r, const KT_Rendition& rendition, const Strip_Call& line) {
  return polyline_call(line.renderer, r.variant(), rendition, line.count, line.points, line.colors,
                       line.single_color);
}

/// Two passes of the same routine: the outline, and the line over it.
[[gnu::noinline]] void draw_outlined(Routine r, const Strip_Call& line) {
  KT_Rendition temporary = line.rendition;
  prepare_outline_rendition(temporary);
  Strip_Call outline = drawn_by(r, temporary, line);
  enter(r, outline);
  prepare_core_rendition(line.rendition, temporary);
  Strip_Call core = drawn_by(r, temporary, line);
  enter(r, core);
}

/// The rendition's colour, for a flat list that goes on as a colorized one.
KT_RGB32 flat_color(Routine r, const Strip_Call& line) {
  if (!is_mapped(r.variant())) return line.material().color;
  const KT_Palette& palette = line.renderer.current_options.palette();
  return palette->entries[static_cast<std::uint8_t>(line.material().color_index)].color;
}

void draw_unmerged(Routine r, Strip_Call& line) {
  draw_list(r, line, Merging::off);
}

struct Steps {
  static bool holds(Entry_Step step, Routine r, const Strip_Call& line);
  static void take(Entry_Step step, Routine r, Strip_Call& line);
};

/// A flat list of direct colour that lies inside: a colorized one in the rendition's colour.
[[gnu::noinline]] void draw_in_one_color(Routine r, Strip_Call& line) {
  const KT_RGB32 color = line.material().color;
  line.set_one_color(&color);
  r = r.of(Kind::colorized);
  enter_by<Steps, draw_unmerged>(steps_of(r), r, line);
}

bool Steps::holds(Entry_Step step, Routine r, const Strip_Call& line) {
  switch (step) {
    case Entry_Step::outline:
      return is_outlined(line.rendition, line.count, line.points);
    case Entry_Step::opaque_color:
      return line.single_color && segment_color(line, 0).alpha == 255;
    case Entry_Step::mask:
      return mask_in_force(line.renderer, line.rendition);
    default:
      return image_step_holds(step, line.renderer, r.variant(), line.count);
  }
}

void Steps::take(Entry_Step step, Routine r, Strip_Call& line) {
  switch (step) {
    case Entry_Step::outline:
      return draw_outlined(r, line);
    case Entry_Step::standard_line:
      return call_standard(r, line);
    case Entry_Step::wide_line: {
      const KT_RGB32 color = flat_color(r, line);
      line.set_one_color(&color);
      return call_standard(r.of(Kind::colorized), line);
    }
    case Entry_Step::opaque_color:
      return enter(r.in(without_alpha(r.variant())), line);
    case Entry_Step::depth_off:
      return enter(r.in(without_depth(r.variant())), line);
    case Entry_Step::mask:
      return enter(r.masked(), line);
    case Entry_Step::merging:
      return draw_list(r, line, Merging::on);
    case Entry_Step::antialias:
      if (r.layer() == Layer::int_any) return draw_antialiased_polyline(line);
      return draw_antialiased_list(line, r.masking());
    case Entry_Step::as_colorized: {
      const KT_RGB32 color = line.material().color;
      line.set_one_color(&color);
      return enter(r.of(Kind::colorized), line);
    }
    case Entry_Step::as_blending:
      return enter(r.in(with_alpha(r.variant())), line);
    default:
      return;  // nothing to draw, too few points, missing image
  }
}

/// Cuts one segment to the device range; false when nothing of it can be seen.
bool clip_to_range(Routine r, const Strip_Call& segment, KT_DCI_Point* points, KT_RGB32* colors) {
  if (r.kind() == Kind::gouraud) {
    return clip_shaded_segment_to_range(segment.points, points, segment.colors, colors);
  }
  return clip_segment_to_range(segment.points, points,
                               has_depth(r.variant()) ? End_Z::computed : End_Z::none);
}

/// Draws a segment of which an end lies outside.
void draw_crossing(Routine r, const Strip_Call& segment) {
  KT_DCI_Point points[2];
  KT_RGB32 colors[2];
  if (!clip_to_range(r, segment, points, colors)) return;
  Strip_Call pair = segment.with_points(2, points);
  if (r.kind() == Kind::gouraud) pair.colors = colors;
  const KT_Int_Rectangle& clip = segment.display_context().hard_clip;
  const unsigned code0 = outcode(clip, points[0].x, points[0].y);
  const unsigned code1 = outcode(clip, points[1].x, points[1].y);
  if ((code0 | code1) == 0 &&
      inside_pairs[Where::index(r.variant(), r.kind(), Path::clipped, r.masking())] ==
          Inside_Pairs::to_inside) {
    return enter(r.at(Layer::int_inside), pair);
  }
  if ((code0 & code1) == 0) {
    scans_of(r.variant()).clipped[at(r.kind())][at(r.masking())](pair, code0, code1);
  }
}

/// The last point as a dot: clipped segments do not draw their far end.
void draw_last_dot(Routine r, const Strip_Call& line) {
  const KT_DCI_Point& point = line.points[line.count - 1];
  if (r.kind() == Kind::flat) {
    return primitives::draw_dot(r.variant(), line.renderer, line.rendition, point, nullptr);
  }
  const KT_RGB32 color =
      r.kind() == Kind::gouraud ? line.colors[line.count - 1] : segment_color(line, line.count - 2);
  primitives::draw_dot(r.variant(), line.renderer, line.rendition, point, &color);
}

/// `codes` has two entries after those of the points: one that ends every search, and a zero.
[[gnu::noinline]] void walk_list(Routine r, const Strip_Call& line, const short* codes) {
  const int last = line.count - 1;
  if (codes[last] == 0 && codes[last - 1] != 0) draw_last_dot(r, line);
  int i = 0;
  for (;;) {
    while (codes[i] & codes[i + 1]) ++i;
    if (i == last) return;
    if (codes[i] != 0 || codes[i + 1] != 0) {
      draw_crossing(r, line.part(r.kind(), i, 2));
      ++i;
    }
    if (codes[i] == 0 && codes[i + 1] == 0) {
      const int start = i++;
      while (codes[i + 1] == 0) ++i;
      Strip_Call part = line.part(r.kind(), start, i - start + 1);
      enter(r.at(Layer::int_inside), part);
    }
  }
}

// Apart from `enter`, which then saves no registers.
[[gnu::noinline]] void draw_anywhere(Routine r, Strip_Call& line) {
  Scratch<short, 66> codes(std::ptrdiff_t{line.count} + 2);
  const int inside =
      KD_Clip(line.display_context().hard_clip, line.count, line.points, codes.data());
  if (inside == line.count) return enter(r.at(Layer::int_inside), line);
  if (inside == 0) return;
  codes[line.count] = list_end;
  codes[line.count + 1] = 0;
  walk_list(r, line, codes.data());
}

/// A layer's own work.
void draw_layer(Routine r, Strip_Call& line) {
  if (r.layer() == Layer::int_any) return draw_anywhere(r, line);
  if (r.kind() == Kind::flat && !is_mapped(r.variant())) return draw_in_one_color(r, line);
  draw_unmerged(r, line);
}

}  // namespace

void enter(Routine r, Strip_Call& line) {
  enter_by<Steps, draw_layer>(steps_of(r), r, line);
}

Strip_Call polyline_call(Software_Z_Buffer& renderer, Variant variant,
                         const KT_Rendition& rendition, int count, const KT_DCI_Point* points,
                         const KT_RGB32* colors, bool single_color) {
  const Entry_Step_Set held = held_steps<relevant>(renderer, variant, rendition, count);
  return {{renderer, rendition, held}, count, points, nullptr, colors, single_color};
}

}  // namespace zbuffer::lines
