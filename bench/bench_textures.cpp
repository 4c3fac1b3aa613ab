// Textured triangles through the action table, each a strip of its own: a texture of 256 x 256,
// about a texel a pixel, with depth.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/session.h"
#include "bench/workloads.h"

namespace {

using namespace bench;

constexpr int texture_size = 256;

enum class Texturing { plain, modulated, perspective };

struct Workload {
  const char* name;
  Variant variant;
  Texturing texturing;
  Crowd crowd;
  std::uint8_t alpha = 255;
  Order order = Order::random;
};

constexpr Workload workloads[] = {
    {"textured_depth_large", Variant::rgb_z, Texturing::modulated, large},
    {"textured_depth_large_passing", Variant::rgb_z, Texturing::modulated, large, 255,
     Order::back_to_front},
    {"textured_depth_small", Variant::rgb_z, Texturing::modulated, small},
    {"textured_depth_small_passing", Variant::rgb_z, Texturing::modulated, small, 255,
     Order::back_to_front},
    {"textured_plain_large", Variant::rgb_z, Texturing::plain, large},
    {"textured_plain_large_passing", Variant::rgb_z, Texturing::plain, large, 255,
     Order::back_to_front},
    {"textured_alpha_large", Variant::rgb_alpha_z, Texturing::modulated, large, 128},
    {"textured_alpha_large_passing", Variant::rgb_alpha_z, Texturing::modulated, large, 128,
     Order::back_to_front},
    {"textured_alpha_small", Variant::rgb_alpha_z, Texturing::modulated, small, 128},
    {"mapped_textured_large", Variant::mapped_z, Texturing::modulated, large},
    {"mapped_textured_large_passing", Variant::mapped_z, Texturing::modulated, large, 255,
     Order::back_to_front},
    {"mapped_textured_small", Variant::mapped_z, Texturing::modulated, small},
    {"perspective_textured_large", Variant::rgb_z, Texturing::perspective, large},
    {"perspective_textured_small", Variant::rgb_z, Texturing::perspective, small},
};

class Texture : public KT_Texture_Source_Data {
 public:
  explicit Texture(Texturing texturing) {
    wrap_s = wrap_t = 2;
    modulate = texturing != Texturing::plain;
    Random random;
    std::vector<KT_RGB32> texels(texture_size * texture_size);
    for (KT_RGB32& texel : texels) texel = KT_RGB32::from_word(random.next() | 0xFF000000u);
    held_ = KT_Shared_Image(texture_size, texture_size, KT_Image_Format::rgb32, texture_size * 4,
                            texels.data(), false);
  }
  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override { return result = held_; }

 private:
  KT_Shared_Image held_;
};

class Material : public KT_Material_Object {
 public:
  KT_Texture_Source source;

  explicit Material(Texturing texturing) : source(new Texture(texturing)) {}
  KT_Counted* clone() const override { return nullptr; }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    return result = source;
  }
  void shade(float*, const KT_Rendition&, const KT_Vector&, int, int, int, int, int) override {}
};

// A triangle at a random place of the texture, upright in it, its points at different distances.
struct Place {
  KT_Parameter parameters[3];
  float w[3];
};

std::vector<Place> random_places(const std::vector<Triangle>& triangles) {
  Random random;
  const auto real = [&](double low, double high) {
    return static_cast<float>(random.between(low, high));
  };
  std::vector<Place> places(triangles.size());
  for (std::size_t n = 0; n < places.size(); ++n) {
    const KT_DCI_Point(&points)[3] = triangles[n].points;
    const float s = real(0, 1), t = real(0, 1);
    for (int i = 0; i < 3; ++i) {
      places[n].parameters[i] = {s + static_cast<float>(points[i].x - points[0].x) / texture_size,
                                 t + static_cast<float>(points[i].y - points[0].y) / texture_size,
                                 0};
      places[n].w[i] = real(1, 2);
    }
  }
  return places;
}

void run(benchmark::State& state, const Workload& workload, Spread spread) {
  Session session(workload.variant);
  KT_Rendition& rendition = session.rendition();
  rendition.edit(&KT_Rendition_Data::material)
      .basic_material.reset(new Material(workload.texturing));
  if (workload.texturing == Texturing::perspective) {
    rendition.edit(&KT_Rendition_Data::misc_attributes).texture_options =
        KT_Misc_Attributes::perspective_bit;
  }
  const std::vector<Triangle> triangles =
      random_triangles(workload.crowd, spread, workload.alpha, workload.order);
  const std::vector<Place> places = random_places(triangles);
  for (auto _ : state) {
    state.PauseTiming();
    session.call<KT_Action::Clear_Depth>();
    state.ResumeTiming();
    for (std::size_t n = 0; n < triangles.size(); ++n) {
      session.call<KT_Action::Draw_DCI_Textured_Polytriangle>(
          3, triangles[n].points, triangles[n].colors, places[n].parameters, 1, places[n].w,
          nullptr);
    }
  }
  report(state, workload.crowd.count, pixels_of(triangles));
}

const int registered = register_workloads(workloads, run);

}  // namespace
