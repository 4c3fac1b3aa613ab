// Draws random dots, markers, images and polygons.
#include "tests/differential/model_small.h"
#include "tests/differential/setting.h"

namespace fuzz {
namespace {

using enum KT_Action;

enum class What { dot, markers, image, polygon };

struct Small : Trial {
  What what{};
  std::vector<KT_DCI_Point> points;  // of the dot or the markers; corners of the image
  std::optional<KT_RGB32> color;
  model::Image_Call image;
  model::Polygon_Call polygon;
  bool in_edge_pass = false;
  KT_Rendition edges;  ///< that a strip is drawn with, in the midst of which the polygon comes

  explicit Small(std::uint64_t seed) : Trial(seed) {
    what = static_cast<What>(random.range(0, 3));
    scene.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol =
        random.once_in(8) ? random.pick({1, -1, 7}) : 0;
    scene.rendition.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits =
        random.pick<std::uint32_t>({0, 4, 8, 12, random.byte(0, 31)});
    if (random.once_in(2)) color = scene.colors[0];
    if (what == What::polygon)
      make_polygon();
    else if (what == What::image)
      make_image();
    else
      make_points();
    for (const KT_DCI_Point& p : points) scene.depths.push_back(p.z);
  }

  const KT_RGB32* color_pointer() const { return color ? &*color : nullptr; }
  KT_DCI_Point pixel() {
    const KT_Int_XY o = scene.origin();
    KT_DCI_Point p = point_in(random, {o.x, o.x + scene.size.x - 1, o.y, o.y + scene.size.y - 1});
    p.z = random.pick({0, 30000, 65535, 65536, 70000, -1, random.range(0, 65535)});
    return p;
  }

  void make_points() {
    const int count = what == What::dot ? 1 : random.pick({0, 1, 3, random.range(0, 70)});
    const KT_Int_Rectangle& hard = scene.hard_clip();
    for (int i = 0; i < count; ++i) {
      KT_DCI_Point p = pixel();
      if (what == What::markers) {
        const int far = random.pick({0, 0, 2, 200, 2000000000});
        if (far != 0) p.x = random.range(hard.left - far, hard.right + far);
        if (far != 0) p.y = random.range(hard.bottom - far, hard.top + far);
        if (random.once_in(4)) p.x = random.pick({hard.left, hard.right, hard.right + 1});
        if (random.once_in(4)) p.y = random.pick({hard.top, hard.top + 1, hard.bottom - 1});
        if (i > 0 && random.once_in(4)) p = points.back();
      }
      points.push_back(p);
    }
  }

  void make_image() {
    const int origin_x = scene.origin().x;
    KT_DCI_Point a = pixel(), b = pixel();
    if (random.once_in(3)) b.x = a.x + random.pick({-1, 0, 1, 2, 4, 8, 16});
    if (random.once_in(4)) b.x = origin_x + scene.size.x + random.range(-1, 30);
    if (a.x > b.x && !random.once_in(8)) std::swap(a.x, b.x);
    if (random.once_in(30)) a.x = origin_x + scene.size.x;
    a.x = std::clamp(a.x, origin_x, origin_x + scene.size.x);
    if (a.y < b.y && !random.once_in(8)) std::swap(a.y, b.y);
    if (random.once_in(2)) b.z = a.z + random.range(-40, 40);
    points = {a, b};
    image.start = a;
    image.end = b;
    image.indices = model::is_mapped(scene.variant) != random.once_in(6);
    const int size = image.indices ? 1 : 4;
    image.stride = (std::max(0, b.x - a.x + 1) + random.pick({0, 0, 3})) * size;
    image.bytes.resize(static_cast<std::size_t>(image.stride * std::max(0, a.y - b.y + 1) + 4));
    for (std::uint8_t& byte : image.bytes)
      byte = random.pick<std::uint8_t>({0, 255, random.byte()});
  }

  void make_polygon() {
    scene.rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern =
        random.once_in(6) ? random.pick({75, 100}) : random.pick({0, 64, 74});
    polygon.action =
        random.pick({Draw_2D_Polygon, Draw_DC_Polygon, Draw_2DI_Polygon, Draw_DCI_Polygon});
    polygon.color = color;
    const bool anywhere = polygon.action == Draw_2D_Polygon || polygon.action == Draw_2DI_Polygon;
    const int count = random.pick({random.range(0, 3), random.range(3, 9), random.range(60, 70)});
    for (int i = 0; i < count; ++i) {
      KT_DCI_Point p = pixel();
      if (anywhere && random.once_in(9)) p.x = random.range(-20000000, 20000000);
      if (polygon.action == Draw_2D_Polygon || polygon.action == Draw_DC_Polygon)
        polygon.floats.push_back(
            {static_cast<float>(p.x) + 0.25f, static_cast<float>(p.y), static_cast<float>(p.z)});
      else
        polygon.points.push_back(p);
    }
    polygon_rank = random.once_in(3) ? random.pick({1, -1}) : 0;
    in_edge_pass = scene.variant >= model::rgb_alpha_z && random.once_in(3);
    if (!in_edge_pass) return;
    edges = scene.rendition;
    edges.edit(&KT_Rendition_Data::line_attributes).line_weight = 2;
    edges.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits = 32;
    const int own = scene.rendition->face_attributes->face_depth_offset;
    edges.edit(&KT_Rendition_Data::face_attributes).face_depth_offset =
        random.pick({0, -7, 12, own});
    edges.edit(&KT_Rendition_Data::face_attributes).face_pattern = 64;
    for (int i = 0; i < 3; ++i) points.push_back(pixel());
  }

  std::string title() const override {
    static const char* const names[] = {"dot", "markers", "image", "polygon"};
    return names[static_cast<int>(what)] + std::string(in_edge_pass ? " in an edge pass" : "");
  }
  std::string story() const override {
    return model::line("marker symbol", scene.rendition->marker_attributes->marker_symbol, "color",
                       model::List<KT_RGB32>{color_pointer(), 1}, "points", points,
                       "\nimage of indices", image.indices, "stride", image.stride, "\n",
                       model::name_of(polygon.action), "of floats", polygon.floats.size(),
                       "of ints", polygon.points.size(), "\n");
  }

  model::Events draw_model(Setting& setting) override {
    model::State& state = setting.state;
    if (what == What::markers) return model::draw_markers(state, scene.rendition, points);
    if (what == What::image) return model::draw_image(state, scene.rendition, image);
    if (what == What::dot) {
      model::draw_dot(state, scene.variant, *scene.rendition, points[0], color_pointer());
      return {};
    }
    const int offset = in_edge_pass ? edges->face_attributes->face_depth_offset : 0;
    return model::draw_polygon(scene.rendition, polygon, polygon_rank, offset);
  }

  /// What polygons come down to is recorded.
  void watch(Setting& setting) override {
    if (what == What::polygon && !in_edge_pass) bind_recorders(*setting.renderer);
  }

  void draw_module(Setting& setting) override {
    const KT_Action_Table& table = setting.renderer->actions;
    const KT_Rendition& r = scene.rendition;
    const auto& [indices, start, end, stride, bytes] = image;
    if (what == What::dot)
      table.call<Draw_DCI_Dot>(r, points.data(), color_pointer());
    else if (what == What::markers)
      table.call<Draw_2DI_Polymarker>(r, static_cast<int>(points.size()), points.data());
    else if (what == What::polygon)
      draw_polygon(*setting.renderer);
    else if (indices)
      table.call<Draw_DCI_Index8_Image>(r, &start, &end, stride, bytes.data());
    else
      table.call<Draw_DCI_RGB32_Image>(r, &start, &end, stride,
                                       reinterpret_cast<const KT_RGB32*>(bytes.data()), 0, nullptr);
  }

  void draw_polygon(KT_Renderer_Data& renderer) {
    const auto call = [&] {
      events.clear();
      const auto draw = [&](const auto& corners) {
        // Polygons have a colour or none where Gouraud strips have their colours.
        call_action(renderer, polygon.action, model::Kind::gouraud, scene.rendition,
                    static_cast<int>(corners.size()), corners.data(), color_pointer(), false);
      };
      polygon.action >= Draw_2DI_Polygon ? draw(polygon.points) : draw(polygon.floats);
      events_of_polygon = events;
    };
    if (!in_edge_pass) call();
    if (in_edge_pass) {
      // A wide edge of a strip goes to the general routine in the midst of an edge pass.
      at_next_polyline = [&] { bind_recorders(renderer), call(); };
      const KT_RGB32 colors[3] = {{0, 0, 0, 0}, {255, 255, 255, 0}, {0, 0, 0, 0}};
      renderer.actions.call<Draw_DCI_Gouraud_Polytriangle>(edges, 3, points.data(), colors);
      if (at_next_polyline) found += "  a wide edge did not go to the general routine\n";
      at_next_polyline = nullptr;
    }
    events = events_of_polygon;
  }
  model::Events events_of_polygon;

  static void bind_recorders(KT_Renderer_Data& renderer) {
#define BIND(name, signature) renderer.actions.bind<name>(&renderer, KD_Standard_##name);
    KORVEL_STANDARD_POLYTRIANGLES(BIND)
    KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(BIND)
#undef BIND
  }
};

}  // namespace

std::unique_ptr<Trial> make_small(std::uint64_t seed) {
  return std::make_unique<Small>(seed);
}

}  // namespace fuzz
