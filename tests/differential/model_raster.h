// Reference model, what all triangles share: strips, the clip, the rows of a triangle, edges.
#pragma once

#include <algorithm>
#include <array>
#include <climits>
#include <span>

#include "tests/differential/model_clipper.h"
#include "tests/differential/model_pixels.h"

namespace model {

enum class Layer { p2d, dc, p2di, dci };
constexpr bool is_inside(Layer layer) {
  return layer == Layer::dc || layer == Layer::dci;
}

/// The points of a strip: floats in the float layers, whole numbers in the others.
struct Strip_Points {
  Layer layer{};
  std::vector<KT_Point> floats;
  std::vector<KT_DCI_Point> points;

  int count() const { return static_cast<int>(std::max(floats.size(), points.size())); }
  std::vector<KT_DCI_Point> whole() const;
};

using Strip = std::span<const Corner>;

/// Cuts a strip at `hard`: `run(strip)` gets stretches that lie inside, `single(triangle)` each
/// triangle that may cross it.
template <class Run, class Single>
void split_strip(const KT_Int_Rectangle& hard, Strip strip, Run run, Single single) {
  std::vector<KT_DCI_Point> points;
  for (const Corner& corner : strip) points.push_back(corner.point);
  const std::size_t count = points.size();
  std::vector<short> c(count);
  const int inside = KD_Clip(hard, static_cast<int>(count), points.data(), c.data());
  if (inside == static_cast<int>(count)) return run(strip);
  bool drops = true;  // a triangle beyond one side goes, unless it follows one that was cut
  for (std::size_t i = 0; inside != 0 && i + 2 < count; ++i) {
    if ((c[i] | c[i + 1] | c[i + 2]) == 0) {
      const std::size_t first = i;
      while (i + 3 < count && c[i + 3] == 0) ++i;
      run(strip.subspan(first, i - first + 3));
      drops = true;
    } else {
      drops = drops && (c[i] & c[i + 1] & c[i + 2]) != 0;
      if (!drops) single(strip.subspan(i, 3));
    }
  }
}

/// The values of an edge on one row, x first, each with its gain a row.
template <std::size_t n>
struct Edge {
  std::array<std::uint32_t, n> at{}, step{};
  void advance(int rows) {
    for (std::size_t k = 0; k < n; ++k) at[k] += bits(product(rows, static_cast<int>(step[k])));
  }
};
constexpr std::uint32_t edge_start(int value) {
  return bits(value) << 16 | 0x8000;
}
constexpr std::uint32_t edge_start_of_depth(int z) {
  return bits(z) << 15 | 0x4000;
}

/// What of a triangle may be drawn, in buffer coordinates; `end_x` and `end_y` are left out.
struct Limits {
  bool clipped = false;
  int x = 0, end_x = 0, y = INT_MIN, end_y = INT_MAX;
  Limits() = default;
  Limits(const KT_Int_Rectangle& hard, KT_Int_XY origin)
      : clipped(true),
        x(hard.left - origin.x),
        end_x(hard.right - origin.x + 1),
        y(hard.bottom - origin.y),
        end_y(hard.top - origin.y + 1) {}
};

/// A row of a triangle: `length` pixels from `left` on, of which `from` to `to` - 1 may be drawn.
/// Positions of clipped triangles have a sign.
struct Span {
  int y, left, length, from, to;
  Span(int row, std::uint32_t left_x, std::uint32_t right_x, const Limits& limits) : y(row) {
    const auto whole = [&](std::uint32_t x) {
      return limits.clipped ? static_cast<int>(x) >> 16 : static_cast<int>(x >> 16);
    };
    from = left = whole(left_x);
    to = whole(right_x);
    length = to - left;
    if (limits.clipped) from = std::max(from, limits.x), to = std::min(to, limits.end_x);
  }
};

/// Sorts three vertices by y; false when no row of theirs is within the limits.
template <class Vertex>
bool sort_rows(std::array<Vertex, 3>& v, const Limits& limits) {
  std::stable_sort(v.begin(), v.end(), [](auto& a, auto& b) { return a.y < b.y; });
  return std::max(limits.y, v[0].y) < std::min(limits.end_y, v[2].y);
}

/// Calls `draw(span, left edge, right edge, before the middle vertex)` row by row;
/// `edge_of(p, q, rows)` makes an edge.
template <class Vertex, class Edge_Of, class Draw>
void walk_rows(const std::array<Vertex, 3>& v, const Limits& limits, Edge_Of edge_of, Draw draw) {
  auto longest = edge_of(v[0], v[2], v[2].y - v[0].y);
  int y = std::max(limits.y, v[0].y);
  longest.advance(y - v[0].y);
  for (std::size_t half = 0; half < 2; ++half) {
    const int end = std::min(limits.end_y, v[half + 1].y);
    if (y >= end) continue;
    auto shorter = edge_of(v[half], v[half + 1], v[half + 1].y - v[half].y);
    shorter.advance(y - v[half].y);
    const auto sign = [](std::uint32_t value) { return static_cast<int>(value); };
    const bool right = half == 0 ? sign(shorter.step[0]) > sign(longest.step[0])
                                 : sign(shorter.at[0]) >= sign(longest.at[0]);
    for (; y < end; ++y, shorter.advance(1), longest.advance(1)) {
      const auto& l = right ? longest : shorter;
      const auto& r = right ? shorter : longest;
      draw(Span(y, l.at[0], r.at[0], limits), l, r, half == 0);
    }
  }
}

}  // namespace model
