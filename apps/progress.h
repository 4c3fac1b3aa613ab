// A line on the terminal that tells how far a long job has come.
#pragma once

#include <chrono>
#include <string>

namespace kv {

// Shown on standard error, if that is a terminal, for jobs of more than half a second, and wiped
// out at the end.
class Progress {
 public:
  Progress(std::string noun, int total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void step();

 private:
  using Clock = std::chrono::steady_clock;

  std::string noun_;
  int total_;
  int done_ = 0;
  bool on_terminal_;
  bool shown_ = false;
  Clock::time_point next_;
};

}  // namespace kv
