// Counts for tests and hosts; the message appears once a routine.
#include "stand_in/standard/undrawn.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <set>
#include <string_view>

#include "host/application.h"

namespace {

std::atomic<unsigned> undrawn_count{0};

}  // namespace

namespace stand_in {

void report_undrawn(const char* routine) {
  static std::mutex mutex;
  static std::set<std::string_view> reported;

  undrawn_count.fetch_add(1, std::memory_order_relaxed);
  const std::lock_guard lock(mutex);
  if (reported.insert(routine).second) {
    std::fprintf(stderr, "korvel12: %s found no action of the renderer to draw with\n", routine);
  }
}

}  // namespace stand_in

unsigned KD_Undrawn_Count() {
  return undrawn_count.load(std::memory_order_relaxed);
}

void KD_Reset_Undrawn_Count() {
  undrawn_count.store(0, std::memory_order_relaxed);
}
