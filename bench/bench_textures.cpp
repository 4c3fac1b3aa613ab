// Textured triangles: a 256x256 texture, nearest texel, modulated by vertex colours, with depth.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/session.h"
#include "bench/workloads.h"

namespace {

using namespace bench;

constexpr int texture_size = 256;

class Texture : public KT_Texture_Source_Data {
 public:
  Texture() {
    wrap_s = wrap_t = 2;
    modulate = 1;
    Random random;
    std::vector<KT_RGB32> texels(texture_size * texture_size);
    for (KT_RGB32& texel : texels) texel = KT_RGB32::from_word(random.next() | 0xFF000000u);
    held_ = KT_Shared_Image(texture_size, texture_size, KT_Image_Format::rgb32, texture_size * 4,
                            texels.data(), false);
  }
  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override {
    return result = held_;
  }

 private:
  KT_Shared_Image held_;
};

class Material : public KT_Material_Object {
 public:
  KT_Texture_Source source{new Texture};

  KT_Counted* clone() const override { return nullptr; }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    return result = source;
  }
  void shade(float*, const KT_Rendition&, const KT_Vector&, int, int, int, int, int) override {}
};

enum class Count { pixels, triangles };

void textured(benchmark::State& state, Variant variant, double area, Spread spread,
              int local_rows, int count, Count counted) {
  Session session(variant);
  session.rendition().edit(&KT_Rendition_Data::material).basic_material.reset(new Material);
  const std::vector<Triangle> triangles =
      random_triangles(count, area, spread, local_rows, 255);
  Random random;
  std::vector<KT_Parameter> parameters;
  // About a texel a pixel, at a random place of the texture.
  for (const Triangle& triangle : triangles) {
    const float s = static_cast<float>(random.between(0, 1));
    const float t = static_cast<float>(random.between(0, 1));
    for (const KT_DCI_Point& point : triangle.points) {
      parameters.push_back({s + static_cast<float>(point.x - triangle.points[0].x) / texture_size,
                            t + static_cast<float>(point.y - triangle.points[0].y) / texture_size,
                            0});
    }
  }
  for (auto _ : state) {
    state.PauseTiming();
    session.call<KT_Action::Clear_Depth>();
    state.ResumeTiming();
    for (std::size_t i = 0; i < triangles.size(); ++i) {
      session.call<KT_Action::Draw_DCI_Textured_Polytriangle>(
          3, triangles[i].points, triangles[i].colors, &parameters[3 * i], 1, nullptr, nullptr);
    }
    benchmark::ClobberMemory();
  }
  const double rate = counted == Count::pixels ? pixels_of(triangles)
                                               : static_cast<double>(triangles.size());
  state.counters[counted == Count::pixels ? "px" : "triangles"] = benchmark::Counter(
      rate * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void large(benchmark::State& state, Variant variant, Spread spread) {
  textured(state, variant, 5100, spread, 180, 2000, Count::pixels);
}
void small(benchmark::State& state, Variant variant, Spread spread) {
  textured(state, variant, 50, spread, 64, 100000, Count::triangles);
}
BENCHMARK_CAPTURE(large, whole_frame, Variant::rgb_z, Spread::whole_frame)->Name("W7/whole_frame");
BENCHMARK_CAPTURE(large, local, Variant::rgb_z, Spread::local)->Name("W7/local");
BENCHMARK_CAPTURE(small, whole_frame, Variant::rgb_z, Spread::whole_frame)->Name("W8/whole_frame");
BENCHMARK_CAPTURE(small, local, Variant::rgb_z, Spread::local)->Name("W8/local");
BENCHMARK_CAPTURE(large, blended, Variant::rgb_alpha_z, Spread::local)->Name("W7/local_blended");
BENCHMARK_CAPTURE(large, mapped, Variant::mapped_z, Spread::local)->Name("W7/local_mapped");

}  // namespace
