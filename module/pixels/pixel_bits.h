// Pixel bits: which pixels of a span are drawn. A face pattern gives holes or a second colour, a
// clip mask hides pixels. Both come as bits, up to 64 pixels at a time, so that spans
// can take whole stretches at once and a lone pixel costs a shift and a test.
#pragma once

#include <algorithm>
#include <array>
#include <bit>

#include "module/core/fixed_point.h"
#include "module/pixels/mask.h"

namespace zbuffer {

/// Up to 64 pixels of a span; bit 0 is the leftmost.
struct Pixel_Bits {
  std::uint64_t ordinary;  ///< pixels that take the ordinary colour
  std::uint64_t contrast;  ///< pixels that take the contrast colour
};

inline constexpr std::int32_t bits_at_once = 64;

constexpr std::uint64_t first_bits(std::int32_t count) {
  return count >= bits_at_once ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

/// Every pixel takes the ordinary colour.
struct Solid_Bits {
  static constexpr bool solid = true;
};

/// Remainder that is not negative for a positive divisor.
constexpr std::int32_t floor_modulo(std::int32_t value, std::int32_t divisor) {
  const std::int32_t rest = value % divisor;
  return rest < 0 ? rest + divisor : rest;
}

/// A resolved face pattern. A clear bit takes the ordinary colour; a set one the contrast colour
/// when the pattern is opaque, else it is a hole. The leftmost pixel of a byte is its lowest bit.
class Stipple_Bits {
 public:
  static constexpr bool solid = false;

  /// The pattern of `rendition`, whose `face_pattern` is below 75.
  explicit Stipple_Bits(const KT_Rendition& rendition);

  /// The pattern's bit at (x, y) in buffer coordinates.
  bool is_set(std::int32_t x, std::int32_t y) const {
    return bit(row(y), floor_modulo(wrapped_difference(x, origin_.x), pattern_.pattern_width));
  }
  bool opaque() const { return opaque_; }

  class Cursor {
   public:
    Cursor(const Stipple_Bits& bits, std::int32_t x, std::int32_t y)
        : bits_(bits),
          row_(bits.row(y)),
          px_(floor_modulo(wrapped_difference(x, bits.origin_.x), bits.pattern_.pattern_width)) {}

    Pixel_Bits next(std::int32_t count) {
      const std::uint64_t valid = first_bits(count);
      const bool narrow = bits_.pattern_.pattern_width == 8;
      const std::uint64_t set = (narrow ? byte_wide() : general(count)) & valid;
      return {~set & valid, bits_.opaque_ ? set : 0};
    }

   private:
    // 64 pixels are a whole number of pattern bytes: `px_` stays.
    std::uint64_t byte_wide() const {
      const auto byte = static_cast<std::uint8_t>(*row_ ^ bits_.inversion_);
      return std::rotr(byte, px_) * 0x0101010101010101u;
    }
    std::uint64_t general(std::int32_t count) {
      std::uint64_t set = 0;
      for (std::int32_t i = 0; i < count; ++i) {
        set |= std::uint64_t{bits_.bit(row_, px_)} << i;
        if (++px_ == bits_.pattern_.pattern_width) px_ = 0;
      }
      return set;
    }

    const Stipple_Bits& bits_;
    const std::uint8_t* row_;
    std::int32_t px_;
  };

  Cursor begin(std::int32_t x, std::int32_t y) const { return Cursor(*this, x, y); }

 private:
  const std::uint8_t* row(std::int32_t y) const {
    const std::int32_t py = floor_modulo(wrapped_difference(y, origin_.y), pattern_.pattern_height);
    return pattern_.pattern_bits + std::ptrdiff_t{py} * pattern_.pattern_row_bytes;
  }
  bool bit(const std::uint8_t* row, std::int32_t px) const {
    return (((row[px >> 3] ^ inversion_) >> (px & 7)) & 1) != 0;
  }

  KT_User_Pattern pattern_;
  KT_Int_XY origin_;
  std::uint8_t inversion_;  // 255 complements every byte as it is read
  bool opaque_;
};

inline constexpr auto reversed_bytes = [] {
  std::array<std::uint8_t, 256> reversed{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      if ((byte >> bit) & 1) reversed[byte] |= static_cast<std::uint8_t>(128 >> bit);
    }
  }
  return reversed;
}();

/// The mask in force at the head of the cache, over other bits.
template <class Inner>
class Masked_Bits {
 public:
  static constexpr bool solid = false;

  Masked_Bits(const Mask_Cache& cache, const Inner& inner) : mask_(*cache->head), inner_(inner) {}

  class Cursor {
   public:
    Cursor(const Masked_Bits& bits, std::int32_t x, std::int32_t y)
        : cursor_(offset(row_cursor(bits.mask_, y), x)), inner_(begin_inner(bits.inner_, x, y)) {}

    Pixel_Bits next(std::int32_t count) {
      const std::uint64_t visible = ~hidden(count) & first_bits(count);
      if constexpr (Inner::solid) {
        return {visible, 0};
      } else {
        const Pixel_Bits inner = inner_.next(count);
        return {inner.ordinary & visible, inner.contrast & visible};
      }
    }

   private:
    // Only the bytes that hold the pixels are read: a row may end with them.
    std::uint64_t hidden(std::int32_t count) {
      std::uint64_t bits = reversed(*cursor_.byte) >> cursor_.bit;
      for (int have = 8 - cursor_.bit, at = 1; have < count; have += 8, ++at) {
        bits |= reversed(cursor_.byte[at]) << have;
      }
      advance(cursor_, count);
      return bits;
    }
    // Mask bits run from the most significant one, pixel bits from the least.
    static std::uint64_t reversed(std::uint8_t byte) { return reversed_bytes[byte]; }

    struct Nothing {};
    static auto begin_inner(const Inner& inner, std::int32_t x, std::int32_t y) {
      if constexpr (Inner::solid) {
        return Nothing{};
      } else {
        return inner.begin(x, y);
      }
    }

    Bit_Cursor cursor_;
    decltype(begin_inner(std::declval<const Inner&>(), 0, 0)) inner_;
  };

  Cursor begin(std::int32_t x, std::int32_t y) const { return Cursor(*this, x, y); }

 private:
  const Frame_Buffer_Mask& mask_;
  Inner inner_;
};

/// Whether faces are drawn without a pattern.
inline bool is_solid(const KT_Rendition& rendition) {
  return rendition->face_attributes->face_pattern == KT_Face_Attributes::solid &&
         !(rendition->misc_attributes->pattern_options & KT_Misc_Attributes::inverted_pattern_bit);
}

/// Whether the pattern is all holes, by its number and options alone.
inline bool draws_nothing(const KT_Rendition& rendition) {
  const std::uint32_t options = rendition->misc_attributes->pattern_options;
  if (options & KT_Misc_Attributes::opaque_pattern_bit) return false;
  const bool inverted = (options & KT_Misc_Attributes::inverted_pattern_bit) != 0;
  const std::int32_t pattern = rendition->face_attributes->face_pattern;
  return pattern == (inverted ? KT_Face_Attributes::solid : KT_Face_Attributes::hollow);
}

}  // namespace zbuffer
