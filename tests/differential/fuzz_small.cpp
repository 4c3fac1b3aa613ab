// Draws random dots, markers, images and polygons with a renderer module and with the reference
// model, and compares the images byte by byte. A test's number is its seed.
#include <algorithm>
#include <cstring>
#include <sstream>

#include "tests/differential/batch.h"
#include "tests/differential/model_small.h"
#include "tests/differential/setting.h"

namespace {

using fuzz::Random;
using model::Image_Call;
using model::Polygon_Call;
using model::Strip_Call;

/// A call that reached one of the general routines.
struct Standard_Call {
  KT_Action action{};
  int count = 0;  ///< or the stride of an image
  const void* points = nullptr;
  const void* colors = nullptr;  ///< or the pixels of an image
  bool operator==(const Standard_Call&) const = default;
};
std::vector<Standard_Call> standard_calls;
int rank = 0, ranked = 0;
struct Test* edge_test = nullptr;
void draw_in_edge_pass();

}  // namespace

// These stand in front of the framework's routines of the same names.
KT_Polygon_Rank KD_Rank_Polygon(int count, const KT_Point*) {
  ranked = count;
  return {rank};
}
void KD_Standard_Draw_2DI_Polymarker(KT_Renderer_Data*, const KT_Rendition&, int count,
                                     const KT_DCI_Point* points) {
  standard_calls.push_back({KT_Action::Draw_2DI_Polymarker, count, points, nullptr});
}
void KD_Standard_Draw_DCI_RGB32_Image(KT_Renderer_Data*, const KT_Rendition&,
                                      const KT_DCI_Point* start, const KT_DCI_Point*, int stride,
                                      const KT_RGB32* pixels, int, const KT_Packing*) {
  standard_calls.push_back({KT_Action::Draw_DCI_RGB32_Image, stride, start, pixels});
}
void KD_Standard_Draw_DCI_Index8_Image(KT_Renderer_Data*, const KT_Rendition&,
                                       const KT_DCI_Point* start, const KT_DCI_Point*, int stride,
                                       const std::uint8_t* pixels) {
  standard_calls.push_back({KT_Action::Draw_DCI_Index8_Image, stride, start, pixels});
}
#define RECORD_POLYGON(name, Point)                                                               \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points, \
                          const KT_RGB32* color) {                                                \
    standard_calls.push_back({KT_Action::name, count, points, color});                            \
  }
RECORD_POLYGON(Draw_2D_Polygon, KT_Point)
RECORD_POLYGON(Draw_DC_Polygon, KT_Point)
RECORD_POLYGON(Draw_2DI_Polygon, KT_DCI_Point)
RECORD_POLYGON(Draw_DCI_Polygon, KT_DCI_Point)
// A wide edge of a strip comes here in the midst of an edge pass.
void KD_Standard_Draw_2DI_Polyline(KT_Renderer_Data*, const KT_Rendition&, int,
                                   const KT_DCI_Point*) {
  draw_in_edge_pass();
}

namespace {

enum class What { dot, markers, image, polygon };

struct Test {
  fuzz::Scene scene;
  Random random;
  What what{};
  std::vector<KT_DCI_Point> points;
  std::optional<KT_RGB32> color;
  Image_Call image;
  Polygon_Call polygon;
  bool in_edge_pass = false;
  std::vector<Strip_Call> strips;  // that the module asks for
  KT_Renderer_Data* renderer = nullptr;

  explicit Test(std::uint64_t seed) : scene(seed), random(~seed) {
    what = static_cast<What>(random.range(0, 3));
    scene.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol =
        random.once_in(8) ? random.pick({1, -1, 7}) : 0;
    scene.rendition.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits =
        static_cast<std::uint32_t>(random.pick({0, 4, 8, 12, random.range(0, 31)}));
    if (random.once_in(2)) color = scene.call.colors[0];
    scene.call.floats.clear();
    if (what == What::polygon)
      make_polygon();
    else if (what == What::image)
      make_image();
    else
      make_points();
    // The images hold depths about those of the call.
    scene.call.points = points;
    if (points.empty()) scene.call.points.push_back({});
  }

  KT_Int_XY origin() const { return scene.origin(); }
  KT_DCI_Point pixel() {
    return {origin().x + random.range(0, scene.size.x - 1),
            origin().y + random.range(0, scene.size.y - 1),
            random.pick({0, 30000, 65535, 65536, 70000, -1, random.range(0, 65535)})};
  }

  void make_points() {
    const int count = what == What::dot ? 1 : random.pick({0, 1, 3, random.range(0, 70)});
    const KT_Int_Rectangle& hard = scene.rendition->display_context->hard_clip;
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
    KT_DCI_Point a = pixel(), b = pixel();
    if (random.once_in(3)) b.x = a.x + random.pick({-1, 0, 1, 2, 4, 8, 16});
    if (random.once_in(4)) b.x = origin().x + scene.size.x + random.range(-1, 30);
    if (a.x > b.x && !random.once_in(8)) std::swap(a.x, b.x);
    if (a.x >= origin().x + scene.size.x || random.once_in(30)) a.x = origin().x + scene.size.x;
    if (a.x < origin().x) a.x = origin().x;
    if (a.y < b.y && !random.once_in(8)) std::swap(a.y, b.y);
    if (random.once_in(2)) b.z = a.z + random.range(-40, 40);
    image.start = a;
    image.end = b;
    image.indices = model::is_mapped(scene.variant) != random.once_in(6);
    const int size = image.indices ? 1 : 4;
    image.stride = (std::max(0, b.x - a.x + 1) + random.pick({0, 0, 3})) * size;
    image.bytes.resize(static_cast<std::size_t>(image.stride * std::max(0, a.y - b.y + 1) + 4));
    for (std::uint8_t& byte : image.bytes)
      byte = static_cast<std::uint8_t>(random.pick({0, 255, random.range(0, 255)}));
    points = {a, b};
  }

  void make_polygon() {
    auto& face = scene.rendition.edit(&KT_Rendition_Data::face_attributes);
    face.face_pattern = random.once_in(6) ? random.pick({75, 100}) : random.pick({0, 64, 74});
    polygon.action =
        static_cast<KT_Action>(static_cast<int>(KT_Action::Draw_2D_Polygon) + random.range(0, 3));
    polygon.color = color;
    const bool floats = polygon.action == KT_Action::Draw_2D_Polygon ||
                        polygon.action == KT_Action::Draw_DC_Polygon;
    const int count = random.pick({random.range(0, 3), random.range(3, 9), random.range(60, 70)});
    for (int i = 0; i < count; ++i) {
      KT_DCI_Point p = pixel();
      if (random.once_in(9)) p.x = random.range(-20000000, 20000000);
      if (floats)
        polygon.floats.push_back(
            {static_cast<float>(p.x) + 0.25f, static_cast<float>(p.y), static_cast<float>(p.z)});
      else
        polygon.points.push_back(p);
    }
    in_edge_pass = scene.variant >= model::Variant::rgb_alpha_z && random.once_in(3);
  }

  std::string title() const {
    static const char* const names[] = {"dot", "markers", "image", "polygon"};
    return scene.variant_name() + " " + names[static_cast<int>(what)] +
           (in_edge_pass ? " in an edge pass" : "");
  }

  std::string describe() const {
    std::ostringstream out;
    out << scene.describe() << title() << ", marker symbol "
        << scene.rendition->marker_attributes->marker_symbol << "\n";
    if (color) out << "color " << std::hex << color->word() << std::dec << "\n";
    if (what == What::image)
      out << (image.indices ? "indices" : "colors") << ", stride " << image.stride << "\n";
    return out.str();
  }

  template <class Point>
  void record(KT_Action action, const KT_Rendition& r, int count, const Point* p,
              const KT_RGB32* colors, bool single) {
    Strip_Call call;
    call.action = action;
    for (int i = 0; i < count; ++i)
      call.points.push_back(
          {static_cast<double>(p[i].x), static_cast<double>(p[i].y), static_cast<double>(p[i].z)});
    if (colors) call.color = *colors;
    call.single_color = single;
    call.depth_offset = r->face_attributes->face_depth_offset;
    call.same_rendition = r.get() == scene.rendition.get();
    strips.push_back(std::move(call));
  }

  void call_polygon() {
    const KT_RGB32* c = color ? &*color : nullptr;
    using enum KT_Action;
    const KT_Action_Table& table = renderer->actions;
    const int ints = static_cast<int>(polygon.points.size());
    const int floats = static_cast<int>(polygon.floats.size());
    if (polygon.action == Draw_2D_Polygon)
      table.call<Draw_2D_Polygon>(scene.rendition, floats, polygon.floats.data(), c);
    else if (polygon.action == Draw_DC_Polygon)
      table.call<Draw_DC_Polygon>(scene.rendition, floats, polygon.floats.data(), c);
    else if (polygon.action == Draw_2DI_Polygon)
      table.call<Draw_2DI_Polygon>(scene.rendition, ints, polygon.points.data(), c);
    else
      table.call<Draw_DCI_Polygon>(scene.rendition, ints, polygon.points.data(), c);
  }

  std::string run(const KT_Renderer_Module& module);
  std::string run_polygon();
};

void draw_in_edge_pass() {
  if (edge_test) std::exchange(edge_test, nullptr)->call_polygon();
}

Test* recording = nullptr;

template <KT_Action action, class Point>
void record_flat(KT_Renderer_Data* renderer) {
  renderer->actions.bind<action>(
      renderer, [](KT_Renderer_Data*, const KT_Rendition& r, int count, const Point* p) {
        recording->record(action, r, count, p, nullptr, false);
      });
}
template <KT_Action action, class Point>
void record_colorized(KT_Renderer_Data* renderer) {
  renderer->actions.bind<action>(renderer, [](KT_Renderer_Data*, const KT_Rendition& r, int count,
                                              const Point* p, const KT_RGB32* c, bool single) {
    recording->record(action, r, count, p, c, single);
  });
}

bool same(const Strip_Call& a, const Strip_Call& b) {
  return a.action == b.action && a.color == b.color && a.single_color == b.single_color &&
         a.depth_offset == b.depth_offset && a.same_rendition == b.same_rendition &&
         std::ranges::equal(a.points, b.points, [](const KT_Point_D& p, const KT_Point_D& q) {
           return p.x == q.x && p.y == q.y && p.z == q.z;
         });
}

std::string Test::run_polygon() {
  using enum KT_Action;
  record_flat<Draw_2D_Polytriangle, KT_Point>(renderer);
  record_flat<Draw_DC_Polytriangle, KT_Point>(renderer);
  record_flat<Draw_2DI_Polytriangle, KT_DCI_Point>(renderer);
  record_flat<Draw_DCI_Polytriangle, KT_DCI_Point>(renderer);
  record_colorized<Draw_2D_Colorized_Polytriangle, KT_Point>(renderer);
  record_colorized<Draw_DC_Colorized_Polytriangle, KT_Point>(renderer);
  record_colorized<Draw_2DI_Colorized_Polytriangle, KT_DCI_Point>(renderer);
  record_colorized<Draw_DCI_Colorized_Polytriangle, KT_DCI_Point>(renderer);
  recording = this;
  rank = random.once_in(3) ? random.pick({1, -1}) : 0;
  ranked = 0;
  int offset = 0;
  if (in_edge_pass) {
    KT_Rendition edges = scene.rendition;
    edges.edit(&KT_Rendition_Data::line_attributes).line_weight = 2;
    edges.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits = 32;
    offset = random.pick({0, -7, 12, scene.rendition->face_attributes->face_depth_offset});
    edges.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = offset;
    const KT_DCI_Point corners[3] = {pixel(), pixel(), pixel()};
    const KT_RGB32 colors[3] = {{0, 0, 0, 0}, {255, 255, 255, 0}, {0, 0, 0, 0}};
    edge_test = this;
    renderer->actions.call<Draw_DCI_Gouraud_Polytriangle>(edges, 3, corners, colors);
    if (std::exchange(edge_test, nullptr))
      return "  a wide edge did not go to the general routine\n";
  } else {
    call_polygon();
  }
  const auto expected = model::draw_polygon(scene.rendition, polygon, rank, offset);
  if (!expected) {
    const void* p = polygon.points.empty() ? static_cast<const void*>(polygon.floats.data())
                                           : static_cast<const void*>(polygon.points.data());
    const int count = static_cast<int>(std::max(polygon.floats.size(), polygon.points.size()));
    const Standard_Call wanted{polygon.action, count, p, color ? &*color : nullptr};
    const bool right = standard_calls == std::vector{wanted} && strips.empty();
    return right ? "" : "  the general routine was not called as the action was\n";
  }
  if (!standard_calls.empty()) return "  the general routine was called unasked\n";
  const int count = static_cast<int>(polygon.floats.size());
  const bool asks = count >= 4 && count <= 64;
  if (ranked != (asks ? count : 0)) return "  the wrong polygon was ranked\n";
  if (std::ranges::equal(strips, *expected, same)) return {};
  std::ostringstream out;
  out << "  expected " << expected->size() << " strips, got " << strips.size() << "; the first ";
  for (const std::vector<Strip_Call>* list : {&std::as_const(*expected), &std::as_const(strips)})
    if (!list->empty())
      out << " [action " << static_cast<int>(list->front().action) << ", "
          << list->front().points.size() << " points, offset " << list->front().depth_offset
          << ", single " << list->front().single_color << ", same rendition "
          << list->front().same_rendition << "]";
  return out.str() + "\n";
}

std::string Test::run(const KT_Renderer_Module& module) {
  fuzz::Setting setting(module, scene);
  renderer = setting.renderer.get();
  standard_calls.clear();
  if (what == What::polygon) return run_polygon();
  const KT_Rendition& r = scene.rendition;
  const KT_Action_Table& table = renderer->actions;
  std::vector<Standard_Call> expected;
  if (what == What::dot) {
    const KT_RGB32* c = color ? &*color : nullptr;
    model::draw_dot(setting.state, scene.variant, r, points[0], c);
    table.call<KT_Action::Draw_DCI_Dot>(r, points.data(), c);
  } else if (what == What::markers) {
    const int count = static_cast<int>(points.size());
    if (!model::draw_markers(setting.state, r, points))
      expected = {{KT_Action::Draw_2DI_Polymarker, count, points.data(), nullptr}};
    table.call<KT_Action::Draw_2DI_Polymarker>(r, count, points.data());
  } else {
    using enum KT_Action;
    const auto& [indices, start, end, stride, bytes] = image;
    if (!model::draw_image(setting.state, r, image))
      expected = {
          {indices ? Draw_DCI_Index8_Image : Draw_DCI_RGB32_Image, stride, &start, bytes.data()}};
    if (indices)
      table.call<Draw_DCI_Index8_Image>(r, &start, &end, stride, bytes.data());
    else
      table.call<Draw_DCI_RGB32_Image>(r, &start, &end, stride,
                                       reinterpret_cast<const KT_RGB32*>(bytes.data()), 0, nullptr);
  }
  const bool right = standard_calls == expected;
  return (right ? "" : "  the wrong calls of general routines\n") +
         fuzz::image_difference("color", setting.color, setting.state.color) +
         fuzz::image_difference("depth", setting.depth, setting.state.depth);
}

}  // namespace

int main(int argc, char** argv) {
  return fuzz::run_batch<Test>(argc, argv, FUZZ_MODULE);
}
