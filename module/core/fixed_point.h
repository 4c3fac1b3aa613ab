// Fixed-point arithmetic of edges, spans and lines.
//
//   16.16   positions and colour channels: (whole << 16) | 0x8000
//   17.15   depths:                        (whole << 15) | 0x4000
//
// All values are unsigned 32-bit words: additions wrap, and a signed reading has a name of its own
// (`as_signed`). A step over n rows or pixels is (d << fraction bits) / n, wrapped to 32 bits and
// truncated toward zero; for n of 1, 2, 4 and 8 it is the difference shifted by so many bits less,
// also where the full product would have wrapped.
#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace zbuffer {

using Word = std::uint32_t;

constexpr std::int32_t as_signed(Word word) {
  return static_cast<std::int32_t>(word);
}
constexpr Word as_word(std::int32_t value) {
  return static_cast<Word>(value);
}

/// Sums and differences of coordinates wrap.
constexpr std::int32_t wrapped_sum(std::int32_t a, std::int32_t b) {
  return as_signed(as_word(a) + as_word(b));
}
constexpr std::int32_t wrapped_difference(std::int32_t a, std::int32_t b) {
  return as_signed(as_word(a) - as_word(b));
}

/// Shift to the right that keeps the sign.
constexpr Word shift_signed(Word word, int bits) {
  return as_word(as_signed(word) >> bits);
}

/// A number of fraction bits with its operations.
template <int bits>
struct Fixed {
  static constexpr int fraction_bits = bits;
  static constexpr Word half = Word{1} << (bits - 1);

  /// The middle of unit `whole`.
  static constexpr Word at(std::int32_t whole) { return (as_word(whole) << bits) | half; }
  /// The whole part, as the 16 bits above the fraction.
  static constexpr std::int32_t whole_unsigned(Word value) {
    return static_cast<std::int32_t>((value >> bits) & 0xFFFFu);
  }
  /// The whole part with the sign of the word.
  static constexpr std::int32_t whole_signed(Word value) { return as_signed(value) >> bits; }
};

/// x, texel and channel positions.
using Position = Fixed<16>;

/// Depths; 65535 fills the whole word.
struct Depth : Fixed<15> {
  /// A running depth as the depth image holds it.
  static constexpr std::uint16_t stored(Word value) {
    return static_cast<std::uint16_t>(value >> fraction_bits);
  }
};

/// A count of rows or pixels over which differences are spread, 1 or more.
///
/// Division by a reciprocal: with r a little above 1/n, |a| below 2^31 and a relative error below
/// 2^-49 in all, trunc(a * r) is the truncated quotient: exact multiples stay at or just above
/// themselves, and any other quotient is at least 1/n from the next whole number while the error
/// is below |a| / n * 2^-49.
class Divisor {
 public:
  explicit Divisor(std::int32_t n) {
    if (n < table_size) [[likely]] {
      const Entry& entry = table[static_cast<std::size_t>(n)];
      shift_ = entry.shift;
      after_shift_ = entry.after_shift;
      reciprocal_ = entry.reciprocal;
    } else {
      shift_ = 3;
      after_shift_ = reciprocal_ = just_above_inverse(n);
    }
  }

  template <class Format>
  Word step(std::int32_t difference) const {
    const Word shifted = as_word(difference) << (Format::fraction_bits - 3) << shift_;
    return truncated_product(as_signed(shifted), after_shift_);
  }
  Word line_step(std::int32_t difference) const { return step<Position>(difference); }
  Word depth_step(std::int32_t difference) const { return step<Depth>(difference); }

  /// The same for differences that keep inside a word when shifted, such as those of colour bytes
  /// and 16-bit depths. Nothing wraps, so that all counts go one way.
  template <class Format>
  Word small_step(std::int32_t difference) const {
    return truncated_product(difference, reciprocal_ * (Word{1} << Format::fraction_bits));
  }

  /// The step of a value that has its fraction: the shifts of 2, 4 and 8 round down, where all
  /// other divisions truncate.
  Word span_step(std::int32_t difference) const {
    return truncated_product(difference >> (3 - shift_), after_shift_);
  }

 private:
  struct Entry {
    int shift;           // what is left of the three bits that counts of 2, 4 and 8 take back
    double after_shift;  // 1 for the counts that a shift divides by
    double reciprocal;
  };

  static constexpr double just_above_inverse(std::int32_t n) { return 1.0 / n * (1.0 + 0x1p-50); }
  static constexpr Entry entry_for(std::int32_t n) {
    switch (n) {
      case 0:  // never stepped
      case 1:
        return {3, 1.0, 1.0};
      case 2:
        return {2, 1.0, 0.5};
      case 4:
        return {1, 1.0, 0.25};
      case 8:
        return {0, 1.0, 0.125};
      default:
        return {3, just_above_inverse(n), just_above_inverse(n)};
    }
  }
  static constexpr std::int32_t table_size = 256;
  static constexpr std::array<Entry, table_size> make_table() {
    std::array<Entry, table_size> entries{};
    for (std::int32_t n = 0; n < table_size; ++n) {
      entries[static_cast<std::size_t>(n)] = entry_for(n);
    }
    return entries;
  }
  static const std::array<Entry, table_size> table;

  static Word truncated_product(std::int32_t a, double factor) {
    return as_word(static_cast<std::int32_t>(a * factor));
  }

  int shift_;
  double after_shift_;
  double reciprocal_;
};

inline constexpr std::array<Divisor::Entry, Divisor::table_size> Divisor::table =
    Divisor::make_table();

/// The step of lines and edges, with n of 0 leaving the difference as it is.
inline Word line_step(std::int32_t difference, std::int32_t n) {
  return n == 0 ? as_word(difference) : Divisor(n).line_step(difference);
}
inline Word depth_step(std::int32_t difference, std::int32_t n) {
  return n == 0 ? as_word(difference) : Divisor(n).depth_step(difference);
}

/// Truncation toward zero; what an int cannot hold becomes the least int.
constexpr std::int32_t truncated(double value) {
  constexpr double limit = 2147483648.0;
  return value > -limit - 1.0 && value < limit ? static_cast<std::int32_t>(value)
                                               : std::numeric_limits<std::int32_t>::min();
}

/// Rounding of a double coordinate: halves go up, -0.5 to 0.
constexpr std::int32_t rounded(double value) {
  return truncated(value >= 0.0 ? value + 0.5 : value - 0.49999999999);
}

/// Rounding of a float coordinate, the sum in single precision.
constexpr std::int32_t rounded(float value) {
  return truncated(static_cast<double>(value >= 0.0f ? value + 0.5f : value - 0.499999f));
}

}  // namespace zbuffer
