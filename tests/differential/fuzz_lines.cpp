// Draws random polylines, and triangle strips as their edges, with a renderer module and with the
// reference model, and compares the images byte by byte. A test's number is its seed.
#include <algorithm>
#include <sstream>

#include "tests/differential/batch.h"
#include "tests/differential/model_lines.h"
#include "tests/differential/setting.h"

namespace {

using fuzz::Random;
using model::General_Line;
using model::Kind;
using model::Line;
using model::Variant;

std::vector<General_Line> general_lines;

void keep(bool device, Kind kind, const KT_Rendition& r, int count, const KT_DCI_Point* points,
          const KT_RGB32* colors, bool single) {
  const int used = !colors ? 0 : single ? 1 : kind == Kind::gouraud ? count : count - 1;
  general_lines.push_back({device,
                           {kind, {points, points + count}, {colors, colors + used}, single},
                           model::look_of(r)});
}

}  // namespace

// These stand in front of the framework's routines of the same names.
#define RECORD_LINES(layer, device)                                                             \
  void KD_Standard_Draw_##layer##_Polyline(KT_Renderer_Data*, const KT_Rendition& r, int count, \
                                           const KT_DCI_Point* points) {                        \
    keep(device, Kind::flat, r, count, points, nullptr, false);                                 \
  }                                                                                             \
  void KD_Standard_Draw_##layer##_Colorized_Polyline(KT_Renderer_Data*, const KT_Rendition& r,  \
                                                     int count, const KT_DCI_Point* points,     \
                                                     const KT_RGB32* colors, bool single) {     \
    keep(device, Kind::colorized, r, count, points, colors, single);                            \
  }                                                                                             \
  void KD_Standard_Draw_##layer##_Gouraud_Polyline(KT_Renderer_Data*, const KT_Rendition& r,    \
                                                   int count, const KT_DCI_Point* points,       \
                                                   const KT_RGB32* colors) {                    \
    keep(device, Kind::gouraud, r, count, points, colors, false);                               \
  }
RECORD_LINES(2DI, false)
RECORD_LINES(DCI, true)

namespace {

/// A material that asks for an outline of what has the right count of points.
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

struct Test {
  fuzz::Scene scene;
  Random random;
  bool device = false, strip = false;  ///< the DCI layer; the edges of a triangle strip
  Line line;
  std::string features;

  explicit Test(std::uint64_t seed) : scene(seed), random(~seed) {
    strip = scene.variant >= Variant::rgb_alpha_z && random.once_in(8);
    device = !strip && random.once_in(3);
    line.kind = strip ? Kind::flat : static_cast<Kind>(random.range(0, 2));
    move_window();
    make_attributes();
    make_points();
    make_colors();
    // The images hold depths about those of the call.
    scene.call.floats.clear();
    scene.call.points = line.points;
    if (line.points.empty()) scene.call.points.push_back({});
  }

  KT_Int_Rectangle& hard_clip() {
    return scene.rendition.edit(&KT_Rendition_Data::display_context).hard_clip;
  }

  /// Now and then the window lies across a bound of the device range.
  void move_window() {
    if (scene.local || !random.once_in(12)) return;
    const KT_Int_XY before = scene.window_origin;
    scene.window_origin = {random.pick({-4000, 28760, before.x}) - random.range(0, scene.size.x),
                           random.pick({-4000, 28760, before.y}) - random.range(0, scene.size.y)};
    const int dx = scene.window_origin.x - before.x, dy = scene.window_origin.y - before.y;
    KT_Int_Rectangle& hard = hard_clip();
    hard = {hard.left + dx, hard.right + dx, hard.bottom + dy, hard.top + dy};
    auto& clip = scene.rendition.edit(&KT_Rendition_Data::display_context).complex_clip;
    if (clip)
      for (KT_Point& p : clip.writable().contours[0])
        p.x += static_cast<float>(dx), p.y += static_cast<float>(dy);
    features += ",range";
  }

  void make_attributes() {
    auto& attributes = scene.rendition.edit(&KT_Rendition_Data::line_attributes);
    attributes.line_weight = random.pick({1, 1, 1, 0, -3});
    if (random.once_in(10)) attributes.line_weight = random.pick({2, 3, 9});
    if (random.once_in(12)) attributes.line_pattern = random.pick({1, -1, 64});
    auto& face = scene.rendition.edit(&KT_Rendition_Data::face_attributes);
    face.face_pattern = random.pick({64, 24, 0});
    auto& misc = scene.rendition.edit(&KT_Rendition_Data::misc_attributes);
    misc.advanced_options.bits = strip               ? random.pick({32u, 34u, 0xFFFFFFFFu})
                                 : random.once_in(3) ? random.pick({2u, 10u, 0xFFFFFFDFu})
                                                     : random.pick({0u, 8u, 16u});
    if ((misc.advanced_options.bits & 2) != 0) features += ",antialiased";
    if (attributes.line_weight > 1 || attributes.line_pattern != 0) features += ",general";
    if (scene.use_mask && scene.rendition->display_context->complex_clip) features += ",masked";
    if (scene.force_merge || misc.drawing_mode == 20) features += ",merge";
    if (!random.once_in(6)) return;
    auto* outlining = new Outlining_Material;
    outlining->modulus = random.range(1, 3);
    outlining->rest = random.range(0, outlining->modulus - 1);
    outlining->outline_width = random.range(-1, 5);
    outlining->outline_color = scene.call.colors[0];
    outlining->core_color = scene.call.colors[1];
    scene.rendition.edit(&KT_Rendition_Data::material).basic_material.reset(outlining);
    features += ",outlined";
  }

  KT_DCI_Point free_point(const KT_Int_Rectangle& hard, int far) {
    return {random.range(hard.left - far, hard.right + far),
            random.range(hard.bottom - far, hard.top + far), 0};
  }

  void make_points() {
    const KT_Int_Rectangle hard = hard_clip();
    const int count = random.pick({2, 2, 3, random.range(0, 6), random.range(0, 70)});
    const int reach = device ? 0 : random.pick({0, 1, 6, 60, 60, 5000, 40000, 500000000});
    if (reach >= 5000) features += ",far";
    const int z_base = random.range(0, 65535), z_spread = random.pick({0, 3, 500, 65535});
    for (int i = 0; i < count; ++i) {
      KT_DCI_Point p = free_point(hard, random.once_in(2) ? reach : random.range(0, reach));
      if (random.once_in(4)) p = free_point(hard, std::min(reach, 3));
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
    const auto& colors = scene.call.colors;
    for (std::size_t i = 0; i < count; ++i) line.colors.push_back(colors[i % colors.size()]);
    if (none) features += ",no color";
  }

  std::string title() const {
    static const char* const kinds[] = {"", "Colorized_", "Gouraud_"};
    return scene.variant_name() +
           (strip ? " strip edges"
                  : std::string(device ? " Draw_DCI_" : " Draw_2DI_") +
                        kinds[static_cast<int>(line.kind)] + "Polyline") +
           features;
  }

  std::string describe() const {
    std::ostringstream out;
    out << scene.describe() << title() << ": " << model::look_of(scene.rendition) << ", single "
        << line.single_color << ", colors" << std::hex;
    for (KT_RGB32 c : line.colors) out << " " << c.word();
    return out.str() + "\n";
  }

  void call(KT_Renderer_Data& renderer) const {
    using enum KT_Action;
    const KT_Action_Table& table = renderer.actions;
    const KT_Rendition& r = scene.rendition;
    const int n = static_cast<int>(line.points.size());
    const KT_DCI_Point* p = line.points.data();
    const KT_RGB32* c = line.colors.empty() ? nullptr : line.colors.data();
    const bool s = line.single_color;
    if (strip) {
      const std::vector<KT_RGB32> colors(line.points.size());
      table.call<Draw_2DI_Gouraud_Polytriangle>(r, n, p, colors.data());
    } else if (line.kind == Kind::flat) {
      device ? table.call<Draw_DCI_Polyline>(r, n, p) : table.call<Draw_2DI_Polyline>(r, n, p);
    } else if (line.kind == Kind::colorized) {
      device ? table.call<Draw_DCI_Colorized_Polyline>(r, n, p, c, s)
             : table.call<Draw_2DI_Colorized_Polyline>(r, n, p, c, s);
    } else {
      device ? table.call<Draw_DCI_Gouraud_Polyline>(r, n, p, c)
             : table.call<Draw_2DI_Gouraud_Polyline>(r, n, p, c);
    }
  }

  std::string run(const KT_Renderer_Module& module) {
    fuzz::Setting setting(module, scene);
    const std::vector<General_Line> expected =
        strip ? model::draw_strip_edges(setting.state, scene.rendition, line.points)
              : model::draw_line(setting.state, scene.rendition, device, line);
    const std::string look = model::look_of(scene.rendition);
    general_lines.clear();
    call(*setting.renderer);
    std::ostringstream out;
    const auto list = [&](const char* what, const std::vector<General_Line>& calls) {
      for (const General_Line& c : calls)
        out << "  " << what << (c.device ? " DCI" : " 2DI") << " kind "
            << static_cast<int>(c.line.kind) << " single " << c.line.single_color << " points "
            << c.line.points.size() << " colors " << c.line.colors.size() << " " << c.look << "\n";
    };
    if (general_lines != expected) {
      out << "  the wrong calls of general routines\n";
      list("expected", expected);
      list("got", general_lines);
    }
    if (look != model::look_of(scene.rendition)) out << "  the caller's rendition changed\n";
    return out.str() + fuzz::image_difference("color", setting.color, setting.state.color) +
           fuzz::image_difference("depth", setting.depth, setting.state.depth);
  }
};

}  // namespace

int main(int argc, char** argv) {
  return fuzz::run_batch<Test>(argc, argv, FUZZ_MODULE);
}
