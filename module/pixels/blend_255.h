// The blend of faces and images, in 255ths.
//
//   new = (s * a + d * (255 - a)) / 255     per channel, truncated
//
// A `Constant_Blend_255` holds what of this is constant for a colour, with a factor of its own for
// the alpha byte, so that storing, blending with either treatment of the alpha byte, and leaving
// the pixel alone are the same pixel operation with other numbers, and no pixel tests which it is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zbuffer {

/// x / 255, truncated, for x up to 255 * 255: x/255 = x/256 + x/256^2 + ..., and the error of the
/// first two terms never reaches the next whole number in this range.
template <class Number>
constexpr Number divided_by_255(Number x) {
  return static_cast<Number>((x + 1 + (x >> 8)) >> 8);
}

/// s * a + d * b in 255ths, for factors a and b that add up to 255.
template <class Number>
constexpr Number mixed_255(Number s, Number a, Number d, Number b) {
  return divided_by_255<Number>(s * a + d * b);
}

constexpr std::uint32_t opaque_alpha = 0xFF000000u;
/// Blue and red of a word; green and alpha lie between them.
constexpr std::uint32_t outer_channels = 0x00FF00FFu;

constexpr std::uint32_t byte_of(std::uint32_t word, int index) {
  return (word >> (8 * index)) & 255;
}
constexpr std::uint32_t alpha_of(std::uint32_t word) {
  return word >> 24;
}

/// What becomes of a colour with an alpha byte.
enum class Alpha_Rule : std::uint8_t {
  store,            ///< the word as it stands
  blend,            ///< always blended; the pixel's alpha becomes 255
  by_alpha,         ///< 255 stores the word, 0 does nothing, others blend; alpha becomes 255
  by_alpha_keeping  ///< the same, but a blended pixel keeps its alpha byte
};

class Constant_Blend_255 {
 public:
  static constexpr bool branch_free = true;

  /// The pixel operation of `word` under `rule`.
  constexpr Constant_Blend_255(std::uint32_t word, Alpha_Rule rule) {
    const std::uint32_t a = alpha_of(word);
    const bool by_alpha = rule == Alpha_Rule::by_alpha || rule == Alpha_Rule::by_alpha_keeping;
    if (rule == Alpha_Rule::store || (by_alpha && a == 255)) {
      set(word, 255, 255, byte_of(word, 3));
    } else if (by_alpha && a == 0) {
      set(word, 0, 0, 0);
    } else if (rule == Alpha_Rule::by_alpha_keeping) {
      set(word, a, 0, 0);
    } else {
      set(word, a, 255, 255);
    }
  }

  /// The new pixel; the source repeats the colour that the blend was made with.
  constexpr std::uint32_t operator()(std::uint32_t old, std::uint32_t) const {
    std::uint32_t result = 0;
    for (int i = 0; i < 4; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const std::uint32_t sum = added_[at] + byte_of(old, i) * kept_[at];
      result |= divided_by_255(sum) << (8 * i);
    }
    return result;
  }

  /// Replaces `count` pixels from `to` on, four at a time.
  void run(std::uint32_t* to, std::ptrdiff_t count, const auto&) const {
    const Shorts added = doubled(added_);
    const Shorts kept = doubled(kept_);
    for (; count >= 4; count -= 4, to += 4) {
      Bytes pixels[2];
      std::memcpy(pixels, to, sizeof pixels);
      for (Bytes& pair : pixels) {
        const Shorts sum = __builtin_convertvector(pair, Shorts) * kept + added;
        pair = __builtin_convertvector((sum + 1 + (sum >> 8)) >> 8, Bytes);
      }
      std::memcpy(to, pixels, sizeof pixels);
    }
    for (; count > 0; --count, ++to) *to = (*this)(*to, 0);
  }

 private:
  using Bytes __attribute__((vector_size(8))) = std::uint8_t;
  using Shorts __attribute__((vector_size(16))) = std::uint16_t;

  // Colours take part by `a`; the alpha byte keeps 1 - `alpha_share` / 255 of itself.
  constexpr void set(std::uint32_t word, std::uint32_t a, std::uint32_t alpha_share,
                     std::uint32_t alpha) {
    for (int i = 0; i < 3; ++i) {
      added_[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(byte_of(word, i) * a);
      kept_[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(255 - a);
    }
    added_[3] = static_cast<std::uint16_t>(alpha * alpha_share);
    kept_[3] = static_cast<std::uint16_t>(255 - alpha_share);
  }

  static Shorts doubled(const std::array<std::uint16_t, 4>& of) {
    return Shorts{of[0], of[1], of[2], of[3], of[0], of[1], of[2], of[3]};
  }

  std::array<std::uint16_t, 4> added_{};  // colour times alpha
  std::array<std::uint16_t, 4> kept_{};   // factor of the old pixel
};

/// A pixel whose colour and alpha both change from pixel to pixel: `by_alpha` or
/// `by_alpha_keeping`.
template <Alpha_Rule rule>
constexpr std::uint32_t blended_by_source(std::uint32_t old, std::uint32_t source) {
  static_assert(rule == Alpha_Rule::by_alpha || rule == Alpha_Rule::by_alpha_keeping);
  const std::uint32_t a = alpha_of(source);
  const std::uint32_t b = 255 - a;
  const auto channel = [&](int i) {
    return mixed_255(byte_of(source, i), a, byte_of(old, i), b) << (8 * i);
  };
  const std::uint32_t color = channel(0) | channel(1) | channel(2);
  const std::uint32_t keeps = rule == Alpha_Rule::by_alpha ? a == 0 : a != 255;
  return color | (keeps ? old & opaque_alpha : opaque_alpha);
}

/// The same as a blend.
template <Alpha_Rule rule>
struct Source_Blend_255 {
  static constexpr bool branch_free = true;

  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return blended_by_source<rule>(old, source);
  }
};

}  // namespace zbuffer
