// Scan conversion of textured strips that lie inside the hard clip, and of single triangles that do
// not.
#pragma once

#include "module/raster/clipper.h"
#include "module/textures/scans.h"
#include "module/textures/setup.h"
#include "module/textures/spans.h"

namespace zbuffer::textures {

namespace scan_detail {

template <Member member>
auto make_modulation(const Software_Z_Buffer& renderer) {
  constexpr Channel_Scale scale = rules::channel_scale(member);
  constexpr Modulation_Alpha alpha =
      member.set == Texture_Set::rgb_alpha_z ? Modulation_Alpha::carried : Modulation_Alpha::none;
  if constexpr (scale == Channel_Scale::cube) {
    return Cube_Modulation{Cube(renderer.color_cube)};
  } else if constexpr (scale == Channel_Scale::byte_256) {
    return Direct_Modulation<Byte_Interpolant, alpha>{};
  } else if constexpr (scale == Channel_Scale::byte_257) {
    return Direct_Modulation<Wide_Interpolant, alpha>{};
  } else if constexpr (is_indexed(member.set)) {
    return Full_Cube_Modulation(Cube(renderer.color_cube));
  } else {
    return No_Modulation{};
  }
}

template <Member member>
auto make_blend(const Textured_Call& strip) {
  const KT_Material& material = strip.material();
  constexpr bool modulated = member.texturing == Texturing::modulated;
  if constexpr (is_indexed(member.set)) {
    return Dither_Blend(Cube(strip.renderer.color_cube),
                        static_cast<std::uint8_t>(material.contrast_index));
  } else if constexpr (member.set == Texture_Set::rgb_z) {
    return std::conditional_t<modulated, Modulated_Copy_Blend, Copy_Blend>(material.contrast_color);
  } else {
    return std::conditional_t<modulated, Modulated_Alpha_Blend, Alpha_Blend>(
        material.contrast_color);
  }
}

template <Member member>
auto make_paint(const Textured_Call& strip, const Sampler& sampler) {
  using Modulation = decltype(make_modulation<member>(strip.renderer));
  using Blend = decltype(make_blend<member>(strip));
  return Paint<Modulation, Blend>{sampler, make_modulation<member>(strip.renderer),
                                  make_blend<member>(strip)};
}

/// Draws the triangles of `list` one after the other.
template <Texturing texturing, class Limits, class Span_Type, class Modulation>
void draw_triangles(const Point_List& list, const Corner_Setup& setup, const Limits& limits,
                    const Modulation& modulation, Span_Type& span) {
  using Corner = Vertex<Joined<Geometry_Interpolants, typename Modulation::Values>>;
  const auto corner = [&](int i) {
    Corner made;
    setup.put_geometry(made, list, i);
    if constexpr (texturing == Texturing::modulated) modulation.put_color(made, list.colors[i]);
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

}  // namespace scan_detail

/// Draws a strip that lies inside.
template <Texture_Set set, Texturing texturing>
void scan_inside(const Textured_Call& strip) {
  using namespace scan_detail;
  if (strip.count < 3 || draws_nothing(strip.rendition)) return;
  if (texturing == Texturing::modulated && !strip.colors) return;
  const Held_Texture held(strip.rendition);
  if (!held.usable()) return;
  constexpr Member member{set, texturing, Path::inside};
  const auto paint = make_paint<member>(strip, held.sampler());
  const Frame frame(strip.renderer);
  const auto draw = [&](const auto& bits) {
    Span<member, std::decay_t<decltype(bits)>, std::decay_t<decltype(paint)>> span(frame, bits,
                                                                                   paint);
    draw_triangles<texturing>(Point_List(strip), Corner_Setup(strip, *held.image), Trusted{},
                              paint.modulation, span);
  };
  if (is_solid(strip.rendition)) {
    draw(Solid_Bits{});
  } else {
    draw(Stipple_Bits(strip.rendition));
  }
}

/// Draws a strip of one triangle, cut by the hard clip and solid whatever the pattern. A triangle
/// that reaches beyond the device range is first cut to a strip inside it.
template <Texture_Set set, Texturing texturing>
void scan_clipped(const Textured_Call& triangle, const Held_Texture& held) {
  using namespace scan_detail;
  constexpr Member member{set, texturing, Path::clipped};
  const KT_Shared_Image image = held.image;  // each of these triangles holds it for itself
  const auto paint = make_paint<member>(triangle, held.sampler());
  const Frame frame(triangle.renderer);
  const Solid_Bits solid;
  Span<member, Solid_Bits, std::decay_t<decltype(paint)>> span(frame, solid, paint);
  const Clipped_Strip strip = clipped_to_device_range(
      {.points = triangle.points,
       .colors = texturing == Texturing::modulated ? triangle.colors : nullptr,
       .parameters = triangle.parameters,
       .parameter_width = triangle.parameter_width});
  if (strip.count < 3) return;
  draw_triangles<texturing>(
      Point_List(strip), Corner_Setup(triangle, *image),
      Hard_Clip(triangle.display_context().hard_clip, triangle.renderer.device_origin),
      paint.modulation, span);
}

/// The plain and modulated scans of a set.
template <Texture_Set set>
constexpr Scans scans() {
  Scans made{};
  const auto add = [&]<Texturing texturing>() {
    made.inside[static_cast<std::size_t>(texturing)] = scan_inside<set, texturing>;
    made.clipped[static_cast<std::size_t>(texturing)] = scan_clipped<set, texturing>;
  };
  add.template operator()<Texturing::plain>();
  add.template operator()<Texturing::modulated>();
  return made;
}

}  // namespace zbuffer::textures
