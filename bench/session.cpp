// Loading of the module and the set-up of a renderer for a variant.
#include "bench/session.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

Session::Session(Variant variant) {
  std::string error;
  if (!module_.load(ZB_MODULE, error)) {
    std::fprintf(stderr, "zb_bench: error: %s\n", error.c_str());
    std::exit(3);
  }
  renderer_ = module_.make_renderer(nullptr);
  const bool mapped = variant == Variant::mapped || variant == Variant::mapped_z;
  const bool alpha = variant == Variant::rgb_alpha || variant == Variant::rgb_alpha_z;
  const bool depth =
      variant == Variant::mapped_z || variant == Variant::rgb_alpha_z || variant == Variant::rgb_z;
  KT_Renderer_Options& options = renderer_->options();
  options.set_color_system(mapped ? KT_Color_System::mapped : KT_Color_System::direct);
  options.set_alpha_blending(alpha);
  options.set_buffer_depth(depth ? 16 : 0);
  options.set_window({0, 0}, {width, height});
  options.set_palette(KD_Cube_Palette());
  renderer_->establish();
  rendition_ = KD_Default_Rendition({0, width - 1, 0, height - 1});
  call<KT_Action::Clear_Color>();
  call<KT_Action::Clear_Depth>();
}

void report(benchmark::State& state, double primitives, double pixels) {
  using benchmark::Counter;
  const auto frames = static_cast<double>(state.iterations());
  state.counters["prim"] = Counter(primitives * frames, Counter::kIsRate);
  state.counters["px"] = Counter(pixels * frames, Counter::kIsRate);
}

}  // namespace bench
