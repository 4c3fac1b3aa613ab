// From an action to the scan: head tests, the gate, and the layers of each road.
//
//   action -- gate --+-- plain ------+   2D   float, anywhere   converts, goes on to 2DI
//              |     +-- modulated --+   2DI  whole, anywhere   cuts into runs and triangles
//              |     +-- lit --------+   DC   float, inside     converts, goes on to DCI
//        general routine                 DCI  whole, inside     scan conversion
//
// The road is chosen once, in the action. No clip mask is asked anywhere: textured primitives are
// drawn as if there were no complex clip.
#pragma once

#include "module/core/scratch.h"
#include "module/lines/strip_edges.h"
#include "module/raster/strip_split.h"
#include "module/textures/scan.h"

namespace zbuffer::textures {

namespace entry_detail {

template <Layer layer>
void call_standard(const Strip_At<layer>& s) {
  const auto call = [&](auto* routine) {
    routine(&s.renderer, s.rendition, s.count, s.points, s.colors, s.parameters, s.parameter_width,
            s.extra_floats, s.vectors);
  };
  if constexpr (layer == Layer::float_any) {
    call(KD_Standard_Draw_2D_Textured_Polytriangle);
  } else if constexpr (layer == Layer::float_inside) {
    call(KD_Standard_Draw_DC_Textured_Polytriangle);
  } else if constexpr (layer == Layer::int_any) {
    call(KD_Standard_Draw_2DI_Textured_Polytriangle);
  } else {
    call(KD_Standard_Draw_DCI_Textured_Polytriangle);
  }
}

/// Takes the call elsewhere when the test of `step` holds; returns whether it did. `blend` is the
/// same place in `RGB_Alpha_Z`.
template <Step step, Layer layer, class Blend>
bool taken(const Strip_At<layer>& strip, Blend blend) {
  const auto bit = [&](std::uint32_t value) { return (strip.advanced_bits() & value) != 0; };
  if constexpr (step == Step::edge_bit) {
    if (!bit(KT_Advanced_Options::edge_bit)) return false;
    draw_strip_edges(strip.renderer, strip.rendition, strip.count, strip.points);
  } else if constexpr (step == Step::alpha_bit) {
    if (!bit(KT_Advanced_Options::alpha_bit)) return false;
    blend(strip);
  } else if constexpr (step == Step::ready) {
    return !strip.renderer.color_image || strip.count < 2;
  } else if constexpr (step == Step::depth) {
    if (strip.display_context().depth_enabled != 0) return false;
    Strip_At<layer> bare = strip;
    bare.extra_floats = nullptr;
    bare.vectors = nullptr;
    call_standard<layer>(bare);
  } else {
    static_assert(step == Step::none);
    return false;
  }
  return true;
}

template <Layer layer, Step first, Step second, class Blend>
bool taken_by_head(const Strip_At<layer>& strip, Blend blend) {
  return taken<first, layer>(strip, blend) || taken<second, layer>(strip, blend);
}

/// Textures that this renderer draws: nearest texels, tiled or cut off, without perspective.
inline bool is_simple(const KT_Rendition& rendition, const KT_Texture_Source_Data& source) {
  if (rendition->misc_attributes->texture_options & KT_Misc_Attributes::perspective_bit) {
    return false;
  }
  return source.standard_only == 0 && (source.wrap_s & ~Texture::tile) == 0 &&
         (source.wrap_t & ~Texture::tile) == 0;
}

/// Where the gate sends a primitive.
enum class Way : std::uint8_t { standard, plain, modulated, lit };

/// Fetches the texture into `source` where it has to be looked at.
template <Set set, Layer layer>
Way way_through_gate(const Strip_At<layer>& strip, KT_Texture_Source& source) {
  constexpr Gate_Rule rule = the_rule(rules::gate_rules, Place{set, layer});
  constexpr std::int32_t standard_light_mode = 3;  // of `texture_mode`
  if (strip.face().face_pattern >= KT_Face_Attributes::first_standard ||
      strip.display_context().depth_enabled == 0) {
    return Way::standard;
  }
  const KT_Handle<KT_Material_Object>& material = strip.material().basic_material;
  if (material) material->texture(source, 0, 0, 0);
  if (!source || !is_simple(strip.rendition, *source)) return Way::standard;
  if (strip.material().lighting && strip.vectors) {
    const bool lit = rule.light == Light_Rule::lit_road &&
                     strip.rendition->misc_attributes->texture_mode != standard_light_mode;
    return lit ? Way::lit : Way::standard;
  }
  const bool usable = rule.colors == Colors_Rule::trusted || strip.colors;
  return source->modulate != 0 && usable ? Way::modulated : Way::plain;
}

constexpr Layer layer_below(Layer layer) {
  return layer == Layer::float_any ? Layer::int_any : Layer::int_inside;
}

template <Set set, Road road, Layer layer>
void convert(const Float_Strip& strip) {
  Scratch<KT_DCI_Point> points(strip.count);
  for (int i = 0; i < strip.count; ++i) {
    const KT_Point& from = strip.points[i];
    points[i] = {rounded(from.x), rounded(from.y), rounded(from.z)};
  }
  const KT_DCI_Point* made = points.data();
  draw<set, road, layer_below(layer)>(strip.with_points(made));
}

/// A strip anywhere: runs of visible triangles, and single clipped ones.
template <Set set, Road road>
void draw_anywhere(const Strip& strip) {
  Scratch<short> codes(strip.count);
  const int verdict =
      KD_Clip(strip.display_context().hard_clip, strip.count, strip.points, codes.data());
  if (verdict == strip.count) return draw<set, road, Layer::int_inside>(strip);
  if (verdict == 0 || scan_detail::lacks_colors<road>(strip)) return;
  const Held_Texture held(strip.rendition);
  if (!held.usable()) return;
  split_strip(
      strip.count, codes.data(),
      [&](int first, int count) { draw<set, road, Layer::int_inside>(strip.piece(first, count)); },
      [&](int first) { draw_clipped_triangle<set, road>(strip.piece(first, 3), held); });
}

}  // namespace entry_detail

template <Set set, Layer layer>
void enter(const Strip_At<layer>& strip) {
  using namespace entry_detail;
  constexpr Head head = the_rule(rules::action_heads, Place{set, layer});
  const auto blend = [](const auto& same) { enter<Set::rgb_alpha_z, layer>(same); };
  if (taken_by_head<layer, head[0], head[1]>(strip, blend)) return;
  KT_Texture_Source source;  // held until the call is over
  switch (way_through_gate<set, layer>(strip, source)) {
    case Way::standard:
      return call_standard<layer>(strip);
    case Way::plain:
      return draw<set, Road::plain, layer>(strip);
    case Way::modulated:
      return draw<set, Road::modulated, layer>(strip);
    case Way::lit:
      if constexpr (the_rule(rules::gate_rules, Place{set, layer}).light == Light_Rule::lit_road) {
        draw<set, Road::lit, layer>(strip);
      }
  }
}

template <Set set, Road road, Layer layer>
void draw(const Strip_At<layer>& strip) {
  using namespace entry_detail;
  constexpr Head head = the_rule(rules::layer_heads, Place{set, layer, road});
  const auto blend = [](const auto& same) { draw<Set::rgb_alpha_z, road, layer>(same); };
  if (taken_by_head<layer, head[0], head[1]>(strip, blend)) return;
  if constexpr (is_float(layer)) {
    convert<set, road, layer>(strip);
  } else if constexpr (layer == Layer::int_any) {
    draw_anywhere<set, road>(strip);
  } else if constexpr (road == Road::lit) {
    scan_lit(strip);
  } else {
    scan<set, road>(strip);
  }
}

}  // namespace zbuffer::textures
