// The framework's two global objects.
#pragma once

#include <atomic>

#include "host/types.h"

class KORVEL_EXPORT Korvel_Global {
 public:
  std::atomic<std::uint32_t> next_id{0};
  /// Pattern bits by `face_pattern` 0 to 73: 8 by 8 pixels, one byte a row, least significant
  /// bit leftmost. Entry 0 is all set bits, entry 64 all clear.
  const std::uint8_t* face_pattern_table[74];

  Korvel_Global();
};

class Korvel_Shared {
 public:
  std::uint16_t dither_table[64];  ///< 8 by 8 thresholds, row-major
};

extern KORVEL_EXPORT Korvel_Global KORVEL;
extern KORVEL_EXPORT const Korvel_Shared SHARED;
