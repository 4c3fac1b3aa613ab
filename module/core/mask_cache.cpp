// The cache of clip masks owns its list: masks are deleted with it and by `clear`. Which mask is
// at its head is decided in pixels/mask.cpp.
#include "module/core/mask_cache.h"

Mask_Cache_Data::~Mask_Cache_Data() {
  clear();
}

Mask_Cache_Data* Mask_Cache_Data::clone() const {
  return new Mask_Cache_Data(*this);
}

void Mask_Cache_Data::clear() {
  for (Frame_Buffer_Mask* mask = head; mask != nullptr;) {
    Frame_Buffer_Mask* following = mask->next;
    delete mask;
    mask = following;
  }
  head = nullptr;
  tail = nullptr;
  count = 0;
}
