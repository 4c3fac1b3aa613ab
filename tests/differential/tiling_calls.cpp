// Random strips and lines in double precision, also far beyond the guard rectangle. There is no
// model of them: they serve the checksums alone.
#include "tests/differential/setting.h"

namespace fuzz {
namespace {

using enum KT_Action;
constexpr KT_Action actions[3][3] = {
    {Draw_2DD_Polytriangle, Draw_2DD_Polyline, Draw_2DD_Polyline},
    {Draw_2DD_Colorized_Polytriangle, Draw_2DD_Colorized_Polyline, Draw_2DD_Colorized_Polyline},
    {Draw_2DD_Gouraud_Polytriangle, Draw_2DD_Gouraud_Polyline, Draw_2DD_Textured_Polytriangle}};

struct Tiling : Trial {
  int kind, count;
  KT_Action action;
  std::vector<KT_Point_D> points;
  std::vector<KT_Parameter> parameters;

  explicit Tiling(std::uint64_t seed) : Trial(seed) {
    kind = random.range(0, 2);
    action = actions[kind][random.range(0, 2)];
    const bool crosses = random.once_in(2);
    const KT_Int_XY o = scene.origin();
    const int unit = random.range(800, 3000), beyond = random.range(1, 5);
    const int whole = random.pick({10, 14, 18, 22}), middle = random.range(0, scene.size.y - 1);
    const double slope = random.real(-0.01f, 0.01f);
    count = random.once_in(4) ? random.range(3, 70) : random.range(3, 7);
    const double scale = random.pick({1.0, 1.0, 3.7, 1e4, 1e6});
    const model::Strip_Points strip =
        random_strip(random, model::Layer::p2di, count, scene.hard_clip(), true);
    for (const KT_DCI_Point& p : strip.points) {
      const double by = random.once_in(4) ? scale : 1;
      const double part = random.pick({0.0, 0.25, -0.5, 0.49999999999});
      points.push_back({p.x * by + part, p.y / by - part, p.z + part});
      // From beyond the device range through the window. The range cuts off whole parts of an edge,
      // so that many cuts end in halves, which a different rounding takes the other way.
      const double x = unit * (points.size() % 2 == 0 ? whole - beyond : -beyond) - 4000.0;
      if (crosses) points.back() = {o.x + x, o.y + middle + x * slope, points.back().z};
      parameters.push_back({random.real(-2, 2), random.real(-2, 2), 0});
      scene.depths.push_back(p.z);
    }
    auto& line = scene.rendition.edit(&KT_Rendition_Data::line_attributes);
    line.line_weight = random.once_in(6) ? random.range(2, 30) : 1;
    line.line_pattern = random.once_in(6) ? random.range(1, 8) : 0;
    line.line_corner_style = line.line_end_style_a = random.range(0, 2);
    if (action == Draw_2DD_Textured_Polytriangle) make_texture();
  }

  void make_texture() {
    KT_Shared_Image image(16, 8, KT_Image_Format::rgb32, 64, nullptr, false);
    for (int i = 0; i < 512; ++i) image->scan_lines[0][i] = random.byte();
    scene.rendition.edit(&KT_Rendition_Data::material).basic_material = KD_Textured_Material(
        image, KT_Texture_Wrap::tile, KT_Texture_Wrap::mirror, random.once_in(2), false);
    scene.rendition.edit(&KT_Rendition_Data::misc_attributes).texture_options =
        random.pick({0u, 2u, 2u});
  }

  std::string title() const override { return model::name_of(action); }
  std::string story() const override { return {}; }
  model::Events draw_model(Setting&) override { return {}; }
  void draw_module(Setting& setting) override {
    setting.renderer->option_table().find(KT_String(L"Enable Tiling"))->set(KT_Option_Value(true));
    setting.renderer->establish();
    if (action == Draw_2DD_Textured_Polytriangle)
      setting.renderer->actions.call<Draw_2DD_Textured_Polytriangle>(
          scene.rendition, count, points.data(), scene.colors.data(), parameters.data(), 1, nullptr,
          nullptr);
    else
      call_action(*setting.renderer, action, static_cast<model::Kind>(kind), scene.rendition, count,
                  points.data(), scene.colors.data(), points[0].z > 30000);
  }
};

}  // namespace

std::unique_ptr<Trial> make_tiling(std::uint64_t seed) {
  return std::make_unique<Tiling>(seed);
}

}  // namespace fuzz
