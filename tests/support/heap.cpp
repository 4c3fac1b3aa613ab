// Counts and refuses allocations of the framework's heap and of the language's.
#include "tests/support/heap.h"

#include <cstdlib>
#include <new>

#include "host/counted.h"

namespace {

long taken = 0, returned = 0, still_refused = 0, refused = 0;
int still_granted = INT_MAX;
heap::Refusal refusal = heap::Refusal::by_null;

void* take(std::size_t size, heap::Refusal how) {
  if (still_granted == 0 && still_refused > 0) {
    --still_refused, ++refused;
    return how == heap::Refusal::by_null ? nullptr : throw std::bad_alloc();
  }
  if (still_granted != 0 && still_granted != INT_MAX) --still_granted;
  ++taken;
  return std::malloc(size != 0 ? size : 1);
}

void give_back(void* block) {
  if (block != nullptr) ++returned;
  std::free(block);
}

}  // namespace

void* KD_AllocateMemory(std::size_t size, KorvelHeap*) {
  return take(size, refusal);
}
void KD_ReleaseMemory(void* block) {
  give_back(block);
}
void* operator new(std::size_t size) {
  return take(size, heap::Refusal::by_exception);
}
void* operator new[](std::size_t size) {
  return take(size, heap::Refusal::by_exception);
}
// Library algorithms that can do without ask this way; the rest of the family goes with it.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return take(size, heap::Refusal::by_null);
}
void operator delete(void* block) noexcept {
  give_back(block);
}
void operator delete[](void* block) noexcept {
  give_back(block);
}
void operator delete(void* block, std::size_t) noexcept {
  give_back(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  give_back(block);
}

namespace heap {

long allocated() {
  return taken;
}
long live() {
  return taken - returned;
}
Exhausted::Exhausted(int granted, Refusal how, long refusals) {
  refusal = how;
  still_granted = granted;
  still_refused = refusals;
  ::refused = 0;
}
bool Exhausted::refused() const {
  return ::refused != 0;
}
Exhausted::~Exhausted() {
  still_granted = INT_MAX;
}

}  // namespace heap
