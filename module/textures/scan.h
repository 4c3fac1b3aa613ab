// Scan conversion of textured strips that lie inside the hard clip, and of single triangles that do
// not.
#pragma once

#include "module/raster/clipper.h"
#include "module/textures/routines.h"
#include "module/textures/setup.h"
#include "module/textures/spans.h"

namespace zbuffer::textures {

namespace scan_detail {

template <Member member>
auto make_tint(const Software_Z_Buffer& renderer) {
  constexpr Channel_Scale scale = the_rule(rules::channel_scales, member);
  constexpr Tint_Alpha alpha =
      member.set == Set::rgb_alpha_z ? Tint_Alpha::carried : Tint_Alpha::none;
  if constexpr (scale == Channel_Scale::cube) {
    return Cube_Tint{Cube(renderer.color_cube)};
  } else if constexpr (scale == Channel_Scale::byte_256) {
    return Direct_Tint<Byte_Lane, alpha>{};
  } else if constexpr (scale == Channel_Scale::byte_257) {
    return Direct_Tint<Wide_Lane, alpha>{};
  } else if constexpr (is_indexed(member.set)) {
    return Full_Cube_Tint(Cube(renderer.color_cube));
  } else {
    return No_Tint{};
  }
}

template <Member member>
auto make_ink(const Strip& strip) {
  const KT_Material& material = strip.material();
  constexpr bool modulated = member.road == Road::modulated;
  if constexpr (is_indexed(member.set)) {
    return Index_Ink(Cube(strip.renderer.color_cube),
                     static_cast<std::uint8_t>(material.contrast_index));
  } else if constexpr (member.set == Set::rgb_z) {
    return std::conditional_t<modulated, Modulated_Ink, Copy_Ink>(material.contrast_color);
  } else {
    return std::conditional_t<modulated, Modulated_Blended_Ink, Blended_Ink>(
        material.contrast_color);
  }
}

template <Member member>
auto make_dress(const Strip& strip, const Texture& texture) {
  using Tint = decltype(make_tint<member>(strip.renderer));
  using Ink = decltype(make_ink<member>(strip));
  return Dress<Tint, Ink>{texture, make_tint<member>(strip.renderer), make_ink<member>(strip)};
}

/// Draws the triangles of `list` one after the other.
template <Road road, class Limits, class Span_Type, class Tint>
void draw_triangles(const Point_List& list, const Corner_Setup& setup, const Limits& limits,
                    const Tint& tint, Span_Type& span) {
  using Corner = Vertex<Joined<Geometry_Lanes, typename Tint::Kinds>>;
  const auto corner = [&](int i) {
    Corner made;
    setup.put_geometry(made, list, i);
    if constexpr (road == Road::modulated) tint.put_color(made, list.colors[i]);
    return made;
  };
  std::array<Corner, 3> corners{corner(0), corner(1), {}};
  for (int i = 2; i < list.count; ++i) {
    corners[2] = corner(i);
    const auto by_row = sorted(corners);
    span.begin_triangle(by_row.mid.y);
    walk_triangle(by_row, limits, span);
    corners[0] = corners[1];
    corners[1] = corners[2];
  }
}

/// A list of points that cannot be drawn for want of colours.
template <Road road>
bool lacks_colors(const Strip& strip) {
  return road == Road::modulated && !strip.colors;
}

}  // namespace scan_detail

template <Set set, Road road>
void scan(const Strip& strip) {
  using namespace scan_detail;
  if (strip.count < 3 || draws_nothing(strip.rendition) || lacks_colors<road>(strip)) return;
  const Held_Texture held(strip.rendition);
  if (!held.usable()) return;
  constexpr Member member{set, road, Form::scan};
  const auto dress = make_dress<member>(strip, held.texture());
  const Frame frame(strip.renderer);
  const auto draw = [&](const auto& cover) {
    Span<member, std::decay_t<decltype(cover)>, std::decay_t<decltype(dress)>> span(frame, cover,
                                                                                    dress);
    draw_triangles<road>(Point_List(strip), Corner_Setup(strip, *held.image), Trusted{}, dress.tint,
                         span);
  };
  if (is_solid(strip.rendition)) {
    draw(Solid_Cover{});
  } else {
    draw(Pattern_Cover(strip.rendition));
  }
}

/// Draws the strip's first triangle, cut by the hard clip and solid whatever the pattern. A
/// triangle that reaches beyond the safe rectangle is first cut to a strip inside it.
template <Set set, Road road>
void draw_clipped_triangle(const Strip& strip, const Held_Texture& held) {
  using namespace scan_detail;
  constexpr Member member{set, road, Form::clipped};
  const KT_Shared_Image image = held.image;  // each of these triangles holds it for itself
  const auto dress = make_dress<member>(strip, held.texture());
  const Frame frame(strip.renderer);
  const Corner_Setup setup(strip, *image);
  const Hard_Clip limits(strip.display_context().hard_clip, strip.renderer.device_origin);
  const Solid_Cover solid;
  Span<member, Solid_Cover, std::decay_t<decltype(dress)>> span(frame, solid, dress);

  short codes[3];
  KD_Clip(safe_rectangle, 3, strip.points, codes);
  if ((codes[0] | codes[1] | codes[2]) == 0) {
    return draw_triangles<road>(Point_List(strip.piece(0, 3)), setup, limits, dress.tint, span);
  }
  const bool colored = road == Road::modulated;
  const auto color = [&](int i) { return colored ? strip.colors + i : nullptr; };
  const auto parameter = [&](int i) {
    return strip.parameters + std::ptrdiff_t{i} * strip.parameter_width;
  };
  int count = 0;
  KT_DCI_Point points[clipped_points_at_most];
  KT_RGB32 colors[clipped_points_at_most];
  KT_Parameter parameters[clipped_points_at_most];
  float w[clipped_points_at_most];
  clip_triangle(strip.rendition, strip.points, {color(0), color(1), color(2)},
                {parameter(0), parameter(1), parameter(2)}, {0, 0, 0}, {nullptr, nullptr, nullptr},
                safe_rectangle, count, points, colors, parameters, nullptr, w);
  if (count < 3) return;
  draw_triangles<road>(Point_List(count, points, colors, parameters), setup, limits, dress.tint,
                       span);
}

}  // namespace zbuffer::textures
