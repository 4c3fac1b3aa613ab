// Palette indices of shaded colours: a place in the palette's colour cube, by ordered dither.
//
// A scaled channel is a byte times the cube's scale, a cube coordinate with 8 fraction bits;
// shifted left by 8 it has 16. The three channels of a pixel share one threshold, so the result is
// a corner of a tetrahedron of the cell. The threshold's row is the buffer row, its column the
// pixel's address, each by the low three bits. Indices are computed in 8 bits and wrap.
#pragma once

#include <array>
#include <cstdint>

#include "host/color.h"
#include "host/global.h"
#include "module/core/fixed_point.h"

namespace zbuffer {

/// Three numbers, one a channel.
struct Channels {
  std::int32_t red;
  std::int32_t green;
  std::int32_t blue;
};

/// One row of thresholds, by pixel address.
class Dither_Row {
 public:
  explicit Dither_Row(std::int32_t y) : row_(&SHARED.dither_table[(y & 7) * 8]) {}
  std::int32_t threshold(const std::uint8_t* pixel) const {
    return row_[reinterpret_cast<std::uintptr_t>(pixel) & 7];
  }

 private:
  const std::uint16_t* row_;
};

/// The renderer's cube as the dither needs it: strides and base as bytes.
struct Cube {
  std::uint8_t base;
  std::uint8_t red_stride;
  std::uint8_t green_stride;
  std::uint8_t blue_stride;
  Channels scale;

  explicit Cube(const KT_Color_Cube& cube)
      : base(static_cast<std::uint8_t>(cube.base_index)),
        red_stride(static_cast<std::uint8_t>(cube.red_stride)),
        green_stride(static_cast<std::uint8_t>(cube.green_stride)),
        blue_stride(static_cast<std::uint8_t>(cube.blue_stride)),
        scale{cube.red_scale, cube.green_scale, cube.blue_scale} {}

  /// Scaled channels of a colour, 8 fraction bits.
  Channels scaled(KT_RGB32 color) const {
    return {as_signed(as_word(color.red) * as_word(scale.red)),
            as_signed(as_word(color.green) * as_word(scale.green)),
            as_signed(as_word(color.blue) * as_word(scale.blue))};
  }

  /// Index of whole cube coordinates. Blue counts with stride 1 here, whatever the cube's blue
  /// stride is.
  std::uint8_t index(std::int32_t red, std::int32_t green, std::int32_t blue) const {
    return static_cast<std::uint8_t>(base + red_stride * static_cast<std::uint8_t>(red) +
                                     green_stride * static_cast<std::uint8_t>(green) +
                                     static_cast<std::uint8_t>(blue));
  }

  /// The dithered index of channels with 16 fraction bits.
  std::uint8_t dithered(const Channels& at, std::int32_t threshold) const {
    return index(wrapped_sum(at.red, threshold) >> 16, wrapped_sum(at.green, threshold) >> 16,
                 wrapped_sum(at.blue, threshold) >> 16);
  }
};

/// A colour that is constant over many pixels: four candidate indices along the channels in the
/// order of their fractions, largest first, and the thresholds between them. A row of the image
/// then repeats eight indices by address; those of the eight rows are kept as they come up.
class Dithered_Color {
 public:
  /// All zero: index 0 everywhere.
  Dithered_Color() = default;
  Dithered_Color(const Cube& cube, KT_RGB32 color);

  /// The indices of buffer row `y`: byte k is for addresses of low bits k.
  std::uint64_t row(std::int32_t y) const {
    const auto at = static_cast<std::size_t>(y & 7);
    if (!((rows_made_ >> at) & 1)) make_row(at);
    return rows_[at];
  }

  /// The candidate for a threshold.
  std::uint8_t at(std::int32_t threshold) const {
    for (std::size_t i = 0; i < 3; ++i) {
      if (limits_[i] > threshold) return indices_[i];
    }
    return indices_[3];
  }

 private:
  void make_row(std::size_t y) const;

  std::array<std::uint16_t, 3> limits_{};
  std::array<std::uint8_t, 4> indices_{};
  mutable std::uint8_t rows_made_ = 0;
  mutable std::array<std::uint64_t, 8> rows_;
};

/// Byte of `row` for the pixel at an address.
inline std::uint8_t byte_by_address(std::uint64_t row, const std::uint8_t* pixel) {
  return static_cast<std::uint8_t>(row >> (8 * (reinterpret_cast<std::uintptr_t>(pixel) & 7)));
}

/// Eight indices that repeat by address, of one colour in one row.
struct Dithered_Row_Cursor {
  using Pixel = std::uint8_t;
  static constexpr bool constant = true;

  std::uint64_t row;

  Pixel value(const Pixel* to) const { return byte_by_address(row, to); }
  void advance() {}
  void advance(std::int32_t) {}
};

}  // namespace zbuffer
