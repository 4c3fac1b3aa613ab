// A window with a picture and panels of text over it.
#pragma once

#include <string>

#include "apps/common/option_text.h"
#include "apps/draw/host_session.h"
#include "apps/view/text.h"

namespace kv {

struct Overlay {
  Text_Lines readout, help, message;
};

// The constructor throws a Failure of Exit_Code::output when there is no window to be had.
class View_Window {
 public:
  View_Window(const std::string& title, const Size& size);
  ~View_Window();
  View_Window(const View_Window&) = delete;
  View_Window& operator=(const View_Window&) = delete;

  Size size() const;
  // Shows the picture that the session has drawn, which has the size of the window, or had it a
  // moment ago.
  void take(const Size& size, const std::function<void(const Host_Session::Window&)>& present);
  // Puts the picture last taken on the screen.
  void show(const Overlay& overlay);

 private:
  void copy(const Presented& presented);

  SDL_Window* window_ = nullptr;
  Surface picture_;
  std::unique_ptr<Text_Painter> text_;
};

}  // namespace kv
