// Line patterns: a line is cut into dashes, whose phase runs on through its points.
//
// Lengths are counted in pixels from the line's first pixel on; a dash of length n begins at the
// middle of its first pixel and ends at the middle of its last, n - 1 further on. Only what lies
// near the clip is cut, as lines may be very long.
#pragma once

#include <functional>
#include <vector>

#include "stand_in/standard/line.h"

namespace stand_in {

/// Lengths of a dash, the gap after it, the next dash and so on, in units of the line's weight.
struct Dash_Pattern {
  int count;
  int lengths[6];

  int period() const;
};

/// 1 dashed, 2 dotted, 3 dash-dot, 4 dash-dot-dot, 5 long dashes, 6 sparse dots, 7 long and short
/// dashes, 8 one long and two short; then over again. What is not positive is dashed.
const Dash_Pattern& dash_pattern(int number);

class Dash_Cutter {
 public:
  using Emit = std::function<void(std::span<const Vertex>, Piece_Ends)>;

  /// Pieces beyond `clip` by more than `margin` need not be made. `unit` is in pixels.
  Dash_Cutter(const Dash_Pattern& pattern, double unit, const KT_Int_Rectangle& clip, double margin,
              Coloring coloring, Emit emit);

  /// The next segment of the line; `length` is what it counts.
  void segment(const Vertex& from, const Vertex& to, double length);
  /// Ends the line.
  void finish();

 private:
  struct Range {
    double from;
    double to;
  };

  bool find_visible(const Vertex& from, const Vertex& to, double length, Range& range) const;
  void extend(const Vertex& from, const Vertex& to, double length, Range range);
  void flush(bool is_last);

  const Dash_Pattern& pattern_;
  double unit_;
  const KT_Int_Rectangle& clip_;
  double margin_;
  Coloring coloring_;
  Emit emit_;
  double position_ = 0;        // counted length up to the present segment
  std::vector<Vertex> piece_;  // the dash at hand; empty: none
  Range reach_ = {0, 0};       // of the dash at hand
};

}  // namespace stand_in
