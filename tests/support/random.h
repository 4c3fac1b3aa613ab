// Random values of a test, all from one seed.
#pragma once

#include <random>

#include "host/types.h"

namespace support {

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  /// A whole number from `low` to `high`, both included, however far apart.
  int range(int low, int high) {
    const auto count = static_cast<unsigned>(high) - static_cast<unsigned>(low) + 1;
    return static_cast<int>(static_cast<unsigned>(low) +
                            (count == 0 ? word() : static_cast<unsigned>(word()) % count));
  }
  double real(double low, double high) { return low + (high - low) * (word() / 4294967296.0); }
  std::uint32_t word() { return static_cast<std::uint32_t>(engine_()); }
  KT_RGB32 color() { return KT_RGB32::from_word(word()); }

 private:
  std::mt19937 engine_;
};

}  // namespace support
