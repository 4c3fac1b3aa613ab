// Runs: stretches of one row that get one value. Everything that stores many equal pixels ends
// here, so that wide stores stand in one place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zbuffer {

namespace run_detail {

using Block __attribute__((vector_size(16))) = std::uint64_t;

template <class Pixel>
Block splat(Pixel value) {
  std::uint64_t word = value;
  for (std::size_t bits = 8 * sizeof(Pixel); bits < 64; bits *= 2) word |= word << bits;
  return Block{word, word};
}

inline void put(void* at, Block block) { std::memcpy(at, &block, sizeof block); }

}  // namespace run_detail

/// Stores `value` into `count` pixels from `to` on; a count of 0 or less stores nothing.
///
/// Whole blocks first, then one block that ends at the last pixel and may overlap the one before:
/// no loop over single pixels is left for runs of a block or more.
template <class Pixel>
inline void fill_run(Pixel* to, std::ptrdiff_t count, Pixel value) {
  using namespace run_detail;
  constexpr std::ptrdiff_t lanes = sizeof(Block) / sizeof(Pixel);
  if (count < lanes) {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = value;
    return;
  }
  const Block block = splat(value);
  Pixel* const last = to + count - lanes;
  for (; to + 4 * lanes <= last; to += 4 * lanes) {
    put(to, block);
    put(to + lanes, block);
    put(to + 2 * lanes, block);
    put(to + 3 * lanes, block);
  }
  for (; to < last; to += lanes) put(to, block);
  put(last, block);
}

}  // namespace zbuffer
