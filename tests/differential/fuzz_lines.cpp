// Draws random polylines, and triangle strips as their edges.
#include "tests/differential/model_lines.h"
#include "tests/differential/setting.h"

namespace fuzz {
namespace {

using model::Kind;

/// A material that outlines what has the right count of points.
class Outlining_Material final : public KT_Material_Object {
 public:
  int modulus = 1, rest = 0;
  KT_Counted* clone() const override { return new Outlining_Material(*this); }
  KT_Point_Class classify_points(int count, const KT_DCI_Point*) override {
    return {count % modulus == rest ? KT_Point_Class::outlined : count % 7};
  }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override { return result; }
  void shade(float*, const KT_Rendition&, const KT_Vector&, int, int, int, int, int) override {}
};

struct Lines : Trial {
  bool device = false, strip = false;  ///< the DCI layer; the edges of a triangle strip
  model::Line line;
  std::string features;

  explicit Lines(std::uint64_t seed) : Trial(seed) {
    strip = scene.variant >= model::rgb_alpha_z && random.once_in(8);
    device = !strip && random.once_in(3);
    line.kind = strip ? Kind::flat : static_cast<Kind>(random.range(0, 2));
    move_window();
    make_attributes();
    make_points();
    make_colors();
    for (const KT_DCI_Point& p : line.points) scene.depths.push_back(p.z);
  }

  /// Now and then the window lies across a bound of the device range.
  void move_window() {
    if (scene.local || !random.once_in(12)) return;
    const KT_Int_XY before = scene.window_origin;
    const auto across = [&](int at, int side) {
      const int into = random.range(0, side);
      return random.pick({-4000, 28760, at}) - into;
    };
    scene.window_origin = {across(before.x, scene.size.x), across(before.y, scene.size.y)};
    const int dx = scene.window_origin.x - before.x, dy = scene.window_origin.y - before.y;
    auto& display = scene.rendition.edit(&KT_Rendition_Data::display_context);
    KT_Int_Rectangle& hard = display.hard_clip;
    hard = {hard.left + dx, hard.right + dx, hard.bottom + dy, hard.top + dy};
    if (display.complex_clip)
      for (KT_Point& p : display.complex_clip.writable().contours[0])
        p.x += static_cast<float>(dx), p.y += static_cast<float>(dy);
  }

  void make_attributes() {
    auto& attributes = scene.rendition.edit(&KT_Rendition_Data::line_attributes);
    attributes.line_weight = random.pick({1, 1, 1, 0, -3});
    if (random.once_in(10)) attributes.line_weight = random.pick({2, 3, 9});
    attributes.line_corner_style = attributes.line_end_style_a = random.range(0, 2);
    if (random.once_in(12)) attributes.line_pattern = random.pick({1, -1, 64});
    scene.rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern =
        random.pick({64, 24, 0});
    auto& advanced =
        scene.rendition.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits;
    advanced = strip               ? random.pick({32u, 34u, 0xFFFFFFFFu})
               : random.once_in(3) ? random.pick({2u, 10u, 0xFFFFFFDFu})
                                   : random.pick({0u, 8u, 16u});
    if ((advanced & 2) != 0) features += " antialiased";
    if (!random.once_in(6)) return;
    auto* outlining = new Outlining_Material;
    outlining->modulus = random.range(1, 3);
    outlining->rest = random.range(0, outlining->modulus - 1);
    outlining->outline_width = random.range(-1, 5);
    outlining->outline_color = scene.colors[0];
    outlining->core_color = scene.colors[1];
    scene.rendition.edit(&KT_Rendition_Data::material).basic_material.reset(outlining);
    features += " outlined";
  }

  void make_points() {
    const KT_Int_Rectangle hard = scene.hard_clip();
    const int count = random.pick({2, 2, 3, random.range(0, 6), random.range(0, 70)});
    const int reach = device ? 0 : random.pick({0, 1, 6, 60, 60, 5000, 40000, 500000000});
    const int z_base = random.range(0, 65535), z_spread = random.pick({0, 3, 500, 65535});
    for (int i = 0; i < count; ++i) {
      const int far = random.once_in(2) ? reach : random.range(0, reach);
      KT_DCI_Point p = point_in(random, grown(hard, random.once_in(4) ? std::min(reach, 3) : far));
      if (i > 0 && random.once_in(2)) {
        const KT_DCI_Point before = line.points.back();
        const int n = random.range(-9, 9), sign = random.pick({-1, 1});
        const int x = before.x, y = before.y;
        p = random.pick<KT_DCI_Point>({before,
                                       {p.x, y},
                                       {x, p.y},
                                       {x + n, y + n * sign},
                                       {x + n, y + random.range(-9, 9)},
                                       {p.x, y + n},
                                       {p.x, y + sign * (p.x - x)},
                                       {x + n, p.y}});
        p.x = std::clamp(p.x, hard.left - reach, hard.right + reach);
        p.y = std::clamp(p.y, hard.bottom - reach, hard.top + reach);
      }
      p.z = std::clamp(z_base + random.range(-z_spread, z_spread), 0, 65535);
      if (random.once_in(20)) p.z = random.pick({0, 65535});
      line.points.push_back(p);
    }
  }

  void make_colors() {
    if (line.kind == Kind::flat) return;
    line.single_color = line.kind == Kind::colorized && random.once_in(2);
    const bool none = line.single_color && !model::is_mapped(scene.variant) && random.once_in(4);
    std::size_t count = line.points.size();
    if (line.kind == Kind::colorized && count > 0) --count;
    if (line.single_color) count = none ? 0 : 1;
    line.colors.assign(scene.colors.begin(),
                       scene.colors.begin() + static_cast<std::ptrdiff_t>(count));
  }

  std::string title() const override {
    return (strip ? "strip edges" : model::name_of(model::action_of(line.kind, device))) + features;
  }
  std::string story() const override {
    return model::line("points", line.points, "\ncolors", line.colors, "single", line.single_color,
                       "\n");
  }

  model::Events draw_model(Setting& setting) override {
    return strip ? model::draw_strip_edges(setting.state, scene.rendition, line.points)
                 : model::draw_line(setting.state, scene.rendition, device, line);
  }
  void draw_module(Setting& setting) override {
    const KT_Action action =
        strip ? KT_Action::Draw_2DI_Gouraud_Polytriangle : model::action_of(line.kind, device);
    const KT_RGB32* colors = line.colors.empty() ? nullptr : line.colors.data();
    call_action(*setting.renderer, action, strip ? Kind::gouraud : line.kind, scene.rendition,
                static_cast<int>(line.points.size()), line.points.data(),
                strip ? scene.colors.data() : colors, line.single_color);
  }
};

}  // namespace

std::unique_ptr<Trial> make_lines(std::uint64_t seed) {
  return std::make_unique<Lines>(seed);
}

}  // namespace fuzz
