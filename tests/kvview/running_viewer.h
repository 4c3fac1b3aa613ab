// kvview at work on a model.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class Running_Viewer {
 public:
  Running_Viewer(const std::string& folder, const std::vector<std::string>& arguments);
  ~Running_Viewer();
  Running_Viewer(const Running_Viewer&) = delete;
  Running_Viewer& operator=(const Running_Viewer&) = delete;

  // The next line that it writes on its standard output; empty when none comes in time.
  std::string next_line();
  // Waits for its end. A signal that ended it is told as a negative number.
  int exit_code();

 private:
  pid_t pid_ = -1;
  int output_ = -1;
};
