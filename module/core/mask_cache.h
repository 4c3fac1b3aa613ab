// The cache of clip masks: up to four masks, most recently used first, owned by the cache and
// shared between renderers through the option "Mask Cache".
#pragma once

#include "host/framework.h"

class Mask_Cache_Data : public KT_Counted {
 public:
  Frame_Buffer_Mask* head = nullptr;  ///< most recently used, null when empty
  Frame_Buffer_Mask* tail = nullptr;  ///< least recently used
  std::int32_t count = 0;
  std::int32_t capacity = 4;

  Mask_Cache_Data() = default;
  ~Mask_Cache_Data() override;
  /// Shares the list: a shallow copy, which in practice nothing makes.
  Mask_Cache_Data* clone() const override;

  /// Destroys all masks, from the head on.
  void clear();

 private:
  Mask_Cache_Data(const Mask_Cache_Data&) = default;
};

using Mask_Cache = KT_Handle<Mask_Cache_Data>;
