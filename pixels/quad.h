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

// Two channels of each pixel, in the two shorts of its word: (s * a + o * b) / 255.
inline Quad mixed_channels(Quad old, Quad source, Quad a, Quad b) {
  const auto shorts = [](Quad quad) { return reinterpret_cast<Eight_Shorts>(quad); };
  return reinterpret_cast<Quad>(divided_by_255<Eight_Shorts>(
      shorts(source) * shorts(a) + shorts(old) * shorts(b)));
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
  constexpr std::uint32_t even = 0x00FF00FFu;  // blue and red; green and alpha lie between
  const Quad a = (source >> 24) * 0x00010001u;
  const Quad b = even - a;
  const Quad blue_red = quad_detail::mixed_channels(old & even, source & even, a, b);
  const Quad green = quad_detail::mixed_channels((old >> 8) & 255, (source >> 8) & 255, a, b);
  const Quad alpha = (old | ~is_transparent(source)) & opaque_alpha;
  return blue_red | (green << 8) | alpha;
}

}  // namespace zbuffer
