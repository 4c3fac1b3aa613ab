// Interpolants: the values that an edge of a triangle carries from row to row. The first is always
// x; depth, colour channels and texture coordinates follow, each with its own start and step.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "module/core/fixed_point.h"

namespace zbuffer {

/// Depth, where there is one, follows x; colours and the rest come after it.
inline constexpr std::size_t at_depth = 1;

/// x, a texel coordinate or a colour channel.
struct Position_Interpolant {
  static Word start(std::int32_t value) { return Position::at(value); }
  static Word step(const Divisor& rows, std::int32_t difference) {
    return rows.line_step(difference);
  }
};

struct Depth_Interpolant {
  static Word start(std::int32_t value) { return Depth::at(value); }
  static Word step(const Divisor& rows, std::int32_t difference) {
    return rows.depth_step(difference);
  }
};

template <class... Values>
struct Interpolants {
  static constexpr std::size_t count = sizeof...(Values);
};

template <class First, class Second>
struct Joined_Interpolants;
template <class... First, class... Second>
struct Joined_Interpolants<Interpolants<First...>, Interpolants<Second...>> {
  using Type = Interpolants<First..., Second...>;
};
template <class First, class Second>
using Joined = typename Joined_Interpolants<First, Second>::Type;

/// A corner of a triangle: its buffer row and the whole value of each interpolant.
template <class Values>
struct Vertex {
  std::int32_t y;
  std::array<std::int32_t, Values::count> value;

  std::int32_t x() const { return value[0]; }
};

/// An edge, stepped upwards row by row: the running value and the step of each interpolant.
template <class Values>
class Edge;

template <class... Values>
class Edge<Interpolants<Values...>> {
 public:
  static constexpr std::size_t value_count = sizeof...(Values);
  using Corner = Vertex<Interpolants<Values...>>;

  [[gnu::always_inline]] Edge(const Corner& from, const Corner& to)
      : Edge(from, to, std::index_sequence_for<Values...>{}) {}

  void advance() {
    for (std::size_t i = 0; i < value_count; ++i) value_[i] += step_[i];
  }
  void move(std::int32_t rows) {
    for (std::size_t i = 0; i < value_count; ++i) value_[i] += as_word(rows) * step_[i];
  }

  Word x() const { return value_[0]; }
  std::int32_t x_step() const { return as_signed(step_[0]); }
  Word operator[](std::size_t interpolant) const { return value_[interpolant]; }

 private:
  template <std::size_t... at>
  [[gnu::always_inline]] Edge(const Corner& from, const Corner& to, std::index_sequence<at...>) {
    const Divisor rows(to.y - from.y);
    ((value_[at] = Values::start(from.value[at])), ...);
    ((step_[at] = Values::step(rows, wrapped_difference(to.value[at], from.value[at]))), ...);
  }

  alignas(16) std::array<Word, value_count> value_;
  alignas(16) std::array<Word, value_count> step_;
};

/// The three corners by rising row; equal rows keep the order of the strip.
template <class Values>
struct Sorted {
  const Vertex<Values>& low;
  const Vertex<Values>& mid;
  const Vertex<Values>& high;
};

struct Corner_Order {
  std::uint8_t low, mid, high;
};

/// Order of corners with rows y0, y1, y2: a look-up by the three comparisons, so that random
/// triangles mispredict nothing here. Entries 2 and 5 cannot occur.
inline Corner_Order order_by_row(std::int32_t y0, std::int32_t y1, std::int32_t y2) {
  static constexpr Corner_Order orders[8] = {{0, 1, 2}, {1, 0, 2}, {0, 1, 2}, {1, 2, 0},
                                             {0, 2, 1}, {1, 0, 2}, {2, 0, 1}, {2, 1, 0}};
  return orders[int{y0 > y1} | (int{y0 > y2} << 1) | (int{y1 > y2} << 2)];
}

template <class Values>
Sorted<Values> sorted(const std::array<Vertex<Values>, 3>& corners) {
  const Corner_Order order = order_by_row(corners[0].y, corners[1].y, corners[2].y);
  return {corners[order.low], corners[order.mid], corners[order.high]};
}

}  // namespace zbuffer
