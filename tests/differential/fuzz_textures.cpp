// Draws random textured polytriangles with a renderer module and with the reference model, and
// compares the images byte by byte. A test's number is its seed.
#include <algorithm>
#include <limits>
#include <sstream>

#include "tests/differential/batch.h"
#include "tests/differential/model_textures.h"
#include "tests/differential/setting.h"
#include "tests/differential/watched_materials.h"

using fuzz::Lamp;
using fuzz::Random;
using fuzz::Standard_Call;
using fuzz::witness;
using model::Layer;
using model::Light_Asked;
using model::Variant;

// These stand in front of the framework's operations of the same names.
KT_Basic_Material::KT_Basic_Material() : KT_Handle(new Lamp) {}

#define RECORD_TEXTURED(name, Point)                                                              \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points, \
                          const KT_RGB32* colors, const KT_Parameter* parameters, int width,      \
                          const float* extra_floats, const KT_Vector* vectors) {                  \
    witness.standard.push_back(                                                                   \
        {KT_Action::name, count, points, colors, parameters, width, extra_floats, vectors});      \
  }
RECORD_TEXTURED(Draw_2D_Textured_Polytriangle, KT_Point)
RECORD_TEXTURED(Draw_DC_Textured_Polytriangle, KT_Point)
RECORD_TEXTURED(Draw_2DI_Textured_Polytriangle, KT_DCI_Point)
RECORD_TEXTURED(Draw_DCI_Textured_Polytriangle, KT_DCI_Point)
// The wide edges of a strip come here.
void KD_Standard_Draw_2DI_Polyline(KT_Renderer_Data*, const KT_Rendition&, int count,
                                   const KT_DCI_Point* points) {
  witness.polylines.push_back({points, points + count});
}

namespace {

struct Test {
  fuzz::Scene scene;
  Random random;
  model::Texture texture;
  model::Textured_Call call;
  std::vector<KT_RGB32> colors;
  std::vector<KT_Parameter> parameters;
  std::vector<float> extra_floats;
  std::vector<KT_Vector> vectors;
  KT_Handle<fuzz::Textured_Material> material;

  explicit Test(std::uint64_t seed) : scene(seed), random(~seed) {
    fuzz::default_specular_color = {};
    if (!random.once_in(3))
      for (float& channel : fuzz::default_specular_color) channel = real(0, 1);
    call.specular_color = fuzz::default_specular_color;
    call.shade = fuzz::shade;
    make_setting();
    make_texture();
    make_points();
    make_attributes();
  }

  float real(float low, float high) {
    return low + (high - low) * static_cast<float>(random.range(0, 4096)) / 4096;
  }
  std::uint8_t byte(int low, int high) {
    return static_cast<std::uint8_t>(random.range(low, high));
  }
  bool integers() const { return call.layer == Layer::p2di || call.layer == Layer::dci; }
  bool inside() const { return call.layer == Layer::dc || call.layer == Layer::dci; }

  void make_setting() {
    scene.variant = random.pick({Variant::mapped_z, Variant::mapped_z, Variant::rgb_z,
                                 Variant::rgb_alpha_z, Variant::rgb_alpha_z});
    call.cut_out = scene.variant == Variant::mapped_z && random.once_in(2);
    call.layer = scene.call.layer;
    scene.color_padding = random.range(0, 4) * (scene.variant == Variant::mapped_z ? 1 : 4);
    auto& display = scene.rendition.edit(&KT_Rendition_Data::display_context);
    if (!random.once_in(3)) display.depth_enabled = byte(1, 255);
    auto& misc = scene.rendition.edit(&KT_Rendition_Data::misc_attributes);
    misc.advanced_options.bits = random.pick({0u, 0u, 0u, 2u, 4u, 8u, ~40u});
    if (random.once_in(12)) misc.advanced_options.bits |= random.pick({32u, 40u});
    scene.rendition.edit(&KT_Rendition_Data::line_attributes).line_weight = 2;
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
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < row_bytes / 4; ++x) {
        KT_RGB32& texel = texture.image->row<KT_RGB32>(y)[x];
        texel = {byte(0, 255), byte(0, 255), byte(0, 255), byte(0, 255)};
        if (random.once_in(3)) texel.red = random.pick<std::uint8_t>({0, 255});
        if (alphas == 1) texel.alpha = 255;
        if (alphas > 1) texel.alpha = random.pick<std::uint8_t>({0, 255, 255, texel.alpha, 1, 254});
      }
    texture.wrap_s = random.pick({0u, 2u, 2u, 2u});
    texture.wrap_t = random.pick({0u, 2u, 2u, 2u});
    if (random.once_in(20))
      (random.once_in(2) ? texture.wrap_s : texture.wrap_t) =
          random.pick({1u, 3u, 4u, 6u, 256u, 0x80000000u, 0xFFFFFFFFu});
    if (random.once_in(30)) texture.standard_only = byte(1, 255);
    if (random.once_in(2)) texture.modulate = byte(1, 255);
    auto* source = new fuzz::Watched_Texture;
    material.reset(new fuzz::Textured_Material);
    material->source.reset(source);
    source->held = texture.image;
    source->wrap_s = texture.wrap_s;
    source->wrap_t = texture.wrap_t;
    source->standard_only = texture.standard_only;
    source->modulate = texture.modulate;
    auto& drawn = scene.rendition.edit(&KT_Rendition_Data::material);
    drawn.basic_material.reset(material.get());
    drawn.lighting = random.once_in(3) ? &witness : nullptr;
  }

  /// Half the strips are the scene's, the others zigzag in narrow steps.
  void make_points() {
    const KT_Int_Rectangle& hard = scene.rendition->display_context->hard_clip;
    auto& floats = scene.call.floats;
    auto& points = scene.call.points;
    call.count = scene.call.count();
    if (random.once_in(2)) {
      floats.clear();
      points.clear();
      const int beyond = inside() ? 0 : random.pick({0, 2, 10});
      const int sideways = random.range(1, 3), upward = random.range(1, 12);
      KT_DCI_Point p{random.range(hard.left, hard.right), random.range(hard.bottom, hard.top), 0};
      const int z = random.range(0, 65535), z_step = random.pick({0, 10, 3000, 65535});
      const int direction = random.pick({-1, 1});
      for (int i = 0; i < call.count; ++i) {
        p.x += random.range(-sideways, sideways);
        p.y += random.range(-upward, upward) + direction;
        p.x = std::clamp(p.x, hard.left - beyond, hard.right + beyond);
        p.y = std::clamp(p.y, hard.bottom - beyond, hard.top + beyond);
        p.z = std::clamp(z + random.range(-z_step, z_step), 0, 65535);
        points.push_back(p);
      }
      for (const KT_DCI_Point& q : points) {
        if (integers()) break;
        const float fraction = random.pick({0.0f, 0.25f, -0.25f});
        floats.push_back({static_cast<float>(q.x) + fraction, static_cast<float>(q.y) - fraction,
                          static_cast<float>(q.z)});
      }
      if (!integers()) points.clear();
    }
    for (KT_DCI_Point& p : points)
      if (inside()) p.y = std::clamp(p.y, hard.bottom, hard.top);
    call.points = points;
    call.floats = floats;
    const bool edges = (scene.rendition->misc_attributes->advanced_options.bits & 32) != 0;
    if (edges) return;
    if (random.once_in(40)) call.count = random.range(inside() ? 2 : 0, 2);
  }

  void make_attributes() {
    const int width = call.parameter_width = random.range(1, 3);
    const int kind = random.range(0, 5);
    const float reach = random.pick({0.1f, 1.0f, 3.0f, 100.0f});
    const float s0 = real(-reach, reach), t0 = real(-reach, reach), slope = real(-0.1f, 0.1f);
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    const std::size_t held = std::max(call.points.size(), call.floats.size());
    for (std::size_t i = 0; i < held; ++i) {
      const float x = call.points.empty() ? call.floats[i].x : float(call.points[i].x);
      const float y = call.points.empty() ? call.floats[i].y : float(call.points[i].y);
      KT_Parameter p;
      if (kind == 0) p = {real(0, 1), real(0, 1), none};
      if (kind == 1) p = {s0 + x * slope, t0 - y * slope, none};
      if (kind == 2) p = {s0 + real(-1, 1), t0 + real(-1, 1), none};
      if (kind == 3) p = {real(-reach, reach), real(-reach, reach), none};
      if (kind == 4)
        p = {static_cast<float>(random.range(-2, 6)) / 4,
             static_cast<float>(random.range(-4, 4)) / 8, none};
      if (kind == 5) p = {s0 + real(-0.1f, 0.1f), t0 + real(-0.1f, 0.1f), none};
      if (random.once_in(60)) p.s = random.pick({1e5f, -1e5f, 2000.0f, 1e20f});
      if (random.once_in(60)) p.t = random.pick({1e5f, -1e5f, 2000.0f, -1e20f});
      if (random.once_in(9)) p.r = real(0, 1);
      parameters.push_back(p);
      for (int k = 1; k < width; ++k) parameters.push_back({none, none, none});
      extra_floats.push_back(none);
      const float most = random.pick({0.0f, 1.0f, 1.0f, 4.0f});
      vectors.push_back({real(-most / 4, most), real(-0.2f, 0.2f), real(-most, most)});
    }
    colors = scene.call.colors;
    colors.resize(held);
    for (KT_RGB32& color : colors)
      if (random.once_in(3)) color.alpha = random.pick<std::uint8_t>({255, 255, 0, color.alpha});
    call.colors = random.once_in(texture.modulate ? 10 : 2) ? nullptr : colors.data();
    call.parameters = parameters.data();
    call.vectors = random.once_in(2) ? vectors.data() : nullptr;
  }

  std::string action() const {
    static const char* const layers[] = {"2D", "DC", "2DI", "DCI"};
    return std::string("Draw_") + layers[static_cast<int>(call.layer)] + "_Textured_Polytriangle";
  }

  std::string title() const {
    const KT_Rendition_Data& r = *scene.rendition;
    const bool solid =
        r.face_attributes->face_pattern == 64 && (r.misc_attributes->pattern_options & 2) == 0;
    std::string text = scene.variant_name() + (call.cut_out ? " cut-out " : " ") + action();
    text += texture.modulate ? " modulated" : " plain";
    if (r.material->lighting && call.vectors) text += " lit";
    return text + (solid ? " solid" : " patterned");
  }

  std::string describe() const {
    std::ostringstream out;
    const KT_Rendition_Data& r = *scene.rendition;
    out << scene.describe() << title() << "\n  texture " << texture.image->width << "x"
        << texture.image->height << ", wrap " << texture.wrap_s << "/" << texture.wrap_t
        << ", standard only " << int{texture.standard_only} << ", options "
        << r.misc_attributes->texture_options << ", mode " << r.misc_attributes->texture_mode
        << ", lighting " << (r.material->lighting != nullptr) << ", colors "
        << (call.colors != nullptr) << ", width " << call.parameter_width << ", " << call.count
        << " points\n";
    for (std::size_t i = 0; i < static_cast<std::size_t>(call.count); ++i) {
      const KT_Parameter& p = parameters[i * static_cast<std::size_t>(call.parameter_width)];
      const KT_Vector& v = vectors[i];
      out << "  " << i << ": color " << std::hex << colors[i].word() << std::dec << " s " << p.s
          << " t " << p.t << " u " << p.s * static_cast<float>(texture.image->width) << " v "
          << p.t * static_cast<float>(texture.image->height) << " vector " << v.x << " " << v.y
          << " " << v.z << "\n";
    }
    return out.str();
  }

  const float* extras() const { return call.count % 2 == 0 ? extra_floats.data() : nullptr; }

  template <KT_Action action>
  void call_action(const KT_Action_Table& table, const auto& points) {
    table.call<action>(scene.rendition, call.count, points.data(), call.colors, call.parameters,
                       call.parameter_width, extras(), call.vectors);
  }

  void draw(const KT_Action_Table& table) {
    using enum KT_Action;
    switch (call.layer) {
      case Layer::p2d:
        return call_action<Draw_2D_Textured_Polytriangle>(table, call.floats);
      case Layer::dc:
        return call_action<Draw_DC_Textured_Polytriangle>(table, call.floats);
      case Layer::p2di:
        return call_action<Draw_2DI_Textured_Polytriangle>(table, call.points);
      case Layer::dci:
        return call_action<Draw_DCI_Textured_Polytriangle>(table, call.points);
    }
  }

  std::string run(const KT_Renderer_Module& module);
  std::string road_difference(const model::Textured_Outcome& outcome) const;
  std::string light_difference(const model::Textured_Outcome& outcome) const;
};

std::string Test::road_difference(const model::Textured_Outcome& outcome) const {
  using Outcome = model::Textured_Outcome;
  using enum KT_Action;
  std::vector<Standard_Call> expected;
  if (outcome.kind == Outcome::standard) {
    static constexpr KT_Action actions[4] = {
        Draw_2D_Textured_Polytriangle, Draw_DC_Textured_Polytriangle,
        Draw_2DI_Textured_Polytriangle, Draw_DCI_Textured_Polytriangle};
    const void* const points = integers() ? static_cast<const void*>(call.points.data())
                                          : static_cast<const void*>(call.floats.data());
    expected = {{actions[static_cast<int>(call.layer)], call.count, points, call.colors,
                 call.parameters, call.parameter_width, extras(), call.vectors}};
  }
  std::string text;
  if (witness.standard != expected)
    text += expected.empty()           ? "  a general routine drew unasked\n"
            : witness.standard.empty() ? "  the general routine was not called\n"
                                       : "  the general routine got other arguments\n";
  if (witness.polylines.empty() != (outcome.kind != Outcome::edges))
    text += outcome.kind == Outcome::edges ? "  no edges were drawn\n" : "  edges were drawn\n";
  else if (!witness.polylines.empty() && witness.polylines[0] != outcome.points)
    text += "  the edges are of other points\n";
  if (!outcome.asks_texture && witness.texture_asked != 0)
    text += "  the material was asked for its texture\n";
  if (witness.wrong_arguments) text += "  a material or texture was asked with other arguments\n";
  return text;
}

std::string Test::light_difference(const model::Textured_Outcome& outcome) const {
  if (witness.strange_rendition) return "  light was asked under another rendition\n";
  const auto same = [](const Light_Asked& a, const Light_Asked& b) {
    return a.color == b.color && a.specular_color == b.specular_color && a.vector.x == b.vector.x &&
           a.vector.y == b.vector.y && a.vector.z == b.vector.z;
  };
  if (std::ranges::equal(witness.light, outcome.light, same)) return {};
  return "  light was asked " + std::to_string(witness.light.size()) + " times and not as in " +
         std::to_string(outcome.light.size()) + " expected questions\n";
}

std::string Test::run(const KT_Renderer_Module& module) {
  fuzz::Setting setting(module, scene);
  if (call.cut_out) {
    setting.renderer->options().set_alpha_blending(true);
    setting.renderer->establish();
  }
  witness = {};
  fuzz::drawn_rendition = &scene.rendition;
  const int lamps = Lamp::living;
  const KT_Material* const before = scene.rendition->material.get();
  const KT_RGB32 color = before->color;
  const model::Textured_Outcome outcome =
      model::draw(setting.state, scene.rendition, texture, call);
  draw(setting.renderer->actions);
  std::string text = road_difference(outcome) + light_difference(outcome);
  if (scene.rendition->reference_count != 1 || before->reference_count != 1 ||
      material->reference_count != 2 || material->source->reference_count != 1 ||
      texture.image->reference_count != 2 || Lamp::living != lamps)
    text += "  references are held or lost\n";
  if (scene.rendition->material.get() != before || before->color != color)
    text += "  the rendition was changed\n";
  return text + fuzz::image_difference("color", setting.color, setting.state.color) +
         fuzz::image_difference("depth", setting.depth, setting.state.depth);
}

}  // namespace

int main(int argc, char** argv) {
  return fuzz::run_batch<Test>(argc, argv, FUZZ_MODULE);
}
