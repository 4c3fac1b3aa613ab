// Random values of a test, all from one seed.
#pragma once

#include "host/types.h"
#include "tests/differential/random.h"

namespace support {

struct Random : fuzz::Random {
  using fuzz::Random::Random;
  double real(double low, double high) { return low + (high - low) * (word() / 4294967296.0); }
  std::uint32_t word() { return static_cast<std::uint32_t>(fuzz::Random::word()); }
  KT_RGB32 color() { return KT_RGB32::from_word(word()); }
};

}  // namespace support
