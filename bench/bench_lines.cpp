// Thin lines through the action table, each a polyline of two points. Rates are of CPU time.

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "bench/session.h"
#include "bench/workloads.h"

namespace {

using namespace bench;

enum class Style { plain, gouraud, antialiased };

struct Workload {
  const char* name;
  Variant variant;
  Style style;
  int count;
  double length;
  std::uint8_t alpha = 255;
};

constexpr Workload workloads[] = {
    {"thin_lines", Variant::rgb, Style::plain, 200000, 19},
    {"gouraud_depth_lines", Variant::rgb_z, Style::gouraud, 200000, 19},
    {"antialiased_lines", Variant::rgb, Style::antialiased, 20000, 55},
    {"blended_lines", Variant::rgb_alpha, Style::plain, 200000, 19, 128},
    {"mapped_lines", Variant::mapped, Style::plain, 200000, 19},
    {"mapped_gouraud_depth_lines", Variant::mapped_z, Style::gouraud, 200000, 19},
};

struct Line {
  KT_DCI_Point points[2];
  KT_RGB32 colors[2];
};

std::vector<Line> random_lines(int count, double length, Spread spread) {
  Random random;
  const double margin = length * 0.7 + 2;
  const double rows = spread == Spread::local ? 64 + 2 * margin : height;
  std::vector<Line> lines(static_cast<std::size_t>(count));
  for (Line& line : lines) {
    const double x = random.between(margin, width - margin);
    const double y = random.between(margin, rows - margin);
    const double angle = random.between(0, 2 * std::numbers::pi);
    const double half = length * random.between(0.75, 1.25) / 2;
    for (int i = 0; i < 2; ++i) {
      const double reach = i == 0 ? -half : half;
      line.points[i] = {static_cast<int>(x + reach * std::cos(angle)),
                        static_cast<int>(y + reach * std::sin(angle)),
                        static_cast<int>(random.between(0, 65535))};
      const auto channel = [&] { return static_cast<std::uint8_t>(random.between(16, 240)); };
      line.colors[i] = {channel(), channel(), channel(), 255};
    }
  }
  return lines;
}

void run(benchmark::State& state, const Workload& workload, Spread spread) {
  Session session(workload.variant);
  session.rendition().set_color({200, 100, 50, workload.alpha}, false);
  if (workload.style == Style::antialiased) {
    session.rendition().set_advanced_options({KT_Advanced_Options::antialias_bit}, false);
  }
  const std::vector<Line> lines = random_lines(workload.count, workload.length, spread);
  for (auto _ : state) {
    state.PauseTiming();
    session.call<KT_Action::Clear_Depth>();
    state.ResumeTiming();
    for (const Line& line : lines) {
      if (workload.style == Style::gouraud) {
        session.call<KT_Action::Draw_DCI_Gouraud_Polyline>(2, line.points, line.colors);
      } else {
        session.call<KT_Action::Draw_DCI_Polyline>(2, line.points);
      }
    }
  }
  state.counters["prim"] = benchmark::Counter(
      workload.count * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

const int registered = register_workloads(workloads, run);

}  // namespace
