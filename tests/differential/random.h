// The one source of chance: everything about a call follows from its seed.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

namespace fuzz {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  std::uint64_t word() { return engine_(); }
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(word() % count); }
  /// Uniform over `low` to `high`, both included.
  int range(int low, int high) {
    const auto count = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(word() % count));
  }
  std::uint8_t byte(int low = 0, int high = 255) {
    return static_cast<std::uint8_t>(range(low, high));
  }
  float real(float low, float high) {
    return low + (high - low) * static_cast<float>(range(0, 4096)) / 4096;
  }
  /// True once in `n` times.
  bool once_in(int n) { return range(1, n) == 1; }
  template <class Value>
  Value pick(std::initializer_list<Value> values) {
    return values.begin()[range(0, static_cast<int>(values.size()) - 1)];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace fuzz
