#include "apps/progress.h"

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
      next_(Clock::now() + patience) {}

Progress::~Progress() {
  if (shown_) std::fputs(wipe, stderr);
}

void Progress::step() {
  ++done_;
  if (!on_terminal_ || Clock::now() < next_) return;
  next_ = Clock::now() + interval;
  shown_ = true;
  std::fprintf(stderr, "%s%s %d of %d (%d %%)", wipe, noun_.c_str(), done_, total_,
               static_cast<int>(100LL * done_ / total_));
}

}  // namespace kv
