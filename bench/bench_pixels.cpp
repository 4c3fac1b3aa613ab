// Dots, images and polygons. An image is copied to a place that stays in the second-level cache.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "bench/session.h"
#include "bench/workloads.h"

namespace {

using namespace bench;

constexpr int image_size = 512;
constexpr KT_DCI_Point image_start{100, 611, 20000};
constexpr KT_DCI_Point image_end{611, 100, 20000};

enum class Alpha { opaque, by_pixel };
enum class Depth { off, on };

void report(benchmark::State& state, double count) {
  state.counters["rate"] = benchmark::Counter(count * static_cast<double>(state.iterations()),
                                              benchmark::Counter::kIsRate);
}

std::vector<KT_RGB32> random_pixels(Alpha alpha) {
  Random random;
  std::vector<KT_RGB32> pixels(image_size * image_size);
  for (KT_RGB32& pixel : pixels) {
    pixel = KT_RGB32::from_word(random.next());
    if (alpha == Alpha::opaque) pixel.alpha = 255;
  }
  return pixels;
}

template <Variant variant, Alpha alpha, Depth depth>
void image(benchmark::State& state) {
  Session session(variant);
  session.rendition().edit(&KT_Rendition_Data::display_context).depth_enabled = depth == Depth::on;
  if (depth == Depth::on) session.call<KT_Action::Clear_Depth>();
  const std::vector<KT_RGB32> pixels = random_pixels(alpha);
  for (auto _ : state) {
    session.call<KT_Action::Draw_DCI_RGB32_Image>(&image_start, &image_end, image_size * 4,
                                                  pixels.data(), 0, nullptr);
    benchmark::ClobberMemory();
  }
  report(state, static_cast<double>(pixels.size()));
}
BENCHMARK(image<Variant::rgb, Alpha::opaque, Depth::off>)->Name("image_opaque");
BENCHMARK(image<Variant::rgb_alpha, Alpha::by_pixel, Depth::off>)->Name("image_alpha");
BENCHMARK(image<Variant::rgb_z, Alpha::opaque, Depth::on>)->Name("image_opaque_depth");
BENCHMARK(image<Variant::rgb_alpha_z, Alpha::by_pixel, Depth::on>)->Name("image_alpha_depth");

// Rows apart by a row of the frame, as an image's are: the limit of `image_opaque`.
void limit_copy_rows(benchmark::State& state) {
  const std::vector<KT_RGB32> from = random_pixels(Alpha::opaque);
  std::vector<KT_RGB32> frame(static_cast<std::size_t>(width) * height);
  for (auto _ : state) {
    for (int row = 0; row < image_size; ++row) {
      std::copy_n(&from[static_cast<std::size_t>(row * image_size)], image_size,
                  &frame[static_cast<std::size_t>((row + 300) * width + 100)]);
    }
    benchmark::ClobberMemory();
  }
  report(state, static_cast<double>(from.size()));
}
BENCHMARK(limit_copy_rows)->Name("limit/copy_512_rows");

std::vector<KT_DCI_Point> random_points(int count) {
  Random random;
  std::vector<KT_DCI_Point> points(static_cast<std::size_t>(count));
  for (KT_DCI_Point& point : points) {
    point = {static_cast<int>(random.between(0, width)), static_cast<int>(random.between(0, 200)),
             static_cast<int>(random.between(0, 65535))};
  }
  return points;
}

template <Variant variant>
void dots(benchmark::State& state) {
  Session session(variant);
  const std::vector<KT_DCI_Point> points = random_points(10000);
  const KT_RGB32 color{10, 20, 30, 128};
  for (auto _ : state) {
    for (const KT_DCI_Point& point : points) {
      session.call<KT_Action::Draw_DCI_Dot>(&point, &color);
    }
    benchmark::ClobberMemory();
  }
  report(state, static_cast<double>(points.size()));
}
BENCHMARK(dots<Variant::rgb>)->Name("dots/rgb");
BENCHMARK(dots<Variant::rgb_alpha>)->Name("dots/rgb_alpha");
BENCHMARK(dots<Variant::rgb_z>)->Name("dots/rgb_z");
BENCHMARK(dots<Variant::mapped>)->Name("dots/mapped_dithered");

template <Variant variant>
void markers(benchmark::State& state) {
  Session session(variant);
  const std::vector<KT_DCI_Point> points = random_points(10000);
  for (auto _ : state) {
    session.call<KT_Action::Draw_2DI_Polymarker>(static_cast<int>(points.size()), points.data());
    benchmark::ClobberMemory();
  }
  report(state, static_cast<double>(points.size()));
}
BENCHMARK(markers<Variant::rgb>)->Name("markers/rgb");
BENCHMARK(markers<Variant::rgb_z>)->Name("markers/rgb_z");

// Quads of about 100 pixels, as polygons.
void quads(benchmark::State& state) {
  Session session(Variant::rgb_z);
  session.call<KT_Action::Clear_Depth>();
  constexpr int count = 10000;
  Random random;
  std::vector<KT_Point> points;
  for (int i = 0; i < count; ++i) {
    const auto x = static_cast<float>(random.between(20, width - 20));
    const auto y = static_cast<float>(random.between(20, 200));
    for (const KT_Point& corner : {KT_Point{-5, -5, 0}, {5, -5, 0}, {5, 5, 0}, {-5, 5, 0}}) {
      points.push_back({x + corner.x, y + corner.y, 1000});
    }
  }
  const KT_RGB32 color{10, 20, 30, 255};
  for (auto _ : state) {
    for (int i = 0; i < count; ++i) {
      session.call<KT_Action::Draw_2D_Polygon>(4, &points[static_cast<std::size_t>(4 * i)], &color);
    }
    benchmark::ClobberMemory();
  }
  report(state, count);
}
BENCHMARK(quads)->Name("quads/rgb_z");

}  // namespace
