// The walk: a triangle of whole-pixel corners becomes rows of spans. Every triangle of the
// renderer goes through here.
//
// Buffer coordinates, y up. The walk goes from the corner of the lowest row to that of the highest.
//
//         high                rows    low.y .. high.y - 1: the highest row is not drawn
//          /|                 columns left .. right - 1, left and right being the whole parts of
//    short/ | long                    the two edges: the right pixel is not drawn
//       mid  |                shared edges run through the same values in both triangles, so that
//         \  |                        neighbours neither overlap nor leave a gap
//     short\ |
//           low
//
// Limits say which rows and columns may be visited; the span does the rest.
#pragma once

#include <algorithm>
#include <limits>

#include "module/raster/interpolants.h"

namespace zbuffer {

/// A stretch of a row, all of it visible.
struct Whole_Run {
  std::int32_t x;
  std::int32_t count;

  std::int32_t whole_count() const { return count; }
  static constexpr std::int32_t skipped() { return 0; }
};

/// The visible piece of a stretch that the hard clip has cut. Values run along the whole one.
struct Cut_Run {
  std::int32_t x;
  std::int32_t count;
  std::int32_t whole_x;
  std::int32_t whole_right;

  std::int32_t whole_count() const { return whole_right - whole_x; }
  std::int32_t skipped() const { return x - whole_x; }
};

struct Row_Range {
  std::int32_t first;
  std::int32_t count;
};

/// Limits of points known to lie inside: none. Columns are read unsigned.
struct Trusted {
  using Run = Whole_Run;

  Row_Range rows(std::int32_t from, std::int32_t to) const { return {from, to - from}; }
  bool visits(std::int32_t) const { return true; }
  Run run(Word left, Word right) const {
    const std::int32_t x = Position::whole_unsigned(left);
    return {x, Position::whole_unsigned(right) - x};
  }
};

/// As `Trusted`, but rows outside the window are passed over. Particular to one scan of
/// `RGB_Alpha`.
struct Row_Guard : Trusted {
  std::int32_t height;

  explicit Row_Guard(std::int32_t window_height) : height(window_height) {}
  bool visits(std::int32_t y) const { return y >= 0 && y < height; }
};

/// The hard clip in buffer coordinates; columns are read signed, for edges may lie left of it.
struct Hard_Clip {
  using Run = Cut_Run;

  std::int32_t left, right;  // right is excluded
  std::int32_t bottom, top;  // top is excluded

  Hard_Clip(const KT_Int_Rectangle& clip, KT_Int_XY origin)
      : left(wrapped_difference(clip.left, origin.x)),
        right(after(wrapped_difference(clip.right, origin.x))),
        bottom(wrapped_difference(clip.bottom, origin.y)),
        top(after(wrapped_difference(clip.top, origin.y))) {}

  /// The place after `last`; after the last int there is none.
  static std::int32_t after(std::int32_t last) {
    return last == std::numeric_limits<std::int32_t>::max() ? last : last + 1;
  }

  Row_Range rows(std::int32_t from, std::int32_t to) const {
    const std::int32_t first = std::max(bottom, from);
    return {first, std::min(top, to) - first};
  }
  bool visits(std::int32_t) const { return true; }
  Run run(Word left_edge, Word right_edge) const {
    const std::int32_t whole_x = Position::whole_signed(left_edge);
    const std::int32_t whole_right = Position::whole_signed(right_edge);
    const std::int32_t x = std::max(left, whole_x);
    return {x, std::min(right, whole_right) - x, whole_x, whole_right};
  }
};

/// Visits `rows` between two edges, moving both on.
template <class Values, class Limits, class Span>
void walk_rows(Row_Range rows, Edge<Values>& long_edge, Edge<Values>& short_edge,
               bool short_is_right, const Limits& limits, Span& span) {
  Edge<Values>& left = short_is_right ? long_edge : short_edge;
  Edge<Values>& right = short_is_right ? short_edge : long_edge;
  for (std::int32_t y = rows.first; y < rows.first + rows.count; ++y) {
    const auto run = limits.run(left.x(), right.x());
    if (run.count > 0 && limits.visits(y)) span(y, run, left, right);
    left.advance();
    right.advance();
  }
}

template <class Values, class Limits, class Span>
void walk_triangle(const Sorted<Values>& corners, const Limits& limits, Span& span) {
  const auto& [low, mid, high] = corners;
  const Row_Range all = limits.rows(low.y, high.y);
  if (all.count < 1) return;
  Edge<Values> long_edge(low, high);
  long_edge.move(all.first - low.y);

  // From `low` to `mid` the steps say which edge is right; with equal steps the short one is left.
  if (const Row_Range rows = limits.rows(low.y, mid.y); rows.count > 0) {
    Edge<Values> short_edge(low, mid);
    short_edge.move(rows.first - low.y);
    walk_rows(rows, long_edge, short_edge, short_edge.x_step() > long_edge.x_step(), limits, span);
  }
  // From `mid` to `high` the positions do, and the short edge is right where they are equal. The
  // long edge goes on from where the lower part left it.
  if (const Row_Range rows = limits.rows(mid.y, high.y); rows.count > 0) {
    Edge<Values> short_edge(mid, high);
    short_edge.move(rows.first - mid.y);
    walk_rows(rows, long_edge, short_edge, as_signed(short_edge.x()) >= as_signed(long_edge.x()),
              limits, span);
  }
}

}  // namespace zbuffer
