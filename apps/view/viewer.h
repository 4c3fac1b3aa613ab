// The viewer at work: events come in, options change, pictures are drawn.
#pragma once

#include <SDL.h>

#include <chrono>
#include <string>

#include "apps/commands/options.h"
#include "apps/view/keys.h"
#include "apps/view/shown_picture.h"
#include "apps/view/watch.h"
#include "apps/view/window.h"

namespace kv {

class Viewer {
 public:
  // Loads the model before anything is shown.
  explicit Viewer(const Options& options);

  // Until the user ends it.
  void run();

 private:
  using Clock = std::chrono::steady_clock;

  void handle(const SDL_Event& event);
  void handle_key(const SDL_Keysym& key);
  void do_task(const Key& key);
  void handle_motion(const SDL_MouseMotionEvent& motion);
  void look_at_file();
  void turn_by_itself();
  void reload();
  void warn();
  void write_screenshot();
  bool draw();
  void show();
  // Runs a step that may fail; the failure is shown, and the window stays.
  template <class Step>
  bool attempt(Step step);
  Text_Lines readout() const;

  Options options_;
  Camera_Options first_camera_;
  File_Watch watch_;
  Live_Picture picture_;
  View_Window window_;
  Clock::time_point last_look_ = Clock::now(), last_turn_;
  std::chrono::duration<double, std::milli> frame_time_{};
  Text_Lines message_;
  bool drawn_ = false;  // nothing has changed since
  bool spins_ = false, shows_help_ = false, shows_readout_ = true, ends_ = false;
};

}  // namespace kv
