// Four neighbouring pixels as one vector, a 32-bit word each: colours, palette indices or depths.
// Conditions are words of all ones or all zeros. The operations exist for a single word as well,
// so that what happens to a pixel can be written once for both.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/pixels/blend_255.h"

namespace zbuffer {

using Quad __attribute__((vector_size(16))) = std::uint32_t;
inline constexpr std::ptrdiff_t quad_size = 4;

namespace quad_detail {

using Signed_Quad __attribute__((vector_size(16))) = std::int32_t;
using Halves __attribute__((vector_size(16))) = std::uint64_t;
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
  return reinterpret_cast<Quad>(
      mixed_255<Eight_Shorts>(shorts(source), shorts(a), shorts(old), shorts(b)));
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
  const auto elements = __builtin_convertvector(quad, typename quad_detail::Narrow<Element>::Type);
  std::memcpy(to, &elements, sizeof elements);
}

/// Loads and stores all four pixels.
struct Whole_Quad {
  template <class Element>
  Quad load(const Element* from) const {
    return load_quad(from);
  }
  template <class Element>
  void store(Element* to, Quad quad) const {
    store_quad(to, quad);
  }
};

/// Loads and stores the first one to three; the other words have no meaning. The last one is
/// loaded again in their place, and stored first: that costs less than a branch on the count.
struct Part_Of_Quad {
  int count;

  template <class Element>
  Quad load(const Element* from) const {
    return Quad{element(from), element(from + std::min(count - 1, 1)), element(from + count - 1),
                0};
  }
  template <class Element>
  void store(Element* to, Quad quad) const {
    to[count - 1] = static_cast<Element>(quad[2]);
    to[std::min(count - 1, 1)] = static_cast<Element>(quad[1]);
    to[0] = static_cast<Element>(quad[0]);
  }

 private:
  template <class Element>
  static Element element(const Element* from) {
    Element value;
    std::memcpy(&value, from, sizeof value);
    return value;
  }
};

template <class Number>
Number select(Number condition, Number yes, Number no) {
  return (yes & condition) | (no & ~condition);
}

/// Where a <= b, for words below 2^31.
inline Quad at_most(Quad a, Quad b) {
  using quad_detail::Signed_Quad;
  return reinterpret_cast<Quad>(reinterpret_cast<Signed_Quad>(a) <=
                                reinterpret_cast<Signed_Quad>(b));
}

inline std::uint32_t at_most(std::uint32_t a, std::uint32_t b) {
  return a <= b ? ~0u : 0u;
}

/// Where a word is 0.
inline Quad is_zero(Quad words) {
  return reinterpret_cast<Quad>(words == Quad{});
}
inline std::uint32_t is_zero(std::uint32_t word) {
  return word == 0 ? ~0u : 0u;
}

/// Whether a condition holds nowhere.
inline bool is_nowhere(Quad condition) {
  using quad_detail::Halves;
  const Halves halves = reinterpret_cast<Halves>(condition);
  return (halves[0] | halves[1]) == 0;
}

/// Where the alpha byte of a colour is 0.
template <class Number>
Number is_transparent(Number colors) {
  return is_zero(colors >> 24);
}

/// Each source colour by its own alpha: 255 gives the source, 0 the old pixel, and any other a
/// blend with an alpha byte of 255.
inline Quad blended_by_source(Quad old, Quad source) {
  const Quad a = (source >> 24) * 0x00010001u;
  const Quad b = outer_channels - a;
  const Quad blue_red =
      quad_detail::mixed_channels(old & outer_channels, source & outer_channels, a, b);
  const Quad green = quad_detail::mixed_channels((old >> 8) & 255, (source >> 8) & 255, a, b);
  const Quad alpha = (old | ~is_transparent(source)) & opaque_alpha;
  return blue_red | (green << 8) | alpha;
}

/// A number that steps from pixel to pixel, for any four neighbouring pixels.
class Quad_Line {
 public:
  // Multiples of 0 to 3 by masks: there is no fast vector product of words.
  Quad_Line(std::uint32_t at, std::uint32_t step) : step_(step) {
    const Quad steps = Quad{} + step;
    first_ = (steps & Quad{0, ~0u, 0, ~0u}) + ((steps + steps) & Quad{0, 0, ~0u, ~0u}) + at;
  }

  /// Pixels `i` to `i` + 3.
  Quad at(std::int32_t i) const { return first_ + static_cast<std::uint32_t>(i) * step_; }

 private:
  Quad first_;
  std::uint32_t step_;
};

/// The same, from four pixels to the next four.
class Quad_Steps {
 public:
  Quad_Steps(std::uint32_t at, std::uint32_t step)
      : at_(Quad_Line(at, step).at(0)), step_(Quad{} + step * 4) {}

  Quad at() const { return at_; }
  void advance() { at_ += step_; }

 private:
  Quad at_;
  Quad step_;
};

}  // namespace zbuffer
