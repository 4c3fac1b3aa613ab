// The light of corners, and the scan of lit strips.
#include "module/textures/lit.h"

#include <optional>

#include "module/textures/scans.h"
#include "module/textures/setup.h"
#include "module/textures/spans.h"

namespace zbuffer::textures {
namespace {

using Material = KT_Handle<KT_Material_Object>;

void set_material(KT_Rendition& rendition, const Material& material) {
  KT_Material& record = rendition.edit(&KT_Rendition_Data::material);
  record.textured_material = material;
  record.basic_material = material;
}

// A material that has these values already is left as it is, and stays shared.
void set_specular(Material& material, float red, float green, float blue) {
  const float* now = material->specular_color;
  if (now[0] == red && now[1] == green && now[2] == blue) return;
  float* specular = material.writable().specular_color;
  specular[0] = red;
  specular[1] = green;
  specular[2] = blue;
}

void ask(const KT_Rendition& rendition, const KT_Vector& vector, float (&light)[3]) {
  rendition->material->basic_material->shade(light, rendition, vector, 0, 0, 0, 1, 0);
}

}  // namespace

Lights::Lights(const KT_Rendition& drawn) {
  Material material = KT_Basic_Material();
  specular_ = drawn;
  diffuse_ = specular_;
  diffuse_.set_color({255, 255, 255, 255}, false);
  specular_.set_color({0, 0, 0, 255}, false);
  set_material(specular_, material);
  set_specular(material, 0, 0, 0);
  set_material(diffuse_, material);
}

void Lights::shade(const KT_Vector* const (&vectors)[3], Corner_Light (&lights)[3]) const {
  for (std::size_t i = 0; i < 3; ++i) ask(diffuse_, *vectors[i], lights[i].diffuse);
  for (std::size_t i = 0; i < 3; ++i) ask(specular_, *vectors[i], lights[i].specular);
}

namespace {

constexpr Member lit_member{Texture_Set::mapped_z, Texturing::lit, Path::inside};
using Corner = Vertex<Light_Interpolants>;
using Lit_Paint = Paint<Light_Modulation, Lit_Dither_Blend>;

/// Turns the light of a corner into interpolants: 65536ths of a cube step a texel value.
class Corner_Lighting {
 public:
  Corner_Lighting(const Textured_Call& strip, bool with_colors)
      : scale_(Cube(strip.renderer.color_cube).scale),
        colors_(with_colors ? strip.colors : nullptr) {}

  /// Light of point `i`. Specular light does not take the vertex colour.
  void put(Corner& corner, int i, const Corner_Light& light) const {
    const std::int32_t scales[3] = {scale_.red, scale_.green, scale_.blue};
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const float full = static_cast<float>(scales[channel]) * 255.0f;
      const float lit = strength(i, channel, scales[channel], full) * light.diffuse[channel];
      corner.value[first_channel + channel] = truncated(static_cast<double>(lit));
      corner.specular[channel] = full * light.specular[channel];
    }
  }

 private:
  float strength(int i, std::size_t channel, std::int32_t scale, float full) const {
    if (!colors_) return full;
    const std::uint32_t byte = byte_of(colors_[i].word(), 2 - static_cast<int>(channel));
    return static_cast<float>(as_signed(byte * as_word(scale)));
  }

  Channels scale_;
  const KT_RGB32* colors_;
};

template <class Bits>
void draw_lit(const Textured_Call& strip, const Held_Texture& held, const Bits& bits) {
  const Frame frame(strip.renderer);
  const Lit_Paint paint{
      held.sampler(),
      {},
      Lit_Dither_Blend(Cube(strip.renderer.color_cube),
                       static_cast<std::uint8_t>(strip.material().contrast_index))};
  const Corner_Setup setup(strip, *held.image);
  const Corner_Lighting lighting(strip, held.source->modulate != 0);
  const Point_List list(strip);
  Span<lit_member, Bits, Lit_Paint> span(frame, bits, paint);
  std::optional<Lights> lights;  // made for the first triangle of some height
  for (int first = 0; first + 2 < list.count; ++first) {
    std::array<Corner, 3> corners;
    for (int i = 0; i < 3; ++i) {
      setup.put_geometry(corners[static_cast<std::size_t>(i)], list, first + i);
    }
    const Corner_Order order = order_by_row(corners[0].y, corners[1].y, corners[2].y);
    if (corners[order.high].y - corners[order.low].y < 1) continue;
    if (!lights) lights.emplace(strip.rendition);
    const int by_row[3] = {order.low, order.mid, order.high};
    const KT_Vector* const vectors = strip.vectors + first;
    Corner_Light answers[3];
    lights->shade({vectors + by_row[0], vectors + by_row[1], vectors + by_row[2]}, answers);
    for (std::size_t i = 0; i < 3; ++i) {
      lighting.put(corners[static_cast<std::size_t>(by_row[i])], first + by_row[i], answers[i]);
    }
    walk_triangle(sorted(corners), Trusted{}, span);
  }
}

}  // namespace

void draw_lit_inside(const Textured_Call& strip) {
  if (strip.count < 3 || draws_nothing(strip.rendition)) return;
  const Held_Texture held(strip.rendition);
  if (!held.usable() || (held.source->modulate != 0 && !strip.colors)) return;
  if (is_solid(strip.rendition)) {
    draw_lit(strip, held, Solid_Bits{});
  } else {
    draw_lit(strip, held, Stipple_Bits(strip.rendition));
  }
}

}  // namespace zbuffer::textures
