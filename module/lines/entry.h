// From an action to pixels: entry chains, the two layers, and the walk along a list that crosses
// the hard clip.
//
//   2DI  anywhere   cuts the list into runs of inside points (to DCI) and clipped segments
//   DCI  inside     draws
#pragma once

#include <utility>

#include "module/core/scratch.h"
#include "module/lines/antialiased.h"
#include "module/lines/draw.h"
#include "module/lines/outline.h"
#include "module/lines/range_clip.h"
#include "module/lines/standard.h"
#include "module/primitives/dots.h"

namespace zbuffer::lines {

namespace entry_detail {

inline bool needs_standard(const KT_Line_Attributes& line) {
  return line.line_pattern != 0 || line.line_weight > 1;
}

/// Two passes of the same action: the outline, and the line over it.
template <Layer layer, Variant variant, Kind kind>
void draw_outlined(const Polyline& line) {
  KT_Rendition temporary = line.rendition;
  prepare_outline_rendition(temporary);
  enter<layer, variant, kind>(line.drawn_by(temporary));
  prepare_core_rendition(line.rendition, temporary);
  enter<layer, variant, kind>(line.drawn_by(temporary));
}

/// The rendition's colour, for a plain list that goes on as a colorized one.
template <Variant variant>
KT_RGB32 plain_color(const Polyline& line) {
  if constexpr (is_mapped(variant)) {
    const KT_Palette& palette = line.renderer.current_options.palette();
    return palette->entries[static_cast<std::uint8_t>(line.material().color_index)].color;
  } else {
    return line.material().color;
  }
}

/// Takes the call elsewhere when the test of `step` holds; returns whether it did.
template <Step step, Layer layer, Variant variant, Kind kind, Masking masking>
bool taken(const Polyline& line) {
  constexpr Member member{variant, kind, Road::run, masking};
  if constexpr (step == Step::ready) {
    return !line.renderer.color_image || line.count < 2;
  } else if constexpr (step == Step::points) {
    return line.count < 2;
  } else if constexpr (step == Step::outline) {
    if (!is_outlined(line.rendition, line.count, line.points)) return false;
    draw_outlined<layer, variant, kind>(line);
  } else if constexpr (step == Step::standard) {
    if (!needs_standard(line.attributes())) return false;
    call_standard<layer, kind>(line);
  } else if constexpr (step == Step::weight) {
    if (line.attributes().line_weight <= 1) return false;
    const KT_RGB32 color = plain_color<variant>(line);
    call_standard<layer, Kind::colorized>(line.in_one_color(&color));
  } else if constexpr (step == Step::opaque) {
    if (!line.single_color || line.segment_color(0).alpha < 255) return false;
    enter<layer, without_alpha(variant), kind>(line);
  } else if constexpr (step == Step::depth) {
    if (line.context().depth_enabled != 0) return false;
    enter<layer, without_depth(variant), kind>(line);
  } else if constexpr (step == Step::mask) {
    if (!mask_in_force(line.renderer, line.rendition)) return false;
    enter_masked<layer, variant, kind>(line);
  } else if constexpr (step == Step::merge) {
    if (!merge_on(line.renderer, line.rendition)) return false;
    draw_list<member>(line, Merging::on);
  } else if constexpr (step == Step::antialias) {
    if (!(line.advanced_bits() & KT_Advanced_Options::antialias_bit)) return false;
    if constexpr (layer == Layer::any) {
      draw_antialiased_polyline(line);
    } else {
      draw_antialiased_list(line, masking);
    }
  } else if constexpr (step == Step::shell) {
    if (mask_in_force(line.renderer, line.rendition)) {
      enter_masked<layer, variant, kind>(line);
    } else {
      const KT_RGB32 color = line.material().color;
      enter<layer, variant, Kind::colorized>(line.in_one_color(&color));
    }
  } else {
    static_assert(step == Step::none);
    return false;
  }
  return true;
}

template <Layer layer, Variant variant, Kind kind, Masking masking>
bool taken_by_chain(const Polyline& line) {
  constexpr Entry entry{layer, kind, variant};
  constexpr Chain chain = masking == Masking::masked ? the_rule(rules::masked_chains, entry)
                                                     : the_rule(rules::chains, entry);
  return [&]<std::size_t... at>(std::index_sequence<at...>) {
    return (taken<chain.steps[at], layer, variant, kind, masking>(line) || ...);
  }
  (std::make_index_sequence<Chain::longest>{});
}

// What follows is one walk for all kinds.

/// The part of a list from point `from` on, with its colours.
template <Kind kind>
Polyline part_of(const Polyline& line, int from, int count) {
  const bool moves = kind == Kind::gouraud || (kind == Kind::colorized && !line.single_color);
  return line.with_points(count, line.points + from, moves ? line.colors + from : line.colors);
}

/// Draws a part that lies inside.
template <Variant variant, Kind kind, Masking masking>
void draw_inside(const Polyline& part) {
  if constexpr (masking == Masking::masked) {
    enter_masked<Layer::inside, variant, kind>(part);
  } else {
    enter<Layer::inside, variant, kind>(part);
  }
}

/// Cuts one segment to the device range; false when nothing of it can be seen.
template <Variant variant, Kind kind>
bool clip_to_range(const Polyline& segment, KT_DCI_Point* points, KT_RGB32* colors) {
  if constexpr (kind == Kind::gouraud) {
    return clip_shaded_segment_to_range(segment.points, points, segment.colors, colors);
  } else {
    return clip_segment_to_range(segment.points, points,
                                 has_depth(variant) ? End_Z::computed : End_Z::none);
  }
}

/// Draws a segment of which an end lies outside.
template <Variant variant, Kind kind, Masking masking>
void draw_crossing(const Polyline& segment) {
  KT_DCI_Point points[2];
  KT_RGB32 colors[2];
  if (!clip_to_range<variant, kind>(segment, points, colors)) return;
  const Polyline pair =
      segment.with_points(2, points, kind == Kind::gouraud ? colors : segment.colors);
  const KT_Int_Rectangle& clip = segment.context().hard_clip;
  const unsigned code0 = outcode(clip, points[0].x, points[0].y);
  const unsigned code1 = outcode(clip, points[1].x, points[1].y);
  constexpr Member member{variant, kind, Road::clipped, masking};
  if constexpr (the_rule(rules::inside_pair_rules, member) == Inside_Pairs::to_inside) {
    if ((code0 | code1) == 0) return draw_inside<variant, kind, masking>(pair);
  }
  if ((code0 & code1) == 0) draw_clipped<member>(pair, code0, code1);
}

/// The last point as a dot: clipped segments do not draw their far end.
template <Variant variant, Kind kind>
void draw_last_dot(const Polyline& line) {
  const KT_DCI_Point& point = line.points[line.count - 1];
  if constexpr (kind == Kind::plain) {
    draw_dot<variant>(line.renderer, line.rendition, point, nullptr);
  } else {
    const KT_RGB32 color =
        kind == Kind::gouraud ? line.colors[line.count - 1] : line.segment_color(line.count - 2);
    draw_dot<variant>(line.renderer, line.rendition, point, &color);
  }
}

/// `codes` has two entries behind those of the points: one that shares no bit with any code and
/// ends every search, and a zero.
template <Variant variant, Kind kind, Masking masking>
void walk_list(const Polyline& line, const short* codes) {
  const int last = line.count - 1;
  if (codes[last] == 0 && codes[last - 1] != 0) draw_last_dot<variant, kind>(line);
  int i = 0;
  for (;;) {
    while (codes[i] & codes[i + 1]) ++i;
    if (i == last) return;
    if (codes[i] != 0 || codes[i + 1] != 0) {
      draw_crossing<variant, kind, masking>(part_of<kind>(line, i, 2));
      ++i;
    }
    if (codes[i] == 0 && codes[i + 1] == 0) {
      const int start = i++;
      while (codes[i + 1] == 0) ++i;
      draw_inside<variant, kind, masking>(part_of<kind>(line, start, i - start + 1));
    }
  }
}

template <Variant variant, Kind kind, Masking masking>
void draw_any(const Polyline& line) {
  constexpr short sentinel = 4096;
  Scratch<short, 66> codes(std::ptrdiff_t{line.count} + 2);
  const int inside = KD_Clip(line.context().hard_clip, line.count, line.points, codes.data());
  if (inside == line.count) return draw_inside<variant, kind, masking>(line);
  if (inside == 0) return;
  codes[line.count] = sentinel;
  codes[line.count + 1] = 0;
  walk_list<variant, kind, masking>(line, codes.data());
}

/// A layer's own work.
template <Layer layer, Variant variant, Kind kind, Masking masking>
void draw_layer(const Polyline& line) {
  if constexpr (layer == Layer::any) {
    draw_any<variant, kind, masking>(line);
  } else {
    constexpr Member member{variant, kind, Road::run, masking};
    Merging merging = Merging::off;
    if constexpr (the_rule(rules::merge_rules, member) == Merge_Rule::when_on) {
      if (merge_on(line.renderer, line.rendition)) merging = Merging::on;
    }
    draw_list<member>(line, merging);
  }
}

/// Whether a routine is only a shell around the colorized one.
constexpr bool is_shell(const Chain& chain) {
  for (Step step : chain.steps) {
    if (step == Step::shell) return true;
  }
  return false;
}

}  // namespace entry_detail

template <Layer layer, Variant variant, Kind kind>
void enter(const Polyline& line) {
  using namespace entry_detail;
  if (taken_by_chain<layer, variant, kind, Masking::open>(line)) return;
  constexpr Chain chain = the_rule(rules::chains, Entry{layer, kind, variant});
  if constexpr (!is_shell(chain)) {
    draw_layer<layer, variant, kind, Masking::open>(line);
  }
}

template <Layer layer, Variant variant, Kind kind>
void enter_masked(const Polyline& line) {
  using namespace entry_detail;
  constexpr Twin twin = the_rule(rules::twins, Entry{layer, kind, variant});
  static_assert(twin != Twin::none);
  if constexpr (twin == Twin::colorized) {
    const KT_RGB32 color = line.material().color;
    enter_masked<layer, variant, Kind::colorized>(line.in_one_color(&color));
  } else if constexpr (twin == Twin::of_blending) {
    enter_masked<layer, with_alpha(variant), kind>(line);
  } else {
    if (taken_by_chain<layer, variant, kind, Masking::masked>(line)) return;
    if constexpr (layer == Layer::inside && kind == Kind::plain && !is_mapped(variant)) {
      const KT_RGB32 color = line.material().color;
      enter_masked<layer, variant, Kind::colorized>(line.in_one_color(&color));
    } else {
      draw_layer<layer, variant, kind, Masking::masked>(line);
    }
  }
}

}  // namespace zbuffer::lines
