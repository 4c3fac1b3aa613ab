// A renderer of a module, from loading the module to letting it go.
#pragma once

#include <string>
#include <utility>

#include "host/application.h"

namespace kv {

// All members throw a Failure of Exit_Code::module when the module does not do its part.
class Renderer {
 public:
  explicit Renderer(const std::string& module_path);
  Renderer(const Renderer&) = delete;  // the framework holds its address
  Renderer& operator=(const Renderer&) = delete;

  KT_Renderer_Data& data() const { return *data_; }
  KT_Renderer_Options& options() const { return data_->options(); }
  KT_Option& option(const wchar_t* name) const;

  // Lets the module take its options as they are. Throws std::bad_alloc when its buffers do not fit
  // into the memory.
  void establish();

  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments) const {
    if (data_->actions[action].valid == 0)
      fail(std::string("the module does not offer ") + korvel::Action_Traits<action>::name);
    data_->actions.call<action>(std::forward<Arguments>(arguments)...);
  }

  [[noreturn]] void fail(const std::string& what, const std::string& hint = {}) const;

 private:
  static void create_frame_buffer(void* renderer, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);

  std::string module_path_;
  bool out_of_memory_ = false;
  // In this order: the module goes last.
  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> data_;
};

}  // namespace kv
