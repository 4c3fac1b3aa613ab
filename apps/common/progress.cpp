// The progress line: nothing is written before the job has taken half a second.
#include "apps/common/progress.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace kv {
namespace {

constexpr std::chrono::milliseconds patience{500}, interval{100};
constexpr const char* wipe = "\r\033[K";  // to the start of the line, then clear it

}  // namespace

Progress::Progress(std::string noun, int total)
    : noun_(std::move(noun)),
      total_(total),
      on_terminal_(isatty(STDERR_FILENO) == 1),
      begin_(Clock::now()),
      next_(begin_ + patience) {}

Progress::Progress(std::string what) : Progress(std::move(what), 0) {}

Progress::~Progress() {
  if (shown_) std::fputs(wipe, stderr);
}

bool Progress::is_due() {
  if (!on_terminal_ || Clock::now() < next_) return false;
  next_ = Clock::now() + interval;
  shown_ = true;
  return true;
}

void Progress::still_at_it() {
  if (!is_due()) return;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin_);
  std::fprintf(stderr, "%s%s, %d s", wipe, noun_.c_str(), static_cast<int>(seconds.count()));
}

void Progress::step() {
  ++done_;
  if (!is_due()) return;
  std::fprintf(stderr, "%s%s %d of %d (%d %%)", wipe, noun_.c_str(), done_, total_,
               static_cast<int>(100LL * done_ / total_));
}

}  // namespace kv
