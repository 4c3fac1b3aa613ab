#include "tests/stand_in/watched_heap.h"

#include <atomic>
#include <climits>
#include <cstdlib>

#include "host/counted.h"

namespace {

std::atomic<int> allocated{0};
std::atomic<int> live{0};
std::atomic<int> still_granted{INT_MAX};

}  // namespace

void* KD_AllocateMemory(std::size_t size, KorvelHeap*) {
  if (still_granted == 0) return nullptr;
  if (still_granted != INT_MAX) --still_granted;
  ++allocated;
  ++live;
  return std::malloc(size);
}

void KD_ReleaseMemory(void* block) {
  if (block == nullptr) return;
  --live;
  std::free(block);
}

namespace watched_heap {

int allocations() {
  return allocated;
}
int live_blocks() {
  return live;
}

Exhausted::Exhausted(int granted) {
  still_granted = granted;
}
Exhausted::~Exhausted() {
  still_granted = INT_MAX;
}

}  // namespace watched_heap
