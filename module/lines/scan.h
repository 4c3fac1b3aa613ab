// Drawing, after all entry steps: lists of points that lie inside, and single clipped segments.
// Here a member gets its depth test and its paint.
#pragma once

#include "module/lines/clipped_stepper.h"
#include "module/lines/drawer.h"
#include "module/lines/entry.h"
#include "module/lines/rules.h"
#include "module/lines/scans.h"
#include "module/pixels/blend_256.h"
#include "module/pixels/merge.h"
#include "module/raster/near_flat.h"

namespace zbuffer::lines {

namespace scan_detail {

/// Calls `draw(paint)` with paint that can merge or does what the variant does otherwise.
template <Member member, class Merge, class Source, class Blend, class Draw>
void with_merge(const Strip_Call& line, Merging merging, const Source& source, const Blend& blend,
                Draw draw) {
  if constexpr (rules::merge(member) != Merge_Rule::never) {
    if (merging == Merging::on) return draw(Paint{source, Merge(line.renderer)});
  }
  draw(Paint{source, blend});
}

template <Member member, class Draw>
void with_mapped_paint(const Strip_Call& line, Merging merging, Draw draw) {
  if constexpr (member.kind == Kind::gouraud) {
    draw(Paint{Gouraud_Dither_Source{Cube(line.renderer.color_cube)}, Replace{}});
  } else if constexpr (member.kind == Kind::colorized) {
    draw(Paint{Dithered_Source{Cube(line.renderer.color_cube)}, Replace{}});
  } else {
    const auto index = static_cast<std::uint8_t>(line.material().color_index);
    with_merge<member, Mapped_Merge>(line, merging, Constant_Source<std::uint8_t>{index}, Replace{},
                                     draw);
  }
}

/// Paint of one colour gets its colour later, by `take`.
template <Member member, class Draw>
void with_direct_paint(const Strip_Call& line, Merging merging, Draw draw) {
  constexpr bool blends = rules::alpha(member) == Blending::blend;
  if constexpr (member.kind != Kind::gouraud) {
    using Blend = std::conditional_t<blends, Constant_Blend_256, Replace>;
    with_merge<member, Rgb_Merge>(line, merging, Constant_Source<std::uint32_t>{}, Blend{}, draw);
  } else if constexpr (blends) {
    draw(Paint{Gouraud_Alpha_Source{}, Source_Blend_256{}});
  } else {
    draw(Paint{Gouraud_Source{}, Replace{}});
  }
}

/// Calls `draw(drawer)` with the drawer of a member.
template <Member member, class Draw>
void with_drawer(const Strip_Call& line, Merging merging, Draw draw) {
  with_depth_test<member.variant, rules::depth(member)>(line.renderer, [&](auto test) {
    const auto with_paint = [&](const auto& paint) {
      Drawer<decltype(test), member.masking, std::decay_t<decltype(paint)>> drawer(line, paint);
      draw(drawer);
    };
    if constexpr (is_mapped(member.variant)) {
      with_mapped_paint<member>(line, merging, with_paint);
    } else {
      with_direct_paint<member>(line, merging, with_paint);
    }
  });
}

/// Whether merge control is on for a member that has no entry step for it.
template <Member member>
Merging merging_when_on(const Strip_Call& line) {
  const bool on =
      rules::merge(member) == Merge_Rule::when_on && merge_on(line.renderer, line.rendition);
  return on ? Merging::on : Merging::off;
}

/// Draws a segment of nearly one colour as a list of its own, far end included, in the colour of
/// its first point; returns whether it did.
template <Member member>
bool drawn_in_one_color(const Strip_Call& line, int i) {
  constexpr Near_Rule rule = rules::near(member);
  if constexpr (rule != Near_Rule::shaded) {
    const KT_RGB32* colors = line.colors + i;
    if (!nearly_equal(colors[0], colors[1])) return false;
    constexpr Variant by =
        rule == Near_Rule::colorized ? member.variant : without_alpha(member.variant);
    Strip_Call pair = line.with_points(2, line.points + i);
    pair.set_one_color(colors);
    enter({Layer::int_inside, Kind::colorized, by}, pair);
    return true;
  } else {
    return false;
  }
}

template <Kind kind>
Ends ends_of(const Strip_Call& line, int i) {
  const KT_DCI_Point* p = line.points + i;
  if constexpr (kind == Kind::gouraud) {
    return {p[0].z, p[1].z, line.colors[i], line.colors[i + 1]};
  } else {
    return {p[0].z, p[1].z, {}, {}};
  }
}

inline Segment segment_of(const Strip_Call& line, int i, KT_Int_XY origin) {
  const KT_DCI_Point* p = line.points + i;
  return {p[0].x - origin.x, p[0].y - origin.y, p[1].x - origin.x, p[1].y - origin.y};
}

/// The depth accumulator one step after the last pixel's successor. A segment without pixels
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
template <Member member, class Drawer_Type>
void draw_end(const Strip_Call& line, const Drawer_Type& drawer) {
  constexpr End_Rule rule = rules::ends(member);
  const KT_DCI_Point* last = line.points + line.count - 1;
  const std::int32_t x = last->x - drawer.origin().x;
  const std::int32_t y = last->y - drawer.origin().y;
  if constexpr (Drawer_Type::Test::tests) {
    const auto value = [&](End_Depth which) {
      return which == End_Depth::point ? last->z : accumulated_depth(last - 1);
    };
    std::uint16_t* depth = drawer.depth(x, y);
    if (value(rule.compared) > std::int32_t{*depth} || drawer.hidden(x, y)) return;
    *depth = static_cast<std::uint16_t>(value(rule.written));
  } else {
    if (drawer.hidden(x, y)) return;
  }
  Ends ends{};
  if constexpr (member.kind == Kind::gouraud) {
    ends.color0 = ends.color1 = line.colors[line.count - 1];
  }
  auto* pixel = drawer.pixel(x, y);
  const auto color = drawer.paint.source.begin(ends, {Divisor(1), 0}, {y, 1}).value(pixel);
  *pixel = rule.color == End_Color::stored ? color : drawer.paint.blend(*pixel, color);
}

}  // namespace scan_detail

/// Draws a list of points that lie inside: every segment but its far end, then the final point.
template <Member member>
void scan_inside(const Strip_Call& line, Merging merging) {
  using namespace scan_detail;
  if (merging == Merging::off) merging = merging_when_on<member>(line);
  with_drawer<member>(line, merging, [&](auto& drawer) {
    for (int i = 0; i + 1 < line.count; ++i) {
      if constexpr (member.kind == Kind::gouraud) {
        if (drawn_in_one_color<member>(line, i)) continue;
      }
      if constexpr (member.kind == Kind::colorized) {
        if (i == 0 || !line.single_color) drawer.paint.take(segment_color(line, i));
      }
      step_inside(segment_of(line, i, drawer.origin()),
                  Segment_Drawer{drawer, ends_of<member.kind>(line, i)});
    }
    draw_end<member>(line, drawer);
  });
}

/// Draws what is inside of the one segment of `pair`.
template <Member member>
void scan_clipped(const Strip_Call& pair, unsigned code0, unsigned code1) {
  using namespace scan_detail;
  with_drawer<member>(pair, merging_when_on<member>(pair), [&](auto& drawer) {
    if constexpr (member.kind == Kind::colorized) drawer.paint.take(segment_color(pair, 0));
    if constexpr (member.kind == Kind::flat) drawer.paint.take(pair.material().color);
    const Crossing crossing{pair.display_context().hard_clip, drawer.origin(), code0, code1};
    step_clipped(segment_of(pair, 0, {}), crossing,
                 Segment_Drawer{drawer, ends_of<member.kind>(pair, 0)});
  });
}

/// All scans of a variant.
template <Variant variant>
constexpr Scans scans() {
  Scans made{};
  for_all_kinds([&]<Kind kind, Masking masking>() {
    constexpr auto k = static_cast<std::size_t>(kind);
    constexpr auto m = static_cast<std::size_t>(masking);
    constexpr Member inside{variant, kind, Path::inside, masking};
    constexpr Member clipped{variant, kind, Path::clipped, masking};
    if constexpr (rules::exists(inside) == Exists::yes) made.inside[k][m] = scan_inside<inside>;
    if constexpr (rules::exists(clipped) == Exists::yes) made.clipped[k][m] = scan_clipped<clipped>;
  });
  return made;
}

}  // namespace zbuffer::lines
