// The stepper of a segment that leaves the hard clip: the pixels of the whole segment from the row
// on where it enters, up to the row where it leaves.
//
// The segment comes in device coordinates, cut to the device range, with an outcode for each end
// whose AND is 0. Steep lines down to the left are the exception to "the pixels of the whole
// segment": here they take no correction of their start.
#pragma once

#include "module/core/outcode.h"
#include "module/lines/stepper.h"

namespace zbuffer::lines {

/// What a clipped segment is cut by.
struct Crossing {
  const KT_Int_Rectangle& clip;
  KT_Int_XY origin;  // device coordinates of the buffer
  unsigned code0;
  unsigned code1;
};

namespace stepper_detail {

/// The rows of a slanted segment that are seen. Where its end is not clipped, the last row is the
/// end's, whose pixel is left to the next segment.
struct Visible_Rows {
  std::int32_t first;
  std::int32_t last;
  bool end_clipped;

  Visible_Rows(const Slanted& line, const Crossing& at)
      : first(row_of_end(line, at.clip, at.code0, line.y0)),
        last(row_of_end(line, at.clip, at.code1, line.y1)),
        end_clipped(at.code1 != 0) {}

  /// Whether the line passes beside the rectangle.
  bool missed(const Slanted& line, const Crossing& at) const {
    return ((at.code1 & beyond_top) && first > at.clip.top) ||
           ((at.code1 & beyond_bottom) && first < at.clip.bottom) ||
           ((at.code0 & beyond_top) && last > at.clip.top) ||
           ((at.code0 & beyond_bottom) && last < at.clip.bottom) || whole_rows(line) < 0;
  }
  /// Rows ahead of the last one.
  std::int32_t whole_rows(const Slanted& line) const { return (last - first) * line.sy; }

 private:
  static std::int32_t row_of_end(const Slanted& line, const KT_Int_Rectangle& clip, unsigned code,
                                 std::int32_t y) {
    if (code & beyond_left) return row_at_side(line, clip, -1);
    if (code & beyond_right) return row_at_side(line, clip, 1);
    if (code & beyond_bottom) return clip.bottom;
    if (code & beyond_top) return clip.top;
    return y;
  }
};

/// The visible places of a straight segment from `from` up to, not including, `to`.
struct Visible_Run {
  std::int32_t sign;
  std::int32_t first;
  std::int32_t count;  // may be below 1

  Visible_Run(std::int32_t from, std::int32_t to, std::int32_t low, std::int32_t high)
      : sign(from < to ? 1 : -1),
        first(sign > 0 ? std::max(from, low) : std::min(from, high)),
        count(sign > 0 ? std::min(to - 1, high) - first + 1 : first - std::max(to + 1, low) + 1) {}
};

template <class Drawer>
void step_clipped_row(const Segment& s, const Crossing& at, const Drawer& drawer) {
  const Visible_Run run(s.x0, s.x1, at.clip.left, at.clip.right);
  if (run.count < 1) return;
  step_run(drawer.cursor(s.y0 - at.origin.y, 1, std::abs(s.x1 - s.x0), std::abs(run.first - s.x0)),
           run.first - at.origin.x, run.count, run.sign);
}

template <class Drawer>
void step_clipped_column(const Segment& s, const Crossing& at, const Drawer& drawer) {
  const Visible_Run run(s.y0, s.y1, at.clip.bottom, at.clip.top);
  if (run.count < 1) return;
  step_straight(drawer.cursor(run.first - at.origin.y, run.sign, std::abs(s.y1 - s.y0),
                              std::abs(run.first - s.y0)),
                s.x0 - at.origin.x, 0, run.count);
}

/// The first run of a shallow line: from its own start, or from where its entry row is entered.
inline Shallow_Place shallow_place(const Slanted& line, const Crossing& at, std::int32_t skipped) {
  if (at.code0 == 0) return {line.x0, line.shallow_start()};
  const Word position = line.shallow_entry() + as_word(skipped) * line.step;
  const std::int32_t x = Device_Columns::whole(position);
  return {line.sx > 0 ? std::max(x, at.clip.left) : std::min(x, at.clip.right),
          position + line.step};
}

template <class Drawer>
void step_clipped_shallow(const Slanted& line, const Crossing& at, const Visible_Rows& rows,
                          const Drawer& drawer) {
  const Shallow_Place place = shallow_place(line, at, std::abs(rows.first - line.y0));
  const auto cursor =
      drawer.cursor(rows.first - at.origin.y, line.sy, line.major(), std::abs(line.x0 - place.x));
  const Device_Columns columns{at.origin.x};
  const std::int32_t whole_rows = rows.whole_rows(line);
  if (line.sx > 0) {
    step_shallow<Heading::right>(cursor, columns, place, line.step, whole_rows, [&](Word position) {
      return rows.end_clipped ? std::min(columns.whole(position), at.clip.right + 1) : line.x1;
    });
  } else {
    step_shallow<Heading::left>(cursor, columns, place, line.step, whole_rows, [&](Word position) {
      return rows.end_clipped ? std::max(columns.whole(position), at.clip.left - 1) : line.x1;
    });
  }
}

}  // namespace stepper_detail

/// Steps over what of a segment lies inside the hard clip.
template <class Drawer>
void step_clipped(const Segment& s, const Crossing& at, const Drawer& drawer) {
  using namespace stepper_detail;
  if (s.y0 == s.y1) return step_clipped_row(s, at, drawer);
  if (s.x0 == s.x1) return step_clipped_column(s, at, drawer);
  const Slanted line(s);
  const Visible_Rows rows(line, at);
  if (rows.missed(line, at)) return;
  if (line.slope == Slope::shallow) return step_clipped_shallow(line, at, rows, drawer);
  const std::int32_t skipped = std::abs(rows.first - line.y0);
  const auto cursor = drawer.cursor(rows.first - at.origin.y, line.sy, line.major(), skipped);
  const std::int32_t count = rows.whole_rows(line) + (rows.end_clipped ? 1 : 0);
  const Device_Columns columns{at.origin.x};
  if (line.slope == Slope::diagonal) {
    return step_straight(cursor, columns.in_buffer(line.x0 + line.sx * skipped), line.sx, count);
  }
  step_steep(cursor, columns, line.steep_start() + as_word(skipped) * line.step, line.step, count);
}

}  // namespace zbuffer::lines
