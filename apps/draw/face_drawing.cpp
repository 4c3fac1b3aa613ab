// Faces in device coordinates, y upward, as calls of the module. With a depth buffer they go in any
// order unless they blend; else the farthest goes first.
#include "apps/draw/face_drawing.h"

namespace kv {

void Face_Drawing::draw(const Device_Geometry& geometry) {
  const Variant& variant = canvas_.configuration.variant;
  KT_Rendition rendition = calls_.rendition();
  std::uint32_t bits = rendition->misc_attributes->advanced_options.bits;
  const bool blends = variant.direct_color && geometry.translucent();
  if (blends) bits |= KT_Advanced_Options::alpha_bit;
  if (drawing().faces_as_edges) {
    bits |= KT_Advanced_Options::edge_bit;
    rendition.set_color(line_color, false);
  }
  rendition.set_advanced_options({bits}, false);
  if (variant.depth && !blends)
    draw_strips(rendition, geometry);
  else
    draw_strips(rendition, back_to_front(geometry));
}

// Without a depth buffer there is nothing that faces could hide.
void Face_Drawing::draw_hiding(const Device_Geometry& geometry) {
  if (!canvas_.configuration.variant.depth) return;
  KT_Rendition rendition = calls_.rendition();
  rendition.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = hidden_line_offset;
  set_color(rendition, canvas_.configuration.background, canvas_.configuration.palette);
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    if (geometry.mode() == Mode::polygons)
      draw_polygon(rendition, points, nullptr);
    else
      calls_.call<KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2DD_Polytriangle>(rendition,
                                                                                     points);
  }
}

// Strips of one texture mostly follow each other: a rendition serves all of them.
void Face_Drawing::draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry) {
  KT_Rendition with_texture;
  const Device_Strip* last = nullptr;
  for (const Device_Strip& strip : geometry.strips()) {
    if (!strip.textured()) {
      draw_strip(rendition, geometry, strip);
      continue;
    }
    if (!last || strip.material != last->material || strip.in_reach != last->in_reach)
      with_texture = textured(rendition, strip);
    last = &strip;
    draw_textured(with_texture, geometry, strip);
  }
}

// What lies out of reach is left to the general routines, which count without limits.
KT_Rendition Face_Drawing::textured(const KT_Rendition& rendition,
                                    const Device_Strip& strip) const {
  KT_Rendition result = rendition;
  result.edit(&KT_Rendition_Data::material).basic_material = textures_.at(strip.material);
  if (drawing().textures.perspective_correct || !strip.in_reach)
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
  const float* w = drawing().textures.perspective_correct ? texture.w.data() : even_w_.data();
  calls_.call<KT_Action::Draw_2D_Textured_Polytriangle, KT_Action::Draw_2DD_Textured_Polytriangle>(
      rendition, points, geometry.colors(strip).data(), texture.places.data(), records_a_point, w,
      nullptr);
}

}  // namespace kv
