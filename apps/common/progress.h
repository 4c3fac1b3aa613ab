// A line on the terminal that shows the progress of a long job.
#pragma once

#include <chrono>
#include <string>

namespace kv {

// Shown on standard error, if that is a terminal, for jobs of more than half a second, and wiped
// out at the end.
class Progress {
 public:
  Progress(std::string noun, int total);
  // Of a job without steps; `still_at_it` shows how long it has taken.
  explicit Progress(std::string what);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void step();
  void still_at_it();

 private:
  using Clock = std::chrono::steady_clock;

  bool is_due();

  std::string noun_;
  int total_;  // 0: unknown
  int done_ = 0;
  bool on_terminal_;
  bool shown_ = false;
  Clock::time_point begin_;
  Clock::time_point next_;
};

}  // namespace kv
