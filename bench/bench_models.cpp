// Whole pictures of a real model, as the host application draws them: clears, strips and lines
// that were projected and lit beforehand. Rates are of CPU time.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <optional>

#include "apps/commands/content.h"
#include "apps/common/errors.h"
#include "bench/session.h"

namespace {

using namespace bench;

/// The engine of the test models; nothing where they are not installed.
const std::optional<kv::Scene>& engine() {
  static const std::optional<kv::Scene> scene = []() -> std::optional<kv::Scene> {
    if (access(ZB_ENGINE, R_OK) != 0) return std::nullopt;
    kv::Options options;
    return kv::make_scene(kv::load_model(ZB_ENGINE, options.limits, kv::load_choices(options)));
  }();
  return scene;
}

void draw_engine(benchmark::State& state, kv::Style style, kv::Variant variant) {
  if (!engine()) return state.SkipWithError("the engine model is not installed");
  kv::Options options;
  options.drawing.style = style;
  kv::Host_Session session(ZB_MODULE, variant, {width, height}, options.drawing,
                           options.background);
  kv::View view(options.camera, width, height, engine()->model);
  const kv::Content content = kv::content_of(*engine(), view, options.drawing);
  for (auto _ : state) session.draw(content);
  state.counters["lines"] = benchmark::Counter(static_cast<double>(content.lines.size()),
                                               benchmark::Counter::kIsIterationInvariantRate);
  state.counters["fps"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK_CAPTURE(draw_engine, wireframe_rgb, kv::Style::wireframe, kv::Variant::rgb)
    ->Name("engine/wireframe_rgb")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw_engine, wireframe_rgb_z, kv::Style::wireframe, kv::Variant::rgb_z)
    ->Name("engine/wireframe_rgb_z")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw_engine, hidden_line_rgb_z, kv::Style::hidden_line, kv::Variant::rgb_z)
    ->Name("engine/hidden_line_rgb_z")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw_engine, shaded_rgb_z, kv::Style::shaded, kv::Variant::rgb_z)
    ->Name("engine/shaded_rgb_z")
    ->Unit(benchmark::kMillisecond);

}  // namespace
