// Triangles through the action table, each a strip of its own unless said otherwise. Rates are of
// CPU time: `px` pixels, `prim` triangles a second.

#include <benchmark/benchmark.h>

#include "bench/session.h"
#include "bench/workloads.h"

namespace {

using namespace bench;

enum class Shading { flat, colorized, gouraud };
enum class Face { solid, patterned, masked };

struct Workload {
  const char* name;
  Variant variant;
  Shading shading;
  Crowd crowd;
  std::uint8_t alpha = 255;
  Order order = Order::random;
  Face face = Face::solid;
};

constexpr Workload workloads[] = {
    {"flat_large", Variant::rgb, Shading::flat, large},
    {"flat_small", Variant::rgb, Shading::flat, small},
    {"gouraud_depth_large", Variant::rgb_z, Shading::gouraud, large},
    {"gouraud_depth_large_passing", Variant::rgb_z, Shading::gouraud, large, 255,
     Order::back_to_front},
    {"gouraud_depth_small", Variant::rgb_z, Shading::gouraud, small},
    {"flat_alpha_large", Variant::rgb_alpha, Shading::flat, large, 128},
    {"colorized_depth_large", Variant::rgb_z, Shading::colorized, large},
    {"gouraud_alpha_depth_large", Variant::rgb_alpha_z, Shading::gouraud, large, 128},
    {"gouraud_alpha_depth_small", Variant::rgb_alpha_z, Shading::gouraud, small, 128},
    {"mapped_flat_large", Variant::mapped, Shading::flat, large},
    {"mapped_flat_small", Variant::mapped, Shading::flat, small},
    {"mapped_colorized_large", Variant::mapped, Shading::colorized, large},
    {"mapped_colorized_small", Variant::mapped, Shading::colorized, small},
    {"mapped_colorized_depth_large", Variant::mapped_z, Shading::colorized, large},
    {"mapped_gouraud_depth_large", Variant::mapped_z, Shading::gouraud, large},
    {"mapped_gouraud_depth_small", Variant::mapped_z, Shading::gouraud, small},
    {"patterned_flat_large", Variant::rgb, Shading::flat, large, 255, Order::random,
     Face::patterned},
    {"patterned_flat_small", Variant::rgb, Shading::flat, small, 255, Order::random,
     Face::patterned},
    {"patterned_gouraud_depth_large", Variant::rgb_z, Shading::gouraud, large, 255, Order::random,
     Face::patterned},
    {"masked_flat_large", Variant::rgb, Shading::flat, large, 255, Order::random, Face::masked},
    {"masked_flat_small", Variant::rgb, Shading::flat, small, 255, Order::random, Face::masked},
    {"masked_gouraud_depth_large", Variant::rgb_z, Shading::gouraud, large, 255, Order::random,
     Face::masked},
};

// A clip of many slanted stripes, so that spans are cut often.
void clip_to_stripes(Session& session) {
  KT_Contour_Set stripes;
  for (int x = -height; x < width; x += 96) {
    const auto at = [](int px, int py) {
      return KT_Point{static_cast<float>(px), static_cast<float>(py), 0};
    };
    const KT_Point corners[4] = {at(x, 0), at(x + 48, 0), at(x + height + 48, height),
                                 at(x + height, height)};
    if (!stripes) {
      stripes = KT_Contour_Set(4, corners, false);
    } else {
      stripes.writable().contours.emplace_back(corners, corners + 4);
    }
  }
  session.rendition().edit(&KT_Rendition_Data::display_context).complex_clip = stripes;
  session.renderer().option_table().find(KT_String(L"Use Mask"))->set(KT_Option_Value(true));
  session.renderer().establish();
}

void apply_face(Session& session, Face face) {
  if (face == Face::masked) clip_to_stripes(session);
  if (face == Face::patterned) {
    session.rendition().edit(&KT_Rendition_Data::face_attributes).face_pattern = 32;
  }
}

void draw(Session& session, Shading shading, const Triangle& triangle) {
  switch (shading) {
    case Shading::flat:
      session.call<KT_Action::Draw_DCI_Polytriangle>(3, triangle.points);
      break;
    case Shading::colorized:
      session.call<KT_Action::Draw_DCI_Colorized_Polytriangle>(3, triangle.points, triangle.colors,
                                                               true);
      break;
    case Shading::gouraud:
      session.call<KT_Action::Draw_DCI_Gouraud_Polytriangle>(3, triangle.points, triangle.colors);
      break;
  }
}

void run(benchmark::State& state, const Workload& workload, Spread spread) {
  Session session(workload.variant);
  session.rendition().set_color({200, 100, 50, workload.alpha}, false);
  apply_face(session, workload.face);
  const std::vector<Triangle> triangles =
      random_triangles(workload.crowd, spread, workload.alpha, workload.order);
  for (auto _ : state) {
    state.PauseTiming();
    session.call<KT_Action::Clear_Depth>();
    state.ResumeTiming();
    for (const Triangle& triangle : triangles) draw(session, workload.shading, triangle);
  }
  report(state, workload.crowd.count, pixels_of(triangles));
}

void run_sphere(benchmark::State& state) {
  Session session(Variant::rgb_z);
  const std::vector<Strip> strips = sphere_strips();
  double triangles = 0;
  for (const Strip& strip : strips) triangles += static_cast<double>(strip.points.size()) - 2;
  for (auto _ : state) {
    state.PauseTiming();
    session.call<KT_Action::Clear_Depth>();
    state.ResumeTiming();
    for (const Strip& strip : strips) {
      session.call<KT_Action::Draw_DCI_Gouraud_Polytriangle>(
          static_cast<int>(strip.points.size()), strip.points.data(), strip.colors.data());
    }
  }
  report(state, triangles, 2 * 3.14159 * 510 * 510);
}

const int registered = [] {
  register_workloads(workloads, run);
  benchmark::RegisterBenchmark("sphere_strips/whole", run_sphere)->Unit(benchmark::kMillisecond);
  return 0;
}();

}  // namespace
