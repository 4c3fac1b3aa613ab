// Four neighbouring pixels as one vector, a 32-bit word each: colours, palette indices or depths.
// Conditions are words of all ones or all zeros.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixels/blend.h"

namespace zbuffer {

using Quad __attribute__((vector_size(16))) = std::uint32_t;
inline constexpr std::ptrdiff_t quad_size = 4;

namespace quad_detail {

using Signed_Quad __attribute__((vector_size(16))) = std::int32_t;
using Four_Bytes __attribute__((vector_size(4))) = std::uint8_t;
using Four_Shorts __attribute__((vector_size(8))) = std::uint16_t;
using Eight_Bytes __attribute__((vector_size(8))) = std::uint8_t;
using Eight_Shorts __attribute__((vector_size(16))) = std::uint16_t;

template <class Element>
struct Narrow;
template <>
struct Narrow<std::uint8_t> {
  using Type = Four_Bytes;
};
template <>
struct Narrow<std::uint16_t> {
  using Type = Four_Shorts;
};
template <>
struct Narrow<std::uint32_t> {
  using Type = Quad;
};

// Two pixels, a channel in each short.
inline Eight_Shorts blended_pair(Eight_Bytes old_bytes, Eight_Bytes source_bytes) {
  const auto old = __builtin_convertvector(old_bytes, Eight_Shorts);
  const auto source = __builtin_convertvector(source_bytes, Eight_Shorts);
  const Eight_Shorts a = __builtin_shufflevector(source, source, 3, 3, 3, 3, 7, 7, 7, 7);
  return divided_by_255<Eight_Shorts>(source * a + old * (255 - a));
}

}  // namespace quad_detail

/// The four elements from `from` on, which need not be aligned.
template <class Element>
Quad load_quad(const Element* from) {
  typename quad_detail::Narrow<Element>::Type elements;
  std::memcpy(&elements, from, sizeof elements);
  return __builtin_convertvector(elements, Quad);
}

/// Stores the low bits of each word.
template <class Element>
void store_quad(Element* to, Quad quad) {
  const auto elements =
      __builtin_convertvector(quad, typename quad_detail::Narrow<Element>::Type);
  std::memcpy(to, &elements, sizeof elements);
}

inline Quad select(Quad condition, Quad yes, Quad no) {
  return (yes & condition) | (no & ~condition);
}

/// Where a <= b, for words below 2^31.
inline Quad at_most(Quad a, Quad b) {
  using quad_detail::Signed_Quad;
  return reinterpret_cast<Quad>(reinterpret_cast<Signed_Quad>(a) <=
                                reinterpret_cast<Signed_Quad>(b));
}

/// Where the alpha byte of a colour is 0.
inline Quad is_transparent(Quad colors) {
  return reinterpret_cast<Quad>((colors >> 24) == Quad{});
}

/// Each source colour by its own alpha: 255 gives the source, 0 the old pixel, and any other a
/// blend with an alpha byte of 255.
inline Quad blended_by_source(Quad old, Quad source) {
  using namespace quad_detail;
  Eight_Bytes olds[2], sources[2];
  std::memcpy(olds, &old, sizeof old);
  std::memcpy(sources, &source, sizeof source);
  Eight_Bytes blended[2];
  for (std::size_t i = 0; i < 2; ++i) {
    blended[i] = __builtin_convertvector(blended_pair(olds[i], sources[i]), Eight_Bytes);
  }
  Quad colors;
  std::memcpy(&colors, blended, sizeof colors);
  const Quad alpha = old | ~is_transparent(source);
  return (colors & ~opaque_alpha) | (alpha & opaque_alpha);
}

}  // namespace zbuffer
