// The heap, and what every framework object has from its two root classes.
#include <cstdlib>
#include <new>

#include "host/counted.h"
#include "host/global.h"

// The stand-in has the default heap alone; every handle on a heap means it.
void* KD_AllocateMemory(std::size_t size, KorvelHeap*) {
  return std::malloc(size != 0 ? size : 1);
}

void KD_ReleaseMemory(void* block) {
  std::free(block);
}

KT_Object::~KT_Object() = default;

void* KT_Object::operator new(std::size_t size) {
  void* block = KD_AllocateMemory(size, nullptr);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void KT_Object::operator delete(void* block) {
  KD_ReleaseMemory(block);
}

KT_Counted::KT_Counted() : id(korvel::fresh_id()) {}

// A copy is a record of its own: nobody holds it yet, and caches must tell it from its source.
KT_Counted::KT_Counted(const KT_Counted&) : KT_Object(), id(korvel::fresh_id()) {}

KT_Counted::~KT_Counted() = default;
