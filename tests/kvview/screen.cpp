// An X server without a monitor, driven by xdotool and looked at through Xlib.
#include "tests/kvview/screen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <stdlib.h>

#include <cstdio>
#include <stdexcept>

// The server picks a free number and writes it once it listens.
Hidden_Screen::Hidden_Screen()
    : server_("/", {"/bin/sh", "-c",
                    "exec " XVFB_PROGRAM
                    " -displayfd 1 -screen 0 800x600x24 -nolisten tcp -noreset 2>/dev/null"}) {
  const std::string number = server_.next_line();
  if (number.empty()) throw std::runtime_error("the screen does not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("SDL_VIDEODRIVER", "x11", 1);
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
  Decoded picture{
      static_cast<unsigned>(attributes.width), static_cast<unsigned>(attributes.height), {}};
  XImage* const image =
      XGetImage(display, window, 0, 0, picture.width, picture.height, AllPlanes, ZPixmap);
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
