// A renderer of the module with a window of the size that all benchmarks draw in.
#pragma once

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

}  // namespace bench
