// Clears, and the machine's limit beside them: a plain fill of memory of the same size.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "bench/session.h"

namespace {

using namespace bench;

constexpr std::int64_t frame_pixels = std::int64_t{width} * height;

void report_pixels(benchmark::State& state, double pixels) {
  state.counters["px"] = benchmark::Counter(pixels * static_cast<double>(state.iterations()),
                                            benchmark::Counter::kIsRate);
}

void limit_fill_color_and_depth(benchmark::State& state) {
  std::vector<std::uint32_t> color(frame_pixels);
  std::vector<std::uint16_t> depth(frame_pixels);
  for (auto _ : state) {
    std::fill(color.begin(), color.end(), 0xFF203040u);
    std::memset(depth.data(), 0xFF, depth.size() * 2);
    benchmark::ClobberMemory();
  }
  report_pixels(state, static_cast<double>(frame_pixels));
}
BENCHMARK(limit_fill_color_and_depth)->Name("limit/fill_color_and_depth");

// Rows of the local workloads: colour within the second-level cache.
void limit_fill_local(benchmark::State& state) {
  std::vector<std::uint32_t> color(static_cast<std::size_t>(width * 180));
  for (auto _ : state) {
    std::fill(color.begin(), color.end(), 0xFF203040u);
    benchmark::ClobberMemory();
  }
  report_pixels(state, static_cast<double>(color.size()));
}
BENCHMARK(limit_fill_local)->Name("limit/fill_local");

void limit_copy(benchmark::State& state) {
  std::vector<std::uint32_t> from(512 * 512, 0xFF203040u), to(512 * 512);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size() * 4);
    benchmark::ClobberMemory();
  }
  report_pixels(state, static_cast<double>(from.size()));
}
BENCHMARK(limit_copy)->Name("limit/copy_512x512");

void clear_color_and_depth(benchmark::State& state) {
  Session session(Variant::rgb_z);
  session.rendition().edit(&KT_Rendition_Data::material).window_color = {0x40, 0x30, 0x20, 255};
  for (auto _ : state) {
    session.call<KT_Action::Clear_Color>();
    session.call<KT_Action::Clear_Depth>();
    benchmark::ClobberMemory();
  }
  report_pixels(state, static_cast<double>(frame_pixels));
}
BENCHMARK(clear_color_and_depth)->Name("clear_color_and_depth");

}  // namespace
