// Reference model of the clipper. Sides are numbered around the rectangle: left, top, right,
// bottom. A vertex is a row of numbers: x, y, z, four channels of colour, the parameter.
#include "tests/differential/model_clipper.h"

#include <algorithm>
#include <array>
#include <climits>
#include <limits>
#include <optional>

namespace model {
namespace {

constexpr int none = -1;  // for a side
constexpr std::array<double, 4> bounds{-4000, 28760, 28760, -4000};
constexpr double bound(int side) {
  return bounds[static_cast<std::size_t>(side)];
}

constexpr std::size_t first_channel = 3, first_parameter = 7;
using Vertex = std::array<double, 10>;

/// A number as a vertex holds it: channels are bytes and parameters floats.
double stored(std::size_t k, double value) {
  if (k >= first_parameter) return to_float(value);
  return k >= first_channel ? static_cast<std::uint8_t>(value) : value;
}

Vertex vertex_of(const Corner& c) {
  const auto& [p, color, parameter, vector] = c;
  return {double(p.x),         double(p.y),       double(p.z),         double(color.blue),
          double(color.green), double(color.red), double(color.alpha), parameter.s,
          parameter.t,         parameter.r};
}

Corner corner_of(const Vertex& v) {
  const auto channel = [&](std::size_t k) { return static_cast<std::uint8_t>(v[k]); };
  const auto parameter = [&](std::size_t k) { return static_cast<float>(v[k]); };
  return {{rounded(v[0]), rounded(v[1]), rounded(v[2])},
          {channel(3), channel(4), channel(5), channel(6)},
          {parameter(7), parameter(8), parameter(9)}};
}

/// The point at `t` from `a` to `b`, which lies on that side, if any.
Vertex between(const Vertex& a, const Vertex& b, double t, int side) {
  Vertex v;
  for (std::size_t k = 0; k < v.size(); ++k) v[k] = stored(k, a[k] + (b[k] - a[k]) * t);
  for (std::size_t k = 0; k < 2; ++k) v[k] = std::clamp(v[k], bounds[0], bounds[2]);
  if (side != none) v[static_cast<std::size_t>(side % 2)] = bound(side);
  return v;
}

struct Cut {
  Vertex start, end;
  int entry = none, exit = none;
};

/// What of an edge lies inside.
std::optional<Cut> cut_edge(const Vertex& a, const Vertex& b, bool reversed = false) {
  // A later cut, which is one in y, wins where it is as good as the earlier one.
  constexpr double slacks[2] = {std::numeric_limits<double>::infinity(), 1e-12f};
  double start = 0, end = 1;
  Cut cut;
  for (const std::size_t axis : {0u, 1u}) {
    const double d = b[axis] - a[axis];
    const int low = axis == 0 ? 0 : 3, high = axis == 0 ? 2 : 1;
    const int near = d > 0 ? low : high, far = d > 0 ? high : low;
    const auto beyond = [&](int side, const Vertex& v) {
      return side == low ? bound(low) > v[axis] : v[axis] > bound(high);
    };
    const auto meet = [&](int side) { return (bound(side) - a[axis]) / d; };
    if (beyond(near, b) || beyond(far, a)) return std::nullopt;
    if (beyond(near, a) && meet(near) >= start - slacks[axis]) start = meet(cut.entry = near);
    if (beyond(far, b) && end + slacks[axis] >= meet(far)) end = meet(cut.exit = far);
  }
  if (start > end || (start > 0.999 && reversed)) return std::nullopt;
  if (start > 0.999) {  // too near to the other end: from there
    std::optional<Cut> back = cut_edge(b, a, true);
    if (back) *back = {back->end, back->start, back->exit, back->entry};
    return back;
  }
  cut.start = between(a, b, start, cut.entry);
  cut.end = between(a, b, end, cut.exit);
  return cut;
}

struct Clipper {
  std::array<Vertex, 3> p;

  std::vector<Vertex> outline() const {
    std::vector<Vertex> outline;
    int first_side = none, open_side = none;  // where the outline begins and where it has left
    bool follows = true;                      // the edge starts where the one before ended
    for (std::size_t i = 0; i < 3; ++i) {
      const std::optional<Cut> cut = cut_edge(p[i], p[(i + 1) % 3]);
      if (cut) {
        const bool begins = open_side == none && (!follows || (i == 0 && cut->entry != none));
        if (begins) first_side = cut->entry;
        go_round(outline, open_side, cut->entry);
        if (begins || open_side != none) outline.push_back(cut->start);
        outline.push_back(cut->end);
        open_side = cut->exit;
      }
      follows = cut.has_value();
    }
    go_round(outline, open_side, first_side);
    return outline;
  }

  /// All of the rectangle, when its bottom left corner lies in the triangle.
  std::vector<Vertex> whole_rectangle() const {
    if (!holds(bounds[0], bounds[3])) return {};
    return {on_plane(bounds[0], bounds[3]), on_plane(bounds[0], bounds[1]),
            on_plane(bounds[2], bounds[1]), on_plane(bounds[2], bounds[3])};
  }

  /// Appends the corners between two sides, in the direction of the triangle.
  void go_round(std::vector<Vertex>& outline, int from, int to) const {
    while (from != none && to != none && from != to) {
      const int next = (from + (area() > 0 ? 3 : 1)) % 4;
      const bool from_x = from % 2 == 0;
      outline.push_back(on_plane(bound(from_x ? from : next), bound(from_x ? next : from)));
      from = next;
    }
  }

  double side(std::size_t corner, std::size_t k) const { return p[corner][k] - p[0][k]; }
  /// Twice the area, positive where the corners go round counterclockwise.
  double area() const { return side(1, 0) * side(2, 1) - side(1, 1) * side(2, 0); }

  /// How number `k` changes along an axis.
  double gradient(std::size_t axis, std::size_t k) const {
    const std::size_t other = 1 - axis;
    const double change = side(1, k) * side(2, other) - side(2, k) * side(1, other);
    if (area() != 0) return (axis == 0 ? change : -change) / area();
    for (const std::size_t corner : {1u, 2u})
      if (side(corner, axis) != 0) return side(corner, k) / side(corner, axis);
    return 0;
  }

  Vertex on_plane(double x, double y) const {
    Vertex v{x, y};
    for (std::size_t k = 2; k < v.size(); ++k) {
      const auto slope = [&](std::size_t axis) {
        const double g = gradient(axis, k);
        return k < first_channel ? g : to_float(g);
      };
      v[k] = p[0][k] + (x - p[0][0]) * slope(0) + (y - p[0][1]) * slope(1);
      const bool is_channel = k >= first_channel && k < first_parameter;
      v[k] = stored(k, is_channel ? std::clamp(v[k], 0.0, 255.0) : v[k]);
    }
    return v;
  }

  /// In coordinates of the two sides from the first corner: u along the one, v along the other.
  bool holds(double x, double y) const {
    const double px = x - p[0][0], py = y - p[0][1];
    const double a = side(1, 0), b = side(2, 1), c = side(1, 1), d = side(2, 0);
    const bool upright = a == 0;
    if (upright ? c == 0 || d == 0 : area() == 0) return false;
    const double v = upright ? px / d : (a * py - px * c) / area();
    const double u = upright ? (py - v * b) / c : (px - v * d) / a;
    return v >= 0 && v <= 1 && u > 0 && u + v <= 1;
  }
};

}  // namespace

int truncated(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}
int rounded(double value) {
  return truncated(value >= 0 ? value + 0.5 : value - 0.49999999999);
}
int rounded(float value) {
  return truncated(to_float(value >= 0 ? value + 0.5f : value - 0.499999f));
}
float to_float(double value) {
  const volatile float nearest = static_cast<float>(value);
  return nearest;
}

std::vector<Corner> clip_triangle(std::span<const Corner> corners) {
  const auto in_range = [](int value) { return value >= bounds[0] && value <= bounds[2]; };
  const auto lies_inside = [&](const Corner& c) {
    return in_range(c.point.x) && in_range(c.point.y);
  };
  if (std::all_of(corners.begin(), corners.end(), lies_inside))
    return {corners.begin(), corners.end()};
  const Clipper clipper{{vertex_of(corners[0]), vertex_of(corners[1]), vertex_of(corners[2])}};
  std::vector<Vertex> outline = clipper.outline();
  if (outline.empty()) outline = clipper.whole_rectangle();
  std::vector<Corner> strip;
  const std::size_t n = outline.size();
  // From the first vertex on along both arms of the outline in turn; of a whole rectangle too.
  for (std::size_t i = 0; n >= 3 && n <= 8 && i < n; ++i)
    strip.push_back(corner_of(outline[i % 2 == 1 ? (i + 1) / 2 : (n - i / 2) % n]));
  return strip;
}

}  // namespace model
