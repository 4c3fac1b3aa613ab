#include "tests/support/heap.h"

#include <climits>
#include <cstdlib>
#include <new>

#include "host/counted.h"

namespace {

heap::Blocks taken, given_back;
int still_granted = INT_MAX;
heap::Refusal refusal = heap::Refusal::by_null;

bool refuses() {
  if (still_granted == INT_MAX) return false;
  if (still_granted == 0) return true;
  --still_granted;
  return false;
}

void* take_language(std::size_t size) noexcept {
  if (refuses()) return nullptr;
  ++taken.language;
  return std::malloc(size != 0 ? size : 1);
}

void* take_language_or_throw(std::size_t size) {
  void* block = take_language(size);
  return block != nullptr ? block : throw std::bad_alloc();
}

void give_language(void* block) {
  if (block != nullptr) ++given_back.language;
  std::free(block);
}

}  // namespace

void* KD_AllocateMemory(std::size_t size, KorvelHeap*) {
  if (refuses()) {
    return refusal == heap::Refusal::by_null ? nullptr : throw std::bad_alloc();
  }
  ++taken.framework;
  return std::malloc(size != 0 ? size : 1);
}

void KD_ReleaseMemory(void* block) {
  if (block != nullptr) ++given_back.framework;
  std::free(block);
}

void* operator new(std::size_t size) {
  return take_language_or_throw(size);
}
void* operator new[](std::size_t size) {
  return take_language_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return take_language(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return take_language(size);
}
void operator delete(void* block) noexcept {
  give_language(block);
}
void operator delete[](void* block) noexcept {
  give_language(block);
}
void operator delete(void* block, std::size_t) noexcept {
  give_language(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  give_language(block);
}

namespace heap {

Blocks allocated() {
  return taken;
}
Blocks live() {
  return taken - given_back;
}

Exhausted::Exhausted(int granted, Refusal how) {
  refusal = how;
  still_granted = granted;
}
Exhausted::~Exhausted() {
  still_granted = INT_MAX;
}

}  // namespace heap
