// Scan conversion of strips that lie inside the hard clip, and of single triangles that do not.
#pragma once

#include "module/raster/clipper.h"
#include "module/raster/near_flat.h"
#include "module/triangles/drawer.h"
#include "module/triangles/routines.h"

namespace zbuffer {

namespace scan_detail {

template <Filling filling>
using Filling_Constant = std::integral_constant<Filling, filling>;

/// Calls `draw(cover, filling)` with the cover for the rendition's pattern and the mask in force.
template <Masking masking, class Draw>
void with_cover(const Strip& strip, Draw draw) {
  const auto with_mask = [&](const auto& cover, auto filling) {
    if constexpr (masking == Masking::masked) {
      draw(Masked_Cover(strip.renderer.mask_cache, cover), filling);
    } else {
      draw(cover, filling);
    }
  };
  if (is_solid(strip.rendition)) {
    with_mask(Solid_Cover{}, Filling_Constant<Filling::solid>{});
  } else {
    with_mask(Pattern_Cover(strip.rendition), Filling_Constant<Filling::patterned>{});
  }
}

template <Member member, class Draw>
void with_gate(const Software_Z_Buffer& renderer, Draw draw) {
  if constexpr (!has_depth(member.variant)) {
    draw(No_Gate{});
  } else {
    constexpr Depth_Rule rule = the_rule(rules::depth_rules, member);
    with_depth_gate<rule.test, rule.write>(renderer, draw);
  }
}

template <Member member>
auto limits_for(const Strip& strip) {
  if constexpr (member.road == Road::clipped) {
    return Hard_Clip(strip.display_context().hard_clip, strip.renderer.device_origin);
  } else if constexpr (the_rule(rules::row_rules, member) == Row_Rule::guarded) {
    return Row_Guard(strip.renderer.window_extent.y);
  } else {
    return Trusted{};
  }
}

template <Member member>
bool merging(const Strip& strip) {
  if constexpr (the_rule(rules::merge_rules, member) == Merge_Rule::never) {
    return false;
  } else {
    return merge_on(strip.renderer, strip.rendition);
  }
}

/// Calls `draw(drawer)` with the drawer for this call: everything that the call decides becomes a
/// type here.
template <Variant variant, Kind kind, Road road, Masking masking, class Draw>
void with_drawer(const Strip& strip, Draw draw) {
  with_cover<masking>(strip, [&](const auto& cover, auto filling) {
    constexpr Member member{variant, kind, road, masking, decltype(filling)::value};
    const Call_Context context(strip, merging<member>(strip));
    const auto limits = limits_for<member>(strip);
    with_gate<member>(strip.renderer, [&](auto gate) {
      using Cover = std::decay_t<decltype(cover)>;
      draw(Drawer<member, std::decay_t<decltype(limits)>, Cover, decltype(gate)>(context, limits,
                                                                                 cover));
    });
  });
}

inline bool has_height(const KT_DCI_Point* points) {
  return points[0].y != points[1].y || points[0].y != points[2].y;
}

// Strips, one triangle after the other. A triangle that draws nothing still moves on.

template <class Drawer_Type>
void scan_flat(const Drawer_Type& drawer, const Strip& strip) {
  for (int i = 0; i + 2 < strip.count; ++i) drawer.flat(strip.points + i);
}

// The first colour may have been changed at the head of the scan; later ones are read anew.
template <class Drawer_Type>
void scan_colorized(const Drawer_Type& drawer, const Strip& strip, KT_RGB32 first) {
  KT_RGB32 color = first;
  for (int i = 0; i + 2 < strip.count; ++i) {
    if (i > 0 && !strip.single_color) color = strip.colors[i];
    drawer.colorized(strip.points + i, color);
  }
}

// With one colour for all it is worked out for the first triangle alone. If that one has no
// height, the whole strip stays at index 0.
template <class Drawer_Type>
void scan_dithered(const Drawer_Type& drawer, const Strip& strip) {
  const Cube cube(strip.renderer.color_cube);
  Dithered_Color color;
  for (int i = 0; i + 2 < strip.count; ++i) {
    if (!has_height(strip.points + i)) continue;
    if (i == 0 || !strip.single_color) color = Dithered_Color(cube, strip.colors[i]);
    drawer.dithered(strip.points + i, color);
  }
}

// A nearly flat triangle is a colorized strip of its own, in the colour of its first point.
template <Variant variant, Masking masking, class Drawer_Type>
void scan_gouraud(const Drawer_Type& drawer, const Strip& strip) {
  for (int i = 0; i + 2 < strip.count; ++i) {
    const KT_RGB32* colors = strip.colors + i;
    if (near_flat_in_scan(colors)) {
      scan<variant, Kind::colorized, masking>(
          strip.with_points(3, strip.points + i).in_one_color(colors));
    } else {
      drawer.gouraud(strip.points + i, colors);
    }
  }
}

}  // namespace scan_detail

template <Variant variant, Kind kind, Masking masking>
void scan(const Strip& strip) {
  using namespace scan_detail;
  if (strip.count < 3 || draws_nothing(strip.rendition)) return;
  KT_RGB32 first{};
  if constexpr (kind == Kind::colorized) first = strip.colors[0];
  if constexpr (kind == Kind::colorized && variant == Variant::rgb_alpha) {
    if (first.alpha == 0 && strip.single_color) return;
    if (merge_on(strip.renderer, strip.rendition)) first.alpha = 255;  // later colours keep theirs
  }
  with_drawer<variant, kind, Road::scan, masking>(strip, [&](const auto& drawer) {
    if constexpr (kind == Kind::flat) {
      scan_flat(drawer, strip);
    } else if constexpr (kind == Kind::gouraud) {
      scan_gouraud<variant, masking>(drawer, strip);
    } else if constexpr (is_mapped(variant)) {
      scan_dithered(drawer, strip);
    } else {
      scan_colorized(drawer, strip, first);
    }
  });
}

/// Draws a strip of one triangle, cut by the hard clip. A triangle that reaches beyond the safe
/// rectangle is first cut to a strip inside it.
template <Variant variant, Kind kind, Masking masking>
void draw_clipped_triangle(const Strip& strip) {
  using namespace scan_detail;
  Clipped_List list;
  short codes[3];
  KD_Clip(safe_rectangle, 3, strip.points, codes);
  if (codes[0] == 0 && codes[1] == 0 && codes[2] == 0) {
    list.take_triangle(strip.points, kind == Kind::gouraud ? strip.colors : nullptr);
  } else {
    list.clip(strip.rendition, strip.points, kind == Kind::gouraud ? strip.colors : nullptr,
              safe_rectangle);
  }
  with_drawer<variant, kind, Road::clipped, masking>(strip, [&](const auto& drawer) {
    for (int i = 0; i + 2 < list.count; ++i) {
      const KT_DCI_Point* points = list.points + i;
      if constexpr (kind == Kind::flat) {
        drawer.flat(points);
      } else if constexpr (kind == Kind::gouraud) {
        drawer.gouraud(points, list.colors + i);
      } else if constexpr (is_mapped(variant)) {
        drawer.dithered_by_pixel(
            points, Rounded_Dither_Source(Cube(strip.renderer.color_cube), strip.colors[0]));
      } else {
        drawer.colorized(points, strip.colors[0]);
      }
    }
  });
}

}  // namespace zbuffer
