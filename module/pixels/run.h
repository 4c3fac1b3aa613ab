// Runs: stretches of one row that get one value. Everything that stores many equal pixels calls
// these functions, so that wide stores are in one place.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/pixels/quad.h"

namespace zbuffer {

namespace run_detail {

using Block __attribute__((vector_size(16))) = std::uint64_t;

/// The value as often as it fits into 64 bits.
template <class Pixel>
constexpr std::uint64_t repeated(Pixel value) {
  std::uint64_t word = value;
  for (std::size_t bits = 8 * sizeof(Pixel); bits < 64; bits *= 2) word |= word << bits;
  return word;
}

inline void put(void* at, Block block) {
  std::memcpy(at, &block, sizeof block);
}

/// Fills with `head`, repeated from the first pixel on; `tail` is the same pattern as it falls on
/// the last block.
///
/// Groups of four blocks first, then one group that ends at the last pixel and may overlap the one
/// before. Neighbouring rows of a triangle then take the same branches mostly, and no loop over
/// single pixels is left for runs of a block or more.
template <class Pixel>
inline void fill_blocks(Pixel* to, std::ptrdiff_t count, std::uint64_t head, std::uint64_t tail) {
  constexpr std::ptrdiff_t block = sizeof(Block) / sizeof(Pixel);
  constexpr std::ptrdiff_t group = 4 * block;
  const Block first{head, head};
  const Block last{tail, tail};
  Pixel* const end = to + count;
  if (count < group) {
    put(to, first);
    if (count > 2 * block) {
      put(to + block, first);
      put(end - 2 * block, last);
    }
    put(end - block, last);
    return;
  }
  for (; to < end - group; to += group) {
    for (int i = 0; i < 4; ++i) put(to + i * block, first);
  }
  for (int i = 4; i > 0; --i) put(end - i * block, last);
}

}  // namespace run_detail

/// Stores `value` into `count` pixels from `to` on; a count of 0 or less stores nothing.
template <class Pixel>
inline void fill_run(Pixel* to, std::ptrdiff_t count, Pixel value) {
  constexpr auto block = static_cast<std::ptrdiff_t>(sizeof(run_detail::Block) / sizeof(Pixel));
  if (count < block) {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = value;
    return;
  }
  const std::uint64_t word = run_detail::repeated(value);
  run_detail::fill_blocks(to, count, word, word);
}

/// Fills bytes with eight that repeat by address: a byte at an address of low bits k takes byte k
/// of `by_address`.
inline void fill_by_address(std::uint8_t* to, std::ptrdiff_t count, std::uint64_t by_address) {
  const auto phase = static_cast<int>(reinterpret_cast<std::uintptr_t>(to) & 7);
  const std::uint64_t word = std::rotr(by_address, 8 * phase);
  if (count < static_cast<std::ptrdiff_t>(sizeof(run_detail::Block))) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      to[i] = static_cast<std::uint8_t>(word >> (8 * (i & 7)));
    }
    return;
  }
  run_detail::fill_blocks(to, count, word, std::rotr(word, 8 * static_cast<int>(count & 7)));
}

namespace run_detail {

// All bits of pixel i set where bit i of the index is.
inline constexpr auto quad_masks = [] {
  std::array<std::array<std::uint32_t, 4>, 16> masks{};
  for (std::size_t bits = 0; bits < 16; ++bits) {
    for (std::size_t i = 0; i < 4; ++i) masks[bits][i] = (bits >> i) & 1 ? ~0u : 0;
  }
  return masks;
}();

// All bits of byte i set where bit i of `bits` is: each byte picks its bit, and whatever is not
// zero is spread over the byte.
constexpr std::uint64_t byte_mask(std::uint64_t bits) {
  const std::uint64_t picked = (bits & 255) * 0x0101010101010101u & 0x8040201008040201u;
  const std::uint64_t ones = ((picked + 0x7F7F7F7F7F7F7F7Fu) | picked) >> 7 & 0x0101010101010101u;
  return ones * 255;
}

}  // namespace run_detail

/// Stores `value` into those of `count` pixels whose bit is set, bit 0 being the first; at most 64.
inline void fill_bits(std::uint32_t* to, std::int32_t count, std::uint64_t bits,
                      std::uint32_t value) {
  const Quad filled{value, value, value, value};
  for (; count >= 4; count -= 4, to += 4, bits >>= 4) {
    const Quad mask = load_quad(run_detail::quad_masks[bits & 15].data());
    store_quad(to, select(mask, filled, load_quad(to)));
  }
  for (; count > 0; --count, ++to, bits >>= 1) {
    if (bits & 1) *to = value;
  }
}

inline void fill_bits(std::uint8_t* to, std::int32_t count, std::uint64_t bits,
                      std::uint8_t value) {
  const std::uint64_t filled = run_detail::repeated(value);
  for (; count >= 8; count -= 8, to += 8, bits >>= 8) {
    const std::uint64_t mask = run_detail::byte_mask(bits);
    std::uint64_t word;
    std::memcpy(&word, to, sizeof word);
    word = select(mask, filled, word);
    std::memcpy(to, &word, sizeof word);
  }
  for (; count > 0; --count, ++to, bits >>= 1) {
    if (bits & 1) *to = value;
  }
}

}  // namespace zbuffer
