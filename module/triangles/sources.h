// Sources: where the ordinary colour of a span's pixels comes from. A source is begun at a span
// from the interpolants of its two edges and gives a cursor.
//
// In the general form the whole parts of the two edges are spread over the whole span, and the
// edges' fractions are given up; a span cut by the hard clip begins so many steps on. The short
// forms of one and two pixels take the left edge and the mean of both as they are.
#pragma once

#include "module/pixels/cursors.h"
#include "module/pixels/dither.h"
#include "module/raster/interpolants.h"
#include "module/raster/span_start.h"

namespace zbuffer::triangles {

/// One value for all pixels.
template <class Pixel_Type>
struct Constant_Source {
  using Pixel = Pixel_Type;
  using Values = Interpolants<>;
  using Cursor = Constant_Cursor<Pixel>;

  Pixel word;

  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start&, std::int32_t, const View&,
                                      const View&) const {
    return {word};
  }
  template <class View>
  Pixel at_left(const View&, std::int32_t, const Pixel*) const {
    return word;
  }
  template <class View>
  Pixel at_mean(const View&, const View&, std::int32_t, const Pixel*) const {
    return word;
  }
};

/// Red, green and blue from the edges, alpha 255.
struct Gouraud_Source {
  using Pixel = std::uint32_t;
  using Values = Interpolants<Position_Interpolant, Position_Interpolant, Position_Interpolant>;
  using Cursor = Gouraud_Cursor;

  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start& start, std::int32_t, const View& left,
                                      const View& right) const {
    return {{start.between<Position>(left[0], right[0]), start.between<Position>(left[1], right[1]),
             start.between<Position>(left[2], right[2])}};
  }
  template <class View>
  Pixel at_left(const View& left, std::int32_t, const Pixel*) const {
    return packed_rgb(left[0], left[1], left[2]);
  }
  template <class View>
  Pixel at_mean(const View& left, const View& right, std::int32_t, const Pixel*) const {
    return packed_rgb(mean(left[0], right[0]), mean(left[1], right[1]), mean(left[2], right[2]));
  }

  static constexpr Word mean(Word left, Word right) { return (left + right) >> 1; }
};

/// Red, green, blue and alpha from the edges.
struct Gouraud_Alpha_Source {
  using Pixel = std::uint32_t;
  using Values = Joined<Gouraud_Source::Values, Interpolants<Position_Interpolant>>;
  using Cursor = Gouraud_Alpha_Cursor;

  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start& start, std::int32_t y, const View& left,
                                      const View& right) const {
    return {Gouraud_Source{}.begin(start, y, left, right),
            start.between<Position>(left[3], right[3])};
  }
  template <class View>
  Pixel at_left(const View& left, std::int32_t y, const Pixel* to) const {
    return with_alpha(Gouraud_Source{}.at_left(left, y, to), left[3]);
  }
  template <class View>
  Pixel at_mean(const View& left, const View& right, std::int32_t y, const Pixel* to) const {
    return with_alpha(Gouraud_Source{}.at_mean(left, right, y, to),
                      Gouraud_Source::mean(left[3], right[3]));
  }
};

/// A colour dithered by candidates worked out ahead: eight indices a row, by address.
struct Dithered_Source {
  using Pixel = std::uint8_t;
  using Values = Interpolants<>;
  using Cursor = Dithered_Row_Cursor;

  Dithered_Color color;

  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start&, std::int32_t y, const View&,
                                      const View&) const {
    return {color.row(y)};
  }
  template <class View>
  Pixel at_left(const View&, std::int32_t y, const Pixel* to) const {
    return byte_by_address(color.row(y), to);
  }
  template <class View>
  Pixel at_mean(const View& left, const View&, std::int32_t y, const Pixel* to) const {
    return at_left(left, y, to);
  }
};

/// A colour dithered anew at each pixel, with a rounding term: the clipped spans' form, which may
/// differ from `Dithered_Source` by a threshold step.
struct Rounded_Dither_Source {
  using Pixel = std::uint8_t;
  using Values = Interpolants<>;

  Cube cube;
  Channels at;

  Rounded_Dither_Source(const Cube& of, KT_RGB32 color) : cube(of), at(of.scaled(color)) {
    at = {rounded_up(at.red), rounded_up(at.green), rounded_up(at.blue)};
  }

  struct Cursor {
    static constexpr bool constant = false;
    const Rounded_Dither_Source& source;
    Dither_Row row;
    Pixel value(const Pixel* to) const {
      return source.cube.dithered(source.at, row.threshold(to));
    }
    void advance() {}
    void advance(std::int32_t) {}
  };
  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start&, std::int32_t y, const View&,
                                      const View&) const {
    return {*this, Dither_Row(y)};
  }

 private:
  static std::int32_t rounded_up(std::int32_t scaled) {
    return as_signed((as_word(scaled) << 8) | 128);
  }
};

/// Scaled red, green and blue from the edges, dithered at each pixel.
struct Gouraud_Dither_Source {
  using Pixel = std::uint8_t;
  using Values = Gouraud_Source::Values;

  Cube cube;

  struct Cursor {
    static constexpr bool constant = false;
    const Cube& cube;
    Dither_Row row;
    Stepped_Rgb at;

    Pixel value(const Pixel* to) const {
      const Channels now{as_signed(at.red.value), as_signed(at.green.value),
                         as_signed(at.blue.value)};
      return cube.dithered(now, row.threshold(to));
    }
    void advance() { at.advance(); }
    void advance(std::int32_t count) { at.advance(count); }
  };

  template <class View>
  [[gnu::always_inline]] Cursor begin(const Span_Start& start, std::int32_t y, const View& left,
                                      const View& right) const {
    return {cube, Dither_Row(y),
            Stepped_Rgb{channel(start, left[0], right[0]), channel(start, left[1], right[1]),
                        channel(start, left[2], right[2])}};
  }
  template <class View>
  Pixel at_left(const View& left, std::int32_t y, const Pixel* to) const {
    return index(left[0] >> 8, left[1] >> 8, left[2] >> 8, y, to);
  }
  // Both edges are halved before they are added.
  template <class View>
  Pixel at_mean(const View& left, const View& right, std::int32_t y, const Pixel* to) const {
    return index((left[0] >> 9) + (right[0] >> 9), (left[1] >> 9) + (right[1] >> 9),
                 (left[2] >> 9) + (right[2] >> 9), y, to);
  }

 private:
  // The step is cut to 16 fraction bits before it is used.
  static Stepped channel(const Span_Start& start, Word left, Word right) {
    const std::int32_t from = Position::whole_unsigned(left);
    const Word step =
        shift_signed(start.pixels.line_step(Position::whole_unsigned(right) - from), 8);
    return {(Position::at(from) >> 8) + as_word(start.skipped) * step, step};
  }
  Pixel index(Word red, Word green, Word blue, std::int32_t y, const Pixel* to) const {
    return cube.dithered({as_signed(red), as_signed(green), as_signed(blue)},
                         Dither_Row(y).threshold(to));
  }
};

}  // namespace zbuffer::triangles
