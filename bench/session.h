// A renderer of the module with a window of the size that all benchmarks draw in.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "bench/workloads.h"
#include "host/application.h"

namespace bench {

inline constexpr int width = 1280;
inline constexpr int height = 1024;

enum class Variant { rgb_alpha, rgb, mapped, mapped_z, rgb_alpha_z, rgb_z };

class Session {
 public:
  /// Ends the program with a message when the module cannot be loaded.
  explicit Session(Variant variant);

  KT_Renderer_Data& renderer() { return *renderer_; }
  KT_Rendition& rendition() { return rendition_; }

  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments) {
    renderer_->actions.call<action>(rendition_, std::forward<Arguments>(arguments)...);
  }

 private:
  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> renderer_;
  KT_Rendition rendition_;
};

/// Rates of CPU time: `prim` primitives and `px` pixels a second, both of one frame.
void report(benchmark::State& state, double primitives, double pixels);

/// Registers `run(state, workload, spread)` for each of a table of named workloads, with local and
/// with scattered primitives.
template <class Workloads, class Run>
int register_workloads(const Workloads& workloads, Run run) {
  for (const auto& workload : workloads) {
    for (Spread spread : {Spread::local, Spread::whole_frame}) {
      const std::string name =
          std::string(workload.name) + (spread == Spread::local ? "/local" : "/whole");
      benchmark::RegisterBenchmark(name.c_str(), run, workload, spread)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return 0;
}

}  // namespace bench
