#include "tests/differential/model_textures.h"

#include "tests/differential/model_clipper.h"
#include "tests/differential/model_texels.h"

namespace model {
namespace {

class Textured_Model {
 public:
  Textured_Model(State& state, const KT_Rendition& rendition, const Texture& texture,
                 const Textured_Call& call)
      : state_(state), rendition_(*rendition), texture_(texture), call_(call) {}

  Textured_Outcome run() {
    for (const KT_Point& p : call_.floats)
      outcome_.points.push_back({rounded(p.x), rounded(p.y), rounded(p.z)});
    if (call_.floats.empty()) outcome_.points = call_.points;
    Variant v = state_.variant;
    if (v == Variant::rgb_z) {
      if (bit(32)) return ended(Textured_Outcome::edges);
      if (bit(8)) v = Variant::rgb_alpha_z;
    }
    if (v == Variant::rgb_alpha_z && inside() && bit(32)) return ended(Textured_Outcome::edges);
    if (!passes_gate(v)) return ended(Textured_Outcome::standard);
    draw(v);
    return outcome_;
  }

 private:
  bool bit(std::uint32_t value) const {
    return (rendition_.misc_attributes->advanced_options.bits & value) != 0;
  }
  bool inside() const { return call_.layer == Layer::dc || call_.layer == Layer::dci; }
  bool lit() const { return rendition_.material->lighting && call_.vectors; }

  Textured_Outcome ended(decltype(Textured_Outcome::kind) kind) {
    outcome_.kind = kind;
    return outcome_;
  }

  bool passes_gate(Variant v) {
    if (rendition_.face_attributes->face_pattern > 74 || !rendition_.display_context->depth_enabled)
      return false;
    outcome_.asks_texture = true;
    if (rendition_.misc_attributes->texture_options & 1) return false;
    if (texture_.standard_only) return false;
    if ((texture_.wrap_s | texture_.wrap_t) & ~2u) return false;
    if (!lit()) return true;
    return v == Variant::mapped_z && !call_.cut_out && inside() &&
           rendition_.misc_attributes->texture_mode != 3;
  }

  void draw(Variant v) {
    Road road = texture_.modulate ? Road::modulated : Road::plain;
    if (road == Road::modulated && v == Variant::rgb_alpha_z && inside() && !call_.colors)
      road = Road::plain;
    if (lit()) road = Road::lit;
    if (!inside() && road == Road::modulated && v == Variant::rgb_alpha_z && bit(32)) {
      outcome_.kind = Textured_Outcome::edges;
      return;
    }
    const bool reads_colors = road == Road::modulated || (road == Road::lit && texture_.modulate);
    if (call_.count < 2 || (reads_colors && !call_.colors)) return;
    const Textured_Strip strip{call_.count,      outcome_.points.data(), call_.colors,
                               call_.parameters, call_.parameter_width,  call_.vectors};
    Texel_Routine routine{state_, rendition_, texture_, call_, v, road, outcome_.light};
    inside() ? routine.scan(strip) : walk(routine, strip);
  }

  void walk(Texel_Routine& routine, const Textured_Strip& s) const {
    std::vector<short> codes(static_cast<std::size_t>(s.count));
    const int n = KD_Clip(rendition_.display_context->hard_clip, s.count, s.points, codes.data());
    if (n == s.count) return routine.scan(s);
    if (n == 0) return;
    const auto code = [&](int i) { return codes[static_cast<std::size_t>(i)]; };
    const int last = s.count - 2;
    for (int i = 0; i < last;) {
      for (; i < last && (code(i) & code(i + 1) & code(i + 2)); ++i) continue;
      for (; i < last && (code(i) | code(i + 1) | code(i + 2)); ++i)
        routine.clipped_triangle(s.part(i, 3));
      const int start = i;
      for (; i < last && code(i + 2) == 0; ++i) continue;
      if (i > start) routine.scan(s.part(start, i - start + 2));
    }
  }

  State& state_;
  const KT_Rendition_Data& rendition_;
  const Texture& texture_;
  const Textured_Call& call_;
  Textured_Outcome outcome_;
};

}  // namespace

Textured_Outcome draw(State& state, const KT_Rendition& rendition, const Texture& texture,
                      const Textured_Call& call) {
  return Textured_Model(state, rendition, texture, call).run();
}

}  // namespace model
