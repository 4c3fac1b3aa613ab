#include "tests/kvview/screen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace {

[[noreturn]] void become_server(int display_end) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int nowhere = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  const std::string end = std::to_string(display_end);
  execl(XVFB_PROGRAM, "Xvfb", "-displayfd", end.c_str(), "-screen", "0", "800x600x24", "-nolisten",
        "tcp", "-noreset", nullptr);
  _exit(127);
}

}  // namespace

// The server picks a free number and says it once it listens.
Hidden_Screen::Hidden_Screen() {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  server_ = fork();
  if (server_ == 0) become_server(ends[1]);
  close(ends[1]);
  std::string number;
  for (char c; read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("the screen does not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("SDL_VIDEODRIVER", "x11", 1);
}

Hidden_Screen::~Hidden_Screen() {
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

std::string Hidden_Screen::act(const std::string& words) const {
  std::FILE* const pipe = popen((std::string(XDOTOOL_PROGRAM) + " " + words).c_str(), "r");
  if (!pipe) throw std::runtime_error("no pipe");
  std::string output;
  for (int c; (c = fgetc(pipe)) != EOF;) output += static_cast<char>(c);
  if (pclose(pipe) != 0) throw std::runtime_error("xdotool " + words + " failed");
  return output;
}

unsigned long Hidden_Screen::window(const std::string& title) const {
  const std::string number = act("search --sync --onlyvisible --limit 1 --name '" + title + "'");
  act("windowfocus --sync " + number);
  return std::stoul(number);
}

Decoded Hidden_Screen::look_at(unsigned long window) const {
  Display* const display = XOpenDisplay(nullptr);
  if (!display) throw std::runtime_error("the screen is gone");
  XWindowAttributes attributes;
  XGetWindowAttributes(display, window, &attributes);
  const auto width = static_cast<unsigned>(attributes.width);
  const auto height = static_cast<unsigned>(attributes.height);
  XImage* const image = XGetImage(display, window, 0, 0, width, height, AllPlanes, ZPixmap);
  Decoded picture;
  picture.width = width;
  picture.height = height;
  for (int y = 0; y < attributes.height; ++y)
    for (int x = 0; x < attributes.width; ++x) {
      const unsigned long pixel = XGetPixel(image, x, y);
      for (const int shift : {16, 8, 0})
        picture.bytes.push_back(static_cast<std::uint8_t>(pixel >> shift));
    }
  XDestroyImage(image);
  XCloseDisplay(display);
  return picture;
}
