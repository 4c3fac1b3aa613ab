// Drawing, past all entry tests: lists of points that lie inside, and single clipped segments.
// Here a member gets its gate and its ink.
#pragma once

#include "module/lines/clipped_stepper.h"
#include "module/lines/pen.h"
#include "module/lines/routines.h"

namespace zbuffer::lines {

enum class Merging : std::uint8_t { off, on };

namespace draw_detail {

template <Member member, class Draw>
void with_gate(const Software_Z_Buffer& renderer, Draw draw) {
  if constexpr (!has_depth(member.variant)) {
    draw(No_Gate{});
  } else {
    constexpr Depth_Setting setting = the_rule(rules::depth_rules, member);
    with_depth_gate<setting, setting>(renderer, draw);
  }
}

/// Calls `draw(ink)` with ink that can merge or does what the variant does otherwise.
template <Member member, class Source, class Merge, class Store, class Draw>
void with_store(const Polyline& line, Merging merging, const Source& source, const Store& store,
                Draw draw) {
  if constexpr (the_rule(rules::merge_rules, member) != Merge_Rule::never) {
    if (merging == Merging::on) {
      return draw(Ink{source, Merge_Store<Merge>{Merge(line.renderer)}});
    }
  }
  draw(Ink{source, store});
}

template <Member member, class Draw>
void with_mapped_ink(const Polyline& line, Merging merging, Draw draw) {
  if constexpr (member.kind == Kind::gouraud) {
    draw(Ink{Gouraud_Dither_Source{Cube(line.renderer.color_cube)}, Replace{}});
  } else if constexpr (member.kind == Kind::colorized) {
    draw(Ink{Dithered_Source{Cube(line.renderer.color_cube)}, Replace{}});
  } else {
    using Source = Constant_Source<std::uint8_t>;
    const Source source{static_cast<std::uint8_t>(line.material().color_index)};
    with_store<member, Source, Mapped_Merge>(line, merging, source, Replace{}, draw);
  }
}

template <Member member, class Draw>
void with_direct_ink(const Polyline& line, Merging merging, Draw draw) {
  constexpr bool blends = the_rule(rules::blending_rules, member) == Blending::blend;
  if constexpr (member.kind != Kind::gouraud) {
    using Source = Constant_Source<std::uint32_t>;
    using Store = std::conditional_t<blends, Constant_Blend, Replace>;
    with_store<member, Source, Rgb_Merge>(line, merging, Source{}, Store{}, draw);
  } else if constexpr (blends) {
    draw(Ink{Gouraud_Alpha_Source{}, Source_Blend{}});
  } else {
    draw(Ink{Gouraud_Source{}, Replace{}});
  }
}

/// Calls `draw(pen)` with the pen of a member. Ink of one colour has none yet.
template <Member member, class Draw>
void with_pen(const Polyline& line, Merging merging, Draw draw) {
  with_gate<member>(line.renderer, [&](auto gate) {
    const auto with_ink = [&](const auto& ink) {
      Pen<decltype(gate), member.masking, std::decay_t<decltype(ink)>> pen(line, ink);
      draw(pen);
    };
    if constexpr (is_mapped(member.variant)) {
      with_mapped_ink<member>(line, merging, with_ink);
    } else {
      with_direct_ink<member>(line, merging, with_ink);
    }
  });
}

/// Whether red, green and blue differ by at most 3 each. Alpha has no part in it.
constexpr bool nearly_equal(KT_RGB32 a, KT_RGB32 b) {
  const auto near = [](int x, int y) { return static_cast<unsigned>(x - y + 3) <= 6; };
  return near(a.red, b.red) && near(a.green, b.green) && near(a.blue, b.blue);
}

/// Draws a segment of nearly one colour as a list of its own, far end included, in the colour of
/// its first point; returns whether it did.
template <Member member>
bool drawn_in_one_color(const Polyline& line, int i) {
  constexpr Near_Rule rule = the_rule(rules::near_rules, member);
  if constexpr (rule != Near_Rule::shaded) {
    const KT_RGB32* colors = line.colors + i;
    if (!nearly_equal(colors[0], colors[1])) return false;
    constexpr Variant by =
        rule == Near_Rule::colorized ? member.variant : without_alpha(member.variant);
    enter<Layer::inside, by, Kind::colorized>(
        line.with_points(2, line.points + i, colors).in_one_color(colors));
    return true;
  } else {
    return false;
  }
}

template <Kind kind>
Ends ends_of(const Polyline& line, int i) {
  const KT_DCI_Point* p = line.points + i;
  if constexpr (kind == Kind::gouraud) {
    return {p[0].z, p[1].z, line.colors[i], line.colors[i + 1]};
  } else {
    return {p[0].z, p[1].z, {}, {}};
  }
}

inline Segment segment_of(const Polyline& line, int i, KT_Int_XY origin) {
  const KT_DCI_Point* p = line.points + i;
  return {p[0].x - origin.x, p[0].y - origin.y, p[1].x - origin.x, p[1].y - origin.y};
}

/// The depth accumulator one step behind the last pixel's successor. A segment without pixels
/// leaves it at its start.
inline std::int32_t accumulated_depth(const KT_DCI_Point* last_two) {
  const KT_DCI_Point& from = last_two[0];
  const KT_DCI_Point& to = last_two[1];
  const std::int32_t pixels = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
  Word value = Depth::at(from.z);
  if (pixels > 0) {
    value += as_word(pixels + 1) * depth_step(wrapped_difference(to.z, from.z), pixels);
  }
  return Depth::whole_unsigned(value);
}

/// Draws the final point of a list, which no segment has drawn.
template <Member member, class Pen_Type>
void draw_end(const Polyline& line, const Pen_Type& pen) {
  constexpr End_Rule rule = the_rule(rules::end_rules, member);
  const KT_DCI_Point* last = line.points + line.count - 1;
  const std::int32_t x = last->x - pen.origin().x;
  const std::int32_t y = last->y - pen.origin().y;
  if constexpr (Pen_Type::Gate::tests) {
    const auto value = [&](End_Depth which) {
      return which == End_Depth::point ? last->z : accumulated_depth(last - 1);
    };
    std::uint16_t* depth = pen.depth(x, y);
    if (value(rule.compared) > std::int32_t{*depth} || pen.hidden(x, y)) return;
    *depth = static_cast<std::uint16_t>(value(rule.written));
  } else {
    if (pen.hidden(x, y)) return;
  }
  Ends ends{};
  if constexpr (member.kind == Kind::gouraud) {
    ends.color0 = ends.color1 = line.colors[line.count - 1];
  }
  auto* pixel = pen.pixel(x, y);
  const auto color = pen.ink.source.begin(ends, {Step_Count(1), 0}, {y, 1}).value(pixel);
  *pixel = rule.color == End_Color::stored ? color : pen.ink.store(*pixel, color);
}

}  // namespace draw_detail

/// Draws a list of points that lie inside: every segment but its far end, then the final point.
template <Member member>
void draw_list(const Polyline& line, Merging merging) {
  using namespace draw_detail;
  with_pen<member>(line, merging, [&](auto& pen) {
    for (int i = 0; i + 1 < line.count; ++i) {
      if constexpr (member.kind == Kind::gouraud) {
        if (drawn_in_one_color<member>(line, i)) continue;
      }
      if constexpr (member.kind == Kind::colorized) {
        if (i == 0 || !line.single_color) pen.ink.take(line.segment_color(i));
      }
      step_inside(segment_of(line, i, pen.origin()), Brush{pen, ends_of<member.kind>(line, i)});
    }
    draw_end<member>(line, pen);
  });
}

/// Draws what is inside of the one segment of `pair`.
template <Member member>
void draw_clipped(const Polyline& pair, unsigned code0, unsigned code1) {
  using namespace draw_detail;
  Merging merging = Merging::off;
  if constexpr (the_rule(rules::merge_rules, member) == Merge_Rule::when_on) {
    if (merge_on(pair.renderer, pair.rendition)) merging = Merging::on;
  }
  with_pen<member>(pair, merging, [&](auto& pen) {
    if constexpr (member.kind == Kind::colorized) pen.ink.take(pair.segment_color(0));
    if constexpr (member.kind == Kind::plain) pen.ink.take(pair.material().color);
    const Crossing crossing{pair.context().hard_clip, pen.origin(), code0, code1};
    step_clipped(segment_of(pair, 0, {}), crossing, Brush{pen, ends_of<member.kind>(pair, 0)});
  });
}

}  // namespace zbuffer::lines
