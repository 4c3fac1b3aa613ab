// The event loop: everything runs in one thread, and a picture is drawn when something has changed.
#include "apps/view/viewer.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <new>

#include "apps/commands/command_words.h"
#include "apps/commands/option_words.h"
#include "apps/common/errors.h"
#include "apps/draw/default_module.h"
#include "apps/files/picture_file.h"
#include "apps/view/moves.h"

namespace kv {
namespace {

constexpr int longest_wait_ms = 200;  // also how often the model's file is looked at
constexpr double turns_a_second = 0.1;

std::string title_of(const Options& options) {
  return std::filesystem::path(options.model_path).filename().string() + " - kvview";
}

// The first free name in the working directory.
std::string screenshot_name(const Options& options) {
  const std::string stem = std::filesystem::path(options.model_path).stem().string();
  for (int number = 1;; ++number) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "-%03d.png", number);
    if (!std::filesystem::exists(stem + digits)) return stem + digits;
  }
}

bool asks_for_picture(Uint8 window_event) {
  return window_event == SDL_WINDOWEVENT_EXPOSED || window_event == SDL_WINDOWEVENT_SIZE_CHANGED;
}

std::string key_line(const Key& key) {
  std::string line(key.name);
  line.resize(std::max<std::size_t>(line.size() + 1, 7), ' ');
  return line + std::string(key.words);
}

// The keys in two columns, and the mouse below.
Text_Lines help_text() {
  constexpr std::size_t column = 42;
  Text_Lines all;
  for (const Key& key : all_keys())
    if (!key.words.empty()) all.push_back(key_line(key));
  const std::size_t half = (all.size() + 1) / 2;
  Text_Lines lines(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(half));
  for (std::size_t i = half; i < all.size(); ++i) {
    lines[i - half].resize(column, ' ');
    lines[i - half] += all[i];
  }
  lines.insert(lines.end(), {"", "mouse: drag to turn, with the right button or Shift to move,",
                             "       wheel to zoom"});
  return lines;
}

Text_Lines error_text(const Failure& failure) {
  return {message_of(failure, "kvview")};
}

}  // namespace

Viewer::Viewer(const Options& options)
    : options_(options),
      first_camera_(options.camera),
      watch_(options.model_path),
      picture_(options),
      window_(title_of(options), options.size) {
  warn();
}

template <class Step>
bool Viewer::attempt(Step step) {
  try {
    step();
    return true;
  } catch (const Failure& failure) {
    message_ = error_text(failure);
  } catch (const std::bad_alloc&) {
    message_ = {"kvview: error: there is no memory for it"};
  } catch (const std::exception& error) {
    message_ = {"kvview: error: " + one_line(error.what())};
  }
  return false;
}

void Viewer::run() {
  while (!ends_) {
    SDL_Event event;
    if (!drawn_ || spins_ ? SDL_PollEvent(&event) : SDL_WaitEventTimeout(&event, longest_wait_ms)) {
      do handle(event);
      while (SDL_PollEvent(&event));
    }
    look_at_file();
    turn_by_itself();
    if (drawn_) continue;
    draw();
    show();
  }
}

void Viewer::handle(const SDL_Event& event) {
  switch (event.type) {
    case SDL_QUIT:
      ends_ = true;
      break;
    case SDL_WINDOWEVENT:
      if (asks_for_picture(event.window.event)) drawn_ = false;
      break;
    case SDL_KEYDOWN:
      if (!message_.empty()) drawn_ = false;
      message_.clear();
      handle_key(event.key.keysym);
      break;
    case SDL_MOUSEMOTION:
      handle_motion(event.motion);
      break;
    case SDL_MOUSEWHEEL:
      zoom_at(options_.camera, event.wheel.preciseY, {event.wheel.mouseX, event.wheel.mouseY},
              options_.size);
      drawn_ = false;
      break;
    default:
      break;
  }
}

void Viewer::handle_key(const SDL_Keysym& keysym) {
  std::string name = SDL_GetKeyName(keysym.sym);
  constexpr std::string_view keypad = "Keypad ";
  if (name.starts_with(keypad)) name.erase(0, keypad.size());
  const Key* const key = find_key(name);
  if (!key) return;
  do_task(*key);
  drawn_ = false;
}

void Viewer::do_task(const Key& key) {
  switch (key.task) {
    case Key_Task::change:
      key.change(options_);
      break;
    case Key_Task::reset:
      options_.camera = first_camera_;
      break;
    case Key_Task::spin:
      spins_ = !spins_;
      last_turn_ = Clock::now();
      break;
    case Key_Task::help:
      shows_help_ = !shows_help_;
      break;
    case Key_Task::readout:
      shows_readout_ = !shows_readout_;
      break;
    case Key_Task::screenshot:
      attempt([this] { write_screenshot(); });
      break;
    case Key_Task::reload:
      reload();
      break;
    case Key_Task::quit:
      ends_ = true;
      break;
  }
}

void Viewer::handle_motion(const SDL_MouseMotionEvent& motion) {
  const Window_Point way{motion.xrel, motion.yrel};
  const bool left = (motion.state & SDL_BUTTON_LMASK) != 0;
  const bool other = (motion.state & (SDL_BUTTON_MMASK | SDL_BUTTON_RMASK)) != 0;
  if (!left && !other) return;
  if (other || (SDL_GetModState() & KMOD_SHIFT) != 0)
    pan(options_.camera, way, options_.size);
  else
    orbit(options_.camera, way);
  drawn_ = false;
}

void Viewer::look_at_file() {
  if (Clock::now() - last_look_ < std::chrono::milliseconds(longest_wait_ms)) return;
  last_look_ = Clock::now();
  if (watch_.changed()) reload();
}

void Viewer::turn_by_itself() {
  if (!spins_) return;
  const Clock::time_point now = Clock::now();
  const std::chrono::duration<double> passed = now - last_turn_;
  last_turn_ = now;
  Camera_Options& camera = options_.camera;
  camera.azimuth = std::remainder(camera.azimuth + 360 * turns_a_second * passed.count(), 360);
  camera.azimuth = std::round(camera.azimuth * 1000) / 1000;
  drawn_ = false;
}

void Viewer::reload() {
  message_ = {"loading ..."};
  show();
  message_.clear();
  if (attempt([this] { picture_.reload(options_); })) warn();
  drawn_ = false;
}

void Viewer::warn() {
  for (const std::string& warning : picture_.warnings())
    message_.push_back("warning: " + one_line(warning));
}

void Viewer::write_screenshot() {
  if (!draw()) return;
  const std::string name = screenshot_name(options_);
  write_picture_file(name, picture_.read());
  std::vector<std::string> words = {"kvdraw", options_.model_path, "-o", name};
  for (std::string& word : command_words(drawable(options_))) words.push_back(std::move(word));
  if (options_.module_path != default_module())
    words.insert(words.end(), {"--module", options_.module_path});
  std::printf("%s\n", shell_line(words).c_str());
  std::fflush(stdout);
  message_ = {"written: " + name};
}

bool Viewer::draw() {
  const Clock::time_point start = Clock::now();
  options_.size = window_.size();
  const bool done = attempt([&] {
    picture_.draw(drawable(options_));
    window_.take(options_.size, [this](const auto& take) { picture_.present(take); });
  });
  drawn_ = true;
  frame_time_ = Clock::now() - start;
  return done;
}

void Viewer::show() {
  Overlay overlay;
  if (shows_readout_) overlay.readout = readout();
  if (shows_help_) overlay.help = help_text();
  overlay.message = message_;
  window_.show(overlay);
}

Text_Lines Viewer::readout() const {
  char time[64], camera[128];
  std::snprintf(time, sizeof time, "%.1f ms a frame, %zu triangles", frame_time_.count(),
                picture_.triangles());
  std::snprintf(camera, sizeof camera, "azimuth %g, elevation %g, zoom %.3g",
                options_.camera.azimuth, options_.camera.elevation, options_.camera.zoom);
  return {time,
          words::word_for(words::styles, options_.drawing.style) + ", " +
              words::word_for(words::variants, options_.variant) + ", " + text_of(options_.size),
          camera, "H: help"};
}

}  // namespace kv
