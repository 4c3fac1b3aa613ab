// Colour cursors: the colour of a row's pixels, stepped from pixel to pixel. Where the values start
// is decided elsewhere; spans and segments each have their own rule for that.
//
//   value(to)       the colour of the pixel at `to`
//   advance()       one pixel on; advance(count): by `count` pixels
//   next_row()      the row above or below, of segments that go on there
#pragma once

#include "module/core/fixed_point.h"
#include "module/pixels/blend_255.h"

namespace zbuffer {

/// A value and its step from pixel to pixel.
struct Stepped {
  Word value;
  Word step;

  void advance() { value += step; }
  void advance(std::int32_t count) { value += as_word(count) * step; }
};

/// Three stepped channels, as named values: an array would go through memory at every pixel.
struct Stepped_Rgb {
  Stepped red, green, blue;

  void advance() {
    red.advance();
    green.advance();
    blue.advance();
  }
  void advance(std::int32_t count) {
    red.advance(count);
    green.advance(count);
    blue.advance(count);
  }
};

/// The word of three channels in 16.16, alpha 255.
constexpr std::uint32_t packed_rgb(Word red, Word green, Word blue) {
  return opaque_alpha | (red & 0xFF0000) | ((green >> 8) & 0xFF00) | ((blue >> 16) & 0xFF);
}
/// `color` with an alpha in 16.16.
constexpr std::uint32_t with_alpha(std::uint32_t color, Word alpha) {
  return (color & ~opaque_alpha) | ((alpha << 8) & opaque_alpha);
}

/// One value for all pixels.
template <class Pixel_Type>
struct Constant_Cursor {
  using Pixel = Pixel_Type;
  static constexpr bool constant = true;

  Pixel word;

  Pixel value(const Pixel*) const { return word; }
  void advance() {}
  void advance(std::int32_t) {}
  void next_row() {}
};

/// Red, green and blue, alpha 255.
struct Gouraud_Cursor : Stepped_Rgb {
  using Pixel = std::uint32_t;
  static constexpr bool constant = false;

  Pixel value(const Pixel*) const { return packed_rgb(red.value, green.value, blue.value); }
  void next_row() {}
};

/// Red, green, blue and alpha.
struct Gouraud_Alpha_Cursor {
  using Pixel = std::uint32_t;
  static constexpr bool constant = false;

  Gouraud_Cursor color;
  Stepped alpha;

  Pixel value(const Pixel* to) const { return with_alpha(color.value(to), alpha.value); }
  void advance() {
    color.advance();
    alpha.advance();
  }
  void advance(std::int32_t count) {
    color.advance(count);
    alpha.advance(count);
  }
  void next_row() {}
};

}  // namespace zbuffer
