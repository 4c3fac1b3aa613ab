// Segments: how they lie, and where a slanted one starts, steps and meets the sides of a rectangle.
//
//   slope     shallow: x is the major axis; steep: y is; diagonal: both
//   position  x in 16.16, one value a row; for shallow lines the column where the row's run ends
//
// Rows are counted from the first point on. The formulas of both axes' signs are one formula each
// but for a unit of the last place, which the small tables below hold; these units are part of the
// picture and are not to be evened out.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "host/types.h"
#include "module/core/fixed_point.h"

namespace zbuffer::lines {

struct Segment {
  std::int32_t x0, y0, x1, y1;
};

enum class Slope : std::uint8_t { shallow, diagonal, steep };

constexpr std::int32_t sign_of(std::int32_t value) {
  return (value > 0) - (value < 0);
}

/// A segment that is neither horizontal nor vertical.
struct Slanted {
  std::int32_t x0, y0, x1, y1;
  std::int32_t sx, sy;   // signs
  std::int32_t columns;  // x difference without its sign
  std::int32_t rows;     // y difference without its sign
  Slope slope;
  Word step;  // x change a row

  explicit Slanted(const Segment& s)
      : x0(s.x0),
        y0(s.y0),
        x1(s.x1),
        y1(s.y1),
        sx(s.x1 < s.x0 ? -1 : 1),
        sy(s.y1 < s.y0 ? -1 : 1),
        columns((s.x1 - s.x0) * sx),
        rows((s.y1 - s.y0) * sy),
        slope(columns == rows  ? Slope::diagonal
              : columns > rows ? Slope::shallow
                               : Slope::steep),
        step(Divisor(rows).line_step(s.x1 - s.x0)) {}

  /// Pixels along the major axis.
  std::int32_t major() const { return std::max(columns, rows); }

  /// Start of a steep line's positions.
  Word steep_start() const { return Position::at(x0); }

  /// The same, corrected so that lines down to the left cover the pixels of their reverse.
  Word steep_start_reversible() const {
    const bool corrected = sx < 0 && sy < 0;
    return steep_start() - (corrected ? (step * as_word(rows)) & 0xFFFF : 0);
  }

  /// Start of a shallow line's positions: half a step on.
  Word shallow_start() const { return shallow_base() + shift_signed(sx > 0 ? step : step + 1, 1); }

  /// From here whole steps lead to the column where a row is entered.
  Word shallow_entry() const {
    return shallow_base() + (sx > 0 ? shift_signed(0 - step, 1) : 0 - shift_signed(step, 1));
  }

  /// Rows to where the line meets column `side` as it leaves a rectangle.
  std::int32_t rows_to_exit(std::int32_t side) const {
    if (slope != Slope::steep) return rows_to_side(side);
    return as_signed((distance_to(side) + (sx > 0 ? 0x7FFF : 0x8000)) / steepness());
  }
  /// Rows to where it meets column `side` as it enters.
  std::int32_t rows_to_entry(std::int32_t side) const {
    if (slope != Slope::steep) return rows_to_side(side);
    return 1 + as_signed((distance_to(side) - (sx > 0 ? 0x8001 : 0x8000)) / steepness());
  }

 private:
  //                 right    left
  //   upwards      0xFFFF       0
  //   downwards   0x10000      -1
  Word shallow_base() const {
    const Word base = sx > 0 ? 0x10000u : 0u;
    return (as_word(x0) << 16) + base - (sx > 0 ? sy > 0 : sy < 0);
  }

  Word distance_to(std::int32_t side) const { return as_word((side - x0) * sx) << 16; }
  Word steepness() const { return sx > 0 ? step : 0 - step; }

  std::int32_t rows_to_side(std::int32_t side) const {
    if (slope == Slope::diagonal) return (side - x0) * sx;
    const Word half = (steepness() + as_word(sy)) >> 1;
    return as_signed((distance_to(side) + half) / steepness());
  }
};

/// The row where a line meets the left (`sx` of -1) or the right side (1) of `clip`. Where the line
/// enters, the row is not before the rectangle's first row; where it leaves, not after its last
/// one.
inline std::int32_t row_at_side(const Slanted& line, const KT_Int_Rectangle& clip,
                                std::int32_t sx) {
  const std::int32_t side = sx < 0 ? clip.left : clip.right;
  const bool leaves = sx == line.sx;
  const std::int32_t rows = leaves ? line.rows_to_exit(side) : line.rows_to_entry(side);
  const std::int32_t row = line.y0 + line.sy * rows;
  const bool bottom_counts = leaves == (line.sy < 0);
  return bottom_counts ? std::max(clip.bottom, row) : std::min(clip.top, row);
}

}  // namespace zbuffer::lines
