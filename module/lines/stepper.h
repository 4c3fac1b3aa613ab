// Which pixels a thin line covers: the stepper of whole segments and that of clipped ones.
//
//   from (10, 10) to (15, 12)        . . . . 4 5     the far end, 5, belongs to the next segment
//                                    . . 2 3 . .     or is drawn after the last one
//                                    0 1 . . . .
//
// A segment draws its first point and stops short of its last. Shallow lines go row by row in
// runs: half a step in the first row, whole steps, and what remains in the last.
//
// The steppers do not see the pixels. A drawer gives them cursors:
//
//   drawer.cursor(row, sy, pixels, skipped)   a cursor at a buffer row that goes on by `sy` rows,
//                                            over a line of `pixels` of which some are left out
//   cursor.dot(x)                            a pixel, in buffer columns
//   cursor.run<heading>(x, n)                n pixels from x on; none for n below 1
//   cursor.next_row()
#pragma once

#include "module/lines/segment.h"

namespace zbuffer::lines {

enum class Heading : std::int8_t { left = -1, right = 1 };

/// Columns of whole segments, which are counted from the buffer's left.
struct Buffer_Columns {
  static std::int32_t whole(Word position) { return Position::whole_unsigned(position); }
  static std::int32_t in_buffer(std::int32_t x) { return x; }
};

/// Columns of clipped segments, in device coordinates.
struct Device_Columns {
  std::int32_t origin;
  static std::int32_t whole(Word position) {
    return static_cast<std::int16_t>(Position::whole_unsigned(position));
  }
  std::int32_t in_buffer(std::int32_t x) const { return x - origin; }
};

namespace stepper_detail {

/// One pixel a row, exactly along a column or a diagonal.
template <class Line_Cursor>
void step_straight(Line_Cursor cursor, std::int32_t x, std::int32_t sx, std::int32_t rows) {
  for (; rows > 0; --rows) {
    cursor.dot(x);
    cursor.next_row();
    x += sx;
  }
}

template <class Columns, class Line_Cursor>
void step_steep(Line_Cursor cursor, const Columns columns, Word position, const Word step,
                std::int32_t rows) {
  for (; rows > 0; --rows) {
    cursor.dot(columns.in_buffer(columns.whole(position)));
    cursor.next_row();
    position += step;
  }
}

/// Where a shallow line stands at the start of a row, and where the row's run ends.
struct Shallow_Place {
  std::int32_t x;
  Word position;
};

/// `rows` runs, then one in the row after them up to the column that `end(position)` gives.
template <Heading heading, class Columns, class Line_Cursor, class End>
void step_shallow(Line_Cursor cursor, const Columns columns, Shallow_Place at, const Word step,
                  std::int32_t rows, const End end) {
  constexpr auto sign = static_cast<std::int32_t>(heading);
  for (; rows > 0; --rows) {
    const std::int32_t next = columns.whole(at.position);
    cursor.template run<heading>(columns.in_buffer(at.x), (next - at.x) * sign);
    cursor.next_row();
    at = {next, at.position + step};
  }
  cursor.template run<heading>(columns.in_buffer(at.x), (end(at.position) - at.x) * sign);
}

template <class Line_Cursor>
void step_run(Line_Cursor cursor, std::int32_t x, std::int32_t count, std::int32_t sx) {
  if (sx > 0) {
    cursor.template run<Heading::right>(x, count);
  } else {
    cursor.template run<Heading::left>(x, count);
  }
}

}  // namespace stepper_detail

/// Steps over a segment whose ends lie inside, in buffer coordinates.
template <class Drawer>
[[gnu::always_inline]] inline void step_inside(const Segment& s, const Drawer& drawer) {
  using namespace stepper_detail;
  const std::int32_t dx = s.x1 - s.x0;
  const std::int32_t dy = s.y1 - s.y0;
  if (dy == 0) {
    if (dx != 0) step_run(drawer.cursor(s.y0, 1, std::abs(dx), 0), s.x0, std::abs(dx), sign_of(dx));
    return;
  }
  if (dx == 0) {
    return step_straight(drawer.cursor(s.y0, sign_of(dy), std::abs(dy), 0), s.x0, 0, std::abs(dy));
  }
  const Slanted line(s);
  const auto cursor = drawer.cursor(line.y0, line.sy, line.major(), 0);
  if (line.slope == Slope::diagonal) {
    return step_straight(cursor, line.x0, line.sx, line.rows);
  }
  if (line.slope == Slope::steep) {
    return step_steep(cursor, Buffer_Columns{}, line.steep_start_reversible(), line.step,
                      line.rows);
  }
  const Shallow_Place start{line.x0, line.shallow_start()};
  const auto end = [x1 = line.x1](Word) { return x1; };
  if (line.sx > 0) {
    step_shallow<Heading::right>(cursor, Buffer_Columns{}, start, line.step, line.rows, end);
  } else {
    step_shallow<Heading::left>(cursor, Buffer_Columns{}, start, line.step, line.rows, end);
  }
}

}  // namespace zbuffer::lines
