// Faces in device coordinates, y upward, as calls of the module. With a depth buffer they go in any
// order unless they blend; else the farthest goes first.
#include "apps/draw/face_drawing.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// Mapped colours do not blend: there a face is left out when it lets more through than it shows.
bool is_faint(std::span<const KT_RGB32> colors) {
  return std::all_of(colors.begin(), colors.end(),
                     [](const KT_RGB32& color) { return color.alpha < 128; });
}

// A plane face on the picture.
struct Tilt {
  float slope;      // how much its depth grows from pixel to pixel, across and up together
  float thickness;  // pixels
  float depth;      // from its nearest point to its farthest
};

Tilt tilt_of(std::span<const KT_Point> points) {
  float x = 0, y = 0, z = 0, longest = 0;  // of the normal; of the sides
  float near = points[0].z, far = near;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const KT_Point &a = points[i], &b = points[(i + 1) % points.size()];
    x += (a.y - b.y) * (a.z + b.z);
    y += (a.z - b.z) * (a.x + b.x);
    z += (a.x - b.x) * (a.y + b.y);
    longest = std::max(longest, std::hypot(a.x - b.x, a.y - b.y));
    near = std::min(near, a.z);
    far = std::max(far, a.z);
  }
  constexpr float least = 1e-6f;
  const float area = std::max(std::abs(z), least);
  return {(std::abs(x) + std::abs(y)) / area, area / std::max(longest, least), far - near};
}

}  // namespace

void Face_Drawing::draw(const Device_Geometry& geometry) {
  const Variant& variant = canvas_.configuration.variant;
  KT_Rendition rendition = calls_.rendition();
  std::uint32_t bits = rendition->misc_attributes->advanced_options.bits;
  if (drawing().faces_as_edges) {
    bits |= KT_Advanced_Options::edge_bit;
    rendition.set_color(line_color, false);
  }
  rendition.set_advanced_options({bits}, false);
  const bool blends = variant.direct_color && geometry.translucent();
  if (variant.depth) draw_strips(rendition, geometry, blends ? Which::opaque : Which::all);
  if (blends) rendition.set_advanced_options({bits | KT_Advanced_Options::alpha_bit}, false);
  if (blends || !variant.depth) draw_strips(rendition, back_to_front(geometry, variant.depth));
}

// Without a depth buffer there is nothing that faces could hide.
void Face_Drawing::draw_hiding(const Device_Geometry& geometry) {
  if (!canvas_.configuration.variant.depth) return;
  KT_Rendition rendition = calls_.rendition();
  set_color(rendition, canvas_.configuration.background, canvas_.configuration.palette);
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    if (geometry.mode() == Mode::polygons) {
      draw_polygon(rendition, beneath_lines(points), nullptr);
      continue;
    }
    for (std::size_t t = 0; t + 2 < points.size(); ++t)
      calls_.call<KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2DD_Polytriangle>(
          rendition, beneath_lines(points.subspan(t, 3)));
  }
}

// A line is drawn up to half its width and a pixel off the edge, where faces may be nearer by that
// much of their slope. Corners lie on whole pixels, which tilts thin faces further. By twice as
// much as a face is deep it is always enough.
std::span<const KT_Point> Face_Drawing::beneath_lines(std::span<const KT_Point> points) {
  const Tilt tilt = tilt_of(points);
  const float reach = static_cast<float>(drawing().lines.width) / 2 + 1 + 6 / tilt.thickness;
  const float offset = std::min<float>(
      std::min(reach * tilt.slope, 2 * tilt.depth) + least_hiding_offset, greatest_hiding_offset);
  beneath_.assign(points.begin(), points.end());
  for (KT_Point& point : beneath_) point.z += offset;
  return beneath_;
}

// Strips of one texture mostly follow each other: a rendition serves all of them.
void Face_Drawing::draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry,
                               Which which) {
  KT_Rendition with_texture;
  const Device_Strip* last = nullptr;
  for (const Device_Strip& strip : geometry.strips()) {
    if (which == Which::opaque && strip.translucent) continue;
    if (!canvas_.configuration.variant.direct_color && is_faint(geometry.colors(strip))) continue;
    if (!strip.textured()) {
      draw_strip(rendition, geometry, strip);
      continue;
    }
    if (!last || strip.material != last->material || strip.in_reach != last->in_reach ||
        strip.in_plane != last->in_plane)
      with_texture = textured(rendition, strip);
    last = &strip;
    draw_textured(with_texture, geometry, strip);
  }
}

// What lies out of reach is left to the general routines, which count without limits, and so is
// what needs their perspective.
KT_Rendition Face_Drawing::textured(const KT_Rendition& rendition,
                                    const Device_Strip& strip) const {
  KT_Rendition result = rendition;
  result.edit(&KT_Rendition_Data::material).basic_material = textures_.at(strip.material);
  if (drawing().textures.perspective_correct || !strip.in_reach || !strip.in_plane)
    result.edit(&KT_Rendition_Data::misc_attributes).texture_options =
        KT_Misc_Attributes::perspective_bit;
  return result;
}

void Face_Drawing::draw_strip(const KT_Rendition& rendition, const Device_Geometry& geometry,
                              const Device_Strip& strip) {
  const auto points = geometry.points(strip);
  const KT_RGB32* const colors = geometry.colors(strip).data();
  switch (geometry.mode()) {
    case Mode::shaded:
      return calls_
          .call<KT_Action::Draw_2D_Gouraud_Polytriangle, KT_Action::Draw_2DD_Gouraud_Polytriangle>(
              rendition, points, colors);
    case Mode::flat:
      return calls_.call<KT_Action::Draw_2D_Colorized_Polytriangle,
                         KT_Action::Draw_2DD_Colorized_Polytriangle>(rendition, points, colors,
                                                                     false);
    case Mode::polygons:
      return draw_polygon(rendition, points, colors);
  }
}

// There is no action of double precision for polygons: their clip is always that of the picture.
void Face_Drawing::draw_polygon(const KT_Rendition& rendition, std::span<const KT_Point> points,
                                const KT_RGB32* color) {
  KT_Rendition own = rendition;
  if (canvas_.frame.in_parts && drawing().clip)
    own.edit(&KT_Rendition_Data::display_context).complex_clip =
        canvas_.rendition->display_context->complex_clip;
  canvas_.renderer.call<KT_Action::Draw_2D_Polygon>(own, static_cast<int>(points.size()),
                                                    points.data(), color);
}

void Face_Drawing::draw_textured(const KT_Rendition& rendition, const Device_Geometry& geometry,
                                 const Device_Strip& strip) {
  constexpr int records_a_point = 1;
  const auto points = geometry.points(strip);
  const Strip_Texture texture = geometry.texture(strip);
  even_w_.assign(points.size(), 1);
  const bool in_perspective = drawing().textures.perspective_correct || !strip.in_plane;
  const float* w = in_perspective ? texture.w.data() : even_w_.data();
  calls_.call<KT_Action::Draw_2D_Textured_Polytriangle, KT_Action::Draw_2DD_Textured_Polytriangle>(
      rendition, points, geometry.colors(strip).data(), texture.places.data(), records_a_point, w,
      nullptr);
}

}  // namespace kv
