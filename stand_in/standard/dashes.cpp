// Cutting a line into dashes. Positions are lengths along the whole line, so that the pattern goes
// on over its points; pieces outside the clip are counted but not made.
#include "stand_in/standard/dashes.h"

#include <algorithm>
#include <cmath>

namespace stand_in {
namespace {

constexpr Dash_Pattern patterns[] = {
    {2, {8, 4}},  {2, {1, 3}}, {4, {8, 3, 1, 3}},  {6, {8, 3, 1, 3, 1, 3}},
    {2, {16, 6}}, {2, {1, 7}}, {4, {16, 3, 4, 3}}, {6, {16, 3, 4, 3, 4, 3}},
};
constexpr int pattern_count = static_cast<int>(std::size(patterns));

/// Narrows the parts of the way `first` to `last` to those with `low` <= from + part * way <=
/// `high`.
bool narrow(double from, double way, double low, double high, double& first, double& last) {
  if (way == 0) return from >= low && from <= high;
  const double a = (low - from) / way;
  const double b = (high - from) / way;
  first = std::max(first, std::min(a, b));
  last = std::min(last, std::max(a, b));
  return first <= last;
}

}  // namespace

int Dash_Pattern::period() const {
  int sum = 0;
  for (int n = 0; n < count; ++n) sum += lengths[n];
  return sum;
}

const Dash_Pattern& dash_pattern(int number) {
  return patterns[number > 0 ? (number - 1) % pattern_count : 0];
}

Dash_Cutter::Dash_Cutter(const Dash_Pattern& pattern, double unit, const KT_Int_Rectangle& clip,
                         double margin, Coloring coloring, Emit emit)
    : pattern_(pattern),
      unit_(unit),
      clip_(clip),
      margin_(margin),
      coloring_(coloring),
      emit_(std::move(emit)) {}

void Dash_Cutter::segment(const Vertex& from, const Vertex& to, double length) {
  const double start = position_;
  Range visible = {start, start + length};
  if (length > 0 && find_visible(from, to, length, visible)) {
    const double period = pattern_.period() * unit_;
    for (double at = std::floor(visible.from / period) * period; at <= visible.to;) {
      for (int n = 0; n < pattern_.count; n += 2) {
        const double dash_end = at + pattern_.lengths[n] * unit_ - 1;
        extend(from, to, length, {std::max(at, visible.from), std::min(dash_end, visible.to)});
        at += (pattern_.lengths[n] + pattern_.lengths[n + 1]) * unit_;
      }
    }
  }
  position_ = start + length;
}

// The range is given with whole numbers, so that thin dashes still begin and end at pixels.
bool Dash_Cutter::find_visible(const Vertex& from, const Vertex& to, double length,
                               Range& range) const {
  double first = 0;
  double last = 1;
  if (!narrow(from.x, to.x - from.x, clip_.left - margin_, clip_.right + margin_, first, last) ||
      !narrow(from.y, to.y - from.y, clip_.bottom - margin_, clip_.top + margin_, first, last)) {
    return false;
  }
  if (last < 1) range.to = std::min(range.to, std::ceil(position_ + last * length));
  if (first > 0) range.from = std::max(range.from, std::floor(position_ + first * length));
  return range.from <= range.to;
}

/// Draws the segment's part `range`, if it is any, in one piece with what ends where it begins.
void Dash_Cutter::extend(const Vertex& from, const Vertex& to, double length, Range range) {
  if (range.from > range.to) return;
  const auto at = [&](double place) {
    return mixed(from, to, (place - position_) / length, coloring_);
  };
  if (piece_.empty() || reach_.to != range.from) {
    flush(false);
    reach_.from = range.from;
    piece_.emplace_back();
  }
  piece_.back() = at(range.from);
  if (range.to > range.from) piece_.push_back(at(range.to));
  reach_.to = range.to;
}

void Dash_Cutter::finish() {
  flush(reach_.to == position_);
}

void Dash_Cutter::flush(bool is_last) {
  if (!piece_.empty()) emit_(piece_, {reach_.from == 0, is_last});
  piece_.clear();
}

}  // namespace stand_in
