// Sources: where the colour of a segment's pixels comes from. A source that is begun at a segment
// gives a cursor, which goes on pixel by pixel and row by row.
//
// Channels and depths are stepped at full precision: pixel i of a segment has c0 + i * step, the
// step being the difference spread over the pixels of the major axis.
#pragma once

#include "host/types.h"
#include "module/pixels/cursors.h"
#include "module/pixels/dither.h"

namespace zbuffer::lines {

/// The pixels that values are spread over, some of which are left out at the start.
struct Spread {
  Divisor pixels;
  Word skipped;

  template <class Format>
  Stepped between(std::int32_t from, std::int32_t to) const {
    const Word step = pixels.step<Format>(wrapped_difference(to, from));
    return {Format::at(from) + skipped * step, step};
  }
};

/// What the ends of a segment have beside their place: depths and colours.
struct Ends {
  std::int32_t z0, z1;
  KT_RGB32 color0, color1;
};

/// The rows that a segment goes through: the first, and 1 upwards or -1 downwards.
struct Rows {
  std::int32_t first;
  std::int32_t sy;
};

/// One value for all pixels.
template <class Pixel_Type>
struct Constant_Source {
  using Pixel = Pixel_Type;
  using Cursor = Constant_Cursor<Pixel>;

  Pixel word;

  void take(KT_RGB32 color) {
    if constexpr (sizeof(Pixel) == sizeof color) word = color.word();
  }
  Cursor begin(const Ends&, const Spread&, Rows) const { return {word}; }
};

/// Red, green and blue from end to end, alpha 255.
struct Gouraud_Source {
  using Pixel = std::uint32_t;
  using Cursor = Gouraud_Cursor;

  Cursor begin(const Ends& ends, const Spread& spread, Rows) const {
    return {{spread.between<Position>(ends.color0.red, ends.color1.red),
             spread.between<Position>(ends.color0.green, ends.color1.green),
             spread.between<Position>(ends.color0.blue, ends.color1.blue)}};
  }
};

/// Red, green, blue and alpha from end to end.
struct Gouraud_Alpha_Source {
  using Pixel = std::uint32_t;
  using Cursor = Gouraud_Alpha_Cursor;

  Cursor begin(const Ends& ends, const Spread& spread, Rows rows) const {
    return {Gouraud_Source{}.begin(ends, spread, rows),
            spread.between<Position>(ends.color0.alpha, ends.color1.alpha)};
  }
};

/// The thresholds of the row that a segment is in.
class Dither_Rows {
 public:
  explicit Dither_Rows(Rows rows) : y_(rows.first), sy_(rows.sy), row_(y_) {}
  std::int32_t threshold(const std::uint8_t* pixel) const { return row_.threshold(pixel); }
  void next_row() {
    y_ += sy_;
    row_ = Dither_Row(y_);
  }

 private:
  std::int32_t y_;
  std::int32_t sy_;
  Dither_Row row_;
};

/// One colour, dithered by its four candidate indices.
struct Dithered_Source {
  using Pixel = std::uint8_t;

  Cube cube;
  Dithered_Color color{};

  void take(KT_RGB32 new_color) { color = Dithered_Color(cube, new_color); }

  struct Cursor {
    using Pixel = std::uint8_t;
    static constexpr bool constant = false;
    const Dithered_Color& color;
    Dither_Rows rows;

    Pixel value(const Pixel* to) const { return color.at(rows.threshold(to)); }
    void advance() {}
    void next_row() { rows.next_row(); }
  };
  Cursor begin(const Ends&, const Spread&, Rows rows) const { return {color, Dither_Rows(rows)}; }
};

/// Scaled red, green and blue from end to end, dithered at each pixel.
struct Gouraud_Dither_Source {
  using Pixel = std::uint8_t;

  Cube cube;

  struct Cursor {
    using Pixel = std::uint8_t;
    static constexpr bool constant = false;
    Cube cube;
    Dither_Rows rows;
    Stepped_Rgb at;

    Pixel value(const Pixel* to) const {
      return cube.dithered({whole(at.red), whole(at.green), whole(at.blue)}, rows.threshold(to));
    }
    void advance() { at.advance(); }
    void next_row() { rows.next_row(); }

    static std::int32_t whole(const Stepped& channel) { return as_signed(channel.value) >> 8; }
  };
  Cursor begin(const Ends& ends, const Spread& spread, Rows rows) const {
    const Channels from = cube.scaled(ends.color0);
    const Channels to = cube.scaled(ends.color1);
    return {
        cube,
        Dither_Rows(rows),
        {spread.between<Position>(from.red, to.red), spread.between<Position>(from.green, to.green),
         spread.between<Position>(from.blue, to.blue)}};
  }
};

}  // namespace zbuffer::lines
