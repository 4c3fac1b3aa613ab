// Entry steps of textured strips, the decision on the texturing, and the layers.
#include "module/textures/entry.h"

#include "module/core/points.h"
#include "module/core/scratch.h"
#include "module/lines/strip_edges.h"
#include "module/raster/strip_split.h"
#include "module/textures/scans.h"

namespace zbuffer::textures {
namespace {

const Scans& scans_of(Texture_Set set) {
  static constexpr const Scans* by_set[value_count<Texture_Set>] = {
      &scans_mapped_z, &scans_cut_out, &scans_rgb_z, &scans_rgb_alpha_z};
  return *by_set[static_cast<std::size_t>(set)];
}

constexpr std::size_t at(Texturing texturing) {
  return static_cast<std::size_t>(texturing);
}

/// The framework's general routine of the same action.
void call_standard(Textured_Routine r, const Textured_Call& s) {
  const auto call = [&](auto* routine, const auto* points) {
    routine(&s.renderer, s.rendition, s.count, points, s.colors, s.parameters, s.parameter_width,
            s.extra_floats, s.vectors);
  };
  switch (r.layer()) {
    case Layer::float_any:
      return call(KD_Standard_Draw_2D_Textured_Polytriangle, s.floats);
    case Layer::float_inside:
      return call(KD_Standard_Draw_DC_Textured_Polytriangle, s.floats);
    case Layer::int_any:
      return call(KD_Standard_Draw_2DI_Textured_Polytriangle, s.points);
    case Layer::int_inside:
      return call(KD_Standard_Draw_DCI_Textured_Polytriangle, s.points);
  }
}

struct Steps {
  static bool holds(Entry_Step step, Textured_Routine r, const Textured_Call& strip) {
    if (step == Entry_Step::kept_standard) return !has_depth(strip.renderer.variant);
    return image_step_holds(step, strip.renderer, variant_of(r.set()), strip.count);
  }

  static void take(Entry_Step step, Textured_Routine r, Textured_Call& strip) {
    switch (step) {
      case Entry_Step::edges:
        return lines::draw_strip_edges(strip);
      case Entry_Step::blending:
        return enter(r.in(Texture_Set::rgb_alpha_z), strip);
      case Entry_Step::kept_standard:
        return call_standard(r, strip);
      case Entry_Step::depth_off_standard:
        strip.extra_floats = nullptr;
        strip.vectors = nullptr;
        return call_standard(r, strip);
      default:
        return;  // nothing to draw, missing image
    }
  }
};

/// Textures that this renderer draws: nearest texels, tiled or cut off, without perspective.
bool is_simple(const Call& call, const KT_Texture_Source_Data& source) {
  if (call.misc().texture_options & KT_Misc_Attributes::perspective_bit) return false;
  return source.standard_only == 0 && (source.wrap_s & ~Sampler::tile) == 0 &&
         (source.wrap_t & ~Sampler::tile) == 0;
}

/// How a primitive is textured here; undecided for those that the general routine draws. Fetches
/// the texture into `source` where it has to be looked at.
Texturing texturing_of(Textured_Routine r, const Textured_Call& strip, KT_Texture_Source& source) {
  constexpr std::int32_t standard_light_mode = 3;  // of `texture_mode`
  if (strip.face().face_pattern >= KT_Face_Attributes::first_standard ||
      strip.display_context().depth_enabled == 0) {
    return Texturing::undecided;
  }
  const KT_Handle<KT_Material_Object>& material = strip.material().basic_material;
  if (material) material->texture(source, 0, 0, 0);
  if (!source || !is_simple(strip, *source)) return Texturing::undecided;
  if (strip.material().lighting && strip.vectors) {
    const bool lit =
        rules::light(r) == Light_Rule::lit && strip.misc().texture_mode != standard_light_mode;
    return lit ? Texturing::lit : Texturing::undecided;
  }
  const bool usable = rules::colors(r) == Colors_Rule::trusted || strip.colors;
  return source->modulate != 0 && usable ? Texturing::modulated : Texturing::plain;
}

[[gnu::noinline]] void decide_texturing(Textured_Routine r, Textured_Call& strip) {
  KT_Texture_Source source;  // held until the call is over
  const Texturing texturing = texturing_of(r, strip, source);
  if (texturing == Texturing::undecided) return call_standard(r, strip);
  enter(r.textured(texturing), strip);
}

[[gnu::noinline]] void convert(Textured_Routine r, Textured_Call& strip) {
  Scratch<KT_DCI_Point> points(strip.count);
  round_points(strip.floats, strip.count, points.data());
  strip.set_points(strip.count, points.data());
  enter(r.at(integer_layer(r.layer())), strip);
}

/// A strip anywhere: parts of visible triangles, and single clipped ones.
[[gnu::noinline]] void draw_anywhere(Textured_Routine r, Textured_Call& strip) {
  Scratch<short> codes(strip.count);
  const int inside =
      KD_Clip(strip.display_context().hard_clip, strip.count, strip.points, codes.data());
  if (inside == strip.count) return enter(r.at(Layer::int_inside), strip);
  if (inside == 0 || (r.texturing() == Texturing::modulated && !strip.colors)) return;
  const Held_Texture held(strip.rendition);
  if (!held.usable()) return;
  split_strip(
      strip.count, codes.data(),
      [&](int first, int count) {
        Textured_Call part = strip.part(first, count);
        enter(r.at(Layer::int_inside), part);
      },
      [&](int first) { scans_of(r.set()).clipped[at(r.texturing())](strip.part(first, 3), held); });
}

/// What decides on the texturing, or a layer's own work.
void draw_layer(Textured_Routine r, Textured_Call& strip) {
  if (r.texturing() == Texturing::undecided) return decide_texturing(r, strip);
  switch (r.layer()) {
    case Layer::float_any:
    case Layer::float_inside:
      return convert(r, strip);
    case Layer::int_any:
      return draw_anywhere(r, strip);
    case Layer::int_inside:
      return scans_of(r.set()).inside[at(r.texturing())](strip);
  }
}

}  // namespace

void enter(Textured_Routine r, Textured_Call& strip) {
  enter_by<Steps, draw_layer>(entry_steps[r.place()], r, strip);
}

}  // namespace zbuffer::textures
