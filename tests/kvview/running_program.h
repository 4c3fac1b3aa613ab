// A program at work whose lines are read as they come.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class Running_Program {
 public:
  // In this folder; `words` begins with the program. It ends with this process.
  Running_Program(const std::string& folder, const std::vector<std::string>& words);
  ~Running_Program();
  Running_Program(const Running_Program&) = delete;
  Running_Program& operator=(const Running_Program&) = delete;

  // The next line that it writes on its standard output; empty when none comes in time.
  std::string next_line() const;
  // Waits for its end; negative when a signal ended it.
  int exit_code();

 private:
  pid_t pid_ = -1;
  int output_ = -1;
};
