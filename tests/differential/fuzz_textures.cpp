// Draws random strips of textured triangles.
#include <limits>

#include "tests/differential/setting.h"
#include "tests/differential/watched_materials.h"

namespace fuzz {
namespace {

using model::Layer;

struct Textures : Trial {
  model::Texture texture;
  model::Textured_Call call;
  std::vector<KT_RGB32> colors;
  std::vector<KT_Parameter> parameters;
  std::vector<float> extra_floats;
  std::vector<KT_Vector> vectors;
  KT_Handle<Watched_Material> material;

  explicit Textures(std::uint64_t seed) : Trial(seed) {
    default_specular_color = {};
    if (!random.once_in(3))
      for (float& channel : default_specular_color) channel = random.real(0, 1);
    call.specular_color = default_specular_color;
    call.shade = shade;
    make_setting();
    make_texture();
    make_points();
    make_arrays();
    for (const KT_DCI_Point& p : call.points.whole()) scene.depths.push_back(p.z);
  }

  Layer layer() const { return call.points.layer; }
  bool has_edge_bit() const {
    return (scene.rendition->misc_attributes->advanced_options.bits & 32) != 0;
  }

  void make_setting() {
    scene.variant = random.pick(
        {model::mapped_z, model::mapped_z, model::rgb_z, model::rgb_alpha_z, model::rgb_alpha_z});
    scene.color_padding = random.range(0, 4) * (scene.variant == model::mapped_z ? 1 : 4);
    call.cut_out = scene.variant == model::mapped_z && random.once_in(2);
    call.points.layer = random.pick(
        {Layer::p2d, Layer::dc, Layer::p2di, Layer::p2di, Layer::p2di, Layer::dci, Layer::dci});
    if (!random.once_in(3))
      scene.rendition.edit(&KT_Rendition_Data::display_context).depth_enabled = random.byte(1);
    auto& misc = scene.rendition.edit(&KT_Rendition_Data::misc_attributes);
    misc.advanced_options.bits = random.pick({0u, 0u, 0u, 2u, 4u, 8u, ~40u});
    if (random.once_in(12)) misc.advanced_options.bits |= random.pick({32u, 40u});
    scene.rendition.edit(&KT_Rendition_Data::line_attributes).line_weight = random.range(1, 2);
    misc.texture_options = random.pick({0u, 0u, 2u, ~1u});
    if (random.once_in(20)) misc.texture_options |= 1;
    misc.texture_mode = random.pick({0, 1, 2, 4, random.range(0, 5)});
    auto& face = scene.rendition.edit(&KT_Rendition_Data::face_attributes);
    if (face.face_pattern > 74 && random.once_in(2)) face.face_pattern = 64;
    if (random.once_in(40)) face.face_pattern = random.range(74, 75);
  }

  void make_texture() {
    const int sizes = random.range(0, 2);
    const auto size = [&] {
      if (sizes == 0) return random.range(1, 70);
      return 1 << (sizes == 1 ? random.range(0, 3) : random.range(2, 8));
    };
    const int width = size(), height = size(), row_bytes = 4 * (width + random.range(0, 2));
    texture.image =
        KT_Shared_Image(width, height, KT_Image_Format::rgb32, row_bytes, nullptr, false);
    const int alphas = random.range(0, 3);
    for (int i = 0; i < height * row_bytes / 4; ++i) {
      const std::uint64_t word = random.word(), choice = word >> 32;
      KT_RGB32& texel = reinterpret_cast<KT_RGB32*>(texture.image->scan_lines[0])[i];
      texel = KT_RGB32::from_word(static_cast<std::uint32_t>(word));
      if (choice % 3 == 0) texel.red = choice & 64 ? 255 : 0;
      if (alphas == 1 || (alphas > 1 && (choice >> 8) % 3 == 0)) texel.alpha = 255;
      if (alphas > 1 && (choice >> 8) % 3 == 1)
        texel.alpha = choice & 16 ? 0 : choice & 32 ? 1 : 254;
    }
    texture.wrap_s = random.pick({0u, 2u, 2u, 2u});
    texture.wrap_t = random.pick({0u, 2u, 2u, 2u});
    if (random.once_in(20))
      (random.once_in(2) ? texture.wrap_s : texture.wrap_t) =
          random.pick({1u, 3u, 4u, 6u, 256u, 0x80000000u, 0xFFFFFFFFu});
    if (random.once_in(30)) texture.standard_only = random.byte(1);
    if (random.once_in(2)) texture.modulate = random.byte(1);
    auto* source = new Watched_Texture;
    material.reset(new Watched_Material);
    material->source.reset(source);
    source->held = texture.image;
    source->wrap_s = texture.wrap_s;
    source->wrap_t = texture.wrap_t;
    source->standard_only = texture.standard_only;
    source->modulate = texture.modulate;
    auto& drawn = scene.rendition.edit(&KT_Rendition_Data::material);
    drawn.basic_material.reset(material.get());
    drawn.lighting = random.once_in(3) ? &events : nullptr;
  }

  /// Half the strips zigzag in narrow steps.
  void make_points() {
    const int count = random.once_in(6) ? random.range(2, 70) : random.range(3, 7);
    const KT_Int_Rectangle& hard = scene.hard_clip();
    if (random.once_in(2))
      call.points = random_strip(random, layer(), count, hard, !has_edge_bit());
    else
      make_zigzag(count, hard);
    call.count = count;
    if (!has_edge_bit() && random.once_in(40))
      call.count = random.range(model::is_inside(layer()) ? 2 : 0, 2);
  }

  void make_zigzag(int count, const KT_Int_Rectangle& hard) {
    const int beyond = model::is_inside(layer()) ? 0 : random.pick({0, 2, 10});
    const int sideways = random.range(1, 3), upward = random.range(1, 12);
    const int z = random.range(0, 65535), z_step = random.pick({0, 10, 3000, 65535});
    const int direction = random.pick({-1, 1});
    const KT_Int_Rectangle area = grown(hard, beyond);
    KT_DCI_Point p = point_in(random, hard);
    for (int i = 0; i < count; ++i) {
      p.x = std::clamp(p.x + random.range(-sideways, sideways), area.left, area.right);
      p.y = std::clamp(p.y + random.range(-upward, upward) + direction, area.bottom, area.top);
      p.z = std::clamp(z + random.range(-z_step, z_step), 0, 65535);
      const float fraction = random.pick({0.0f, 0.25f, -0.25f});
      if (layer() >= Layer::p2di)
        call.points.points.push_back(p);
      else
        call.points.floats.push_back({static_cast<float>(p.x) + fraction,
                                      static_cast<float>(p.y) - fraction, static_cast<float>(p.z)});
    }
  }

  void make_arrays() {
    call.parameter_width = random.range(1, 3);
    const int kind = random.range(0, 5);
    const float reach = random.pick({0.1f, 1.0f, 3.0f, 100.0f});
    const float s0 = random.real(-reach, reach), t0 = random.real(-reach, reach);
    const float slope = random.real(-0.1f, 0.1f);
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    // Specular light of ordinary strength hardly shows.
    const float specular = random.pick({1.0f, 1.0f, 3e4f, 1e6f});
    for (const KT_DCI_Point& at : call.points.whole()) {
      const auto both = [&](float s, float t, float by) {
        const float moved = s + random.real(-by, by);
        return KT_Parameter{moved, t + random.real(-by, by), none};
      };
      KT_Parameter p = both(s0, t0, kind == 0 ? 0.1f : 1);
      if (kind == 1) p = both(0.5f, 0.5f, 0.5f);
      if (kind == 2) p = {s0 + float(at.x) * slope, t0 - float(at.y) * slope, none};
      if (kind == 3) p = both(0, 0, reach);
      if (kind == 4) p = {float(random.range(-2, 6)) / 4, float(random.range(-4, 4)) / 8, none};
      if (random.once_in(60)) p.s = random.pick({1e5f, -1e5f, 2000.0f, 1e20f});
      if (random.once_in(60)) p.t = random.pick({1e5f, -1e5f, 2000.0f, -1e20f});
      if (random.once_in(9)) p.r = random.real(0, 1);
      parameters.push_back(p);
      parameters.insert(parameters.end(), static_cast<std::size_t>(call.parameter_width - 1),
                        {none, none, none});
      extra_floats.push_back(none);
      const float most = random.pick({0.0f, 1.0f, 1.0f, 4.0f});
      const float x = random.real(-most / 4, most), y = random.real(-0.2f, 0.2f);
      vectors.push_back({x, y, random.real(-most, most) * specular});
      colors.push_back(scene.colors[colors.size()]);
      if (random.once_in(3))
        colors.back().alpha = random.pick<std::uint8_t>({255, 255, 0, colors.back().alpha});
    }
    call.colors = random.once_in(texture.modulate ? 10 : 2) ? nullptr : colors.data();
    call.parameters = parameters.data();
    call.extra_floats = random.once_in(2) ? extra_floats.data() : nullptr;
    call.vectors = random.once_in(2) ? vectors.data() : nullptr;
  }

  std::string title() const override {
    const bool lit = scene.rendition->material->lighting && call.vectors;
    return std::string(model::name_of(model::action_of(layer()))) +
           (call.cut_out ? " cut-out" : "") + (texture.modulate ? " modulated" : " plain") +
           (lit ? " lit" : "");
  }
  std::string story() const override {
    const KT_Misc_Attributes& misc = *scene.rendition->misc_attributes;
    return model::line("texture", texture.image->width, texture.image->height, "wrap",
                       texture.wrap_s, texture.wrap_t, "standard only", texture.standard_only,
                       "options", misc.texture_options, "mode", misc.texture_mode, "colors",
                       call.colors != nullptr, "points", call.count, "\n", call.points.floats,
                       call.points.points, "\ncolors", colors, "\nparameters", call.parameter_width,
                       parameters, "\nvectors", vectors, "\n");
  }

  model::Events draw_model(Setting& setting) override {
    return model::draw_textured(setting.state, scene.rendition, texture, call);
  }

  template <class Point>
  void draw(const KT_Renderer_Data& renderer, const std::vector<Point>& points) const {
    const KT_Action action = model::action_of(layer());
    using Routine = korvel::Textured_Routine<Point>;
    const KT_Action_Record& record = renderer.actions[action];
    reinterpret_cast<Routine*>(record.function)(
        static_cast<KT_Renderer_Data*>(record.object), scene.rendition, call.count, points.data(),
        call.colors, call.parameters, call.parameter_width, call.extra_floats, call.vectors);
  }

  void draw_module(Setting& setting) override {
    if (call.cut_out) {
      setting.renderer->options().set_alpha_blending(true);
      setting.renderer->establish();
    }
    call.points.floats.empty() ? draw(*setting.renderer, call.points.points)
                               : draw(*setting.renderer, call.points.floats);
  }
};

}  // namespace

std::unique_ptr<Trial> make_textures(std::uint64_t seed) {
  return std::make_unique<Textures>(seed);
}

}  // namespace fuzz
