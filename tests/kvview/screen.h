// A screen without a monitor, and a user at its keyboard and mouse.
#pragma once

#include <string>

#include "tests/apps/decoded.h"
#include "tests/kvview/running_program.h"

// Programs in this process's environment find the screen while it exists.
class Hidden_Screen {
 public:
  Hidden_Screen();

  // Waits for the window of this title, gives it the keyboard, and returns its number.
  unsigned long window(const std::string& title) const;
  // The user, in the words of xdotool.
  std::string act(const std::string& words) const;
  // What a window shows.
  Decoded look_at(unsigned long window) const;

 private:
  Running_Program server_;
};
