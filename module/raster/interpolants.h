// Lanes: what an edge of a triangle carries from row to row. The first lane is always x; depth,
// colour channels and texture coordinates follow, each with its own start and step.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "module/core/fixed_point.h"

namespace zbuffer {

/// Depth, where there is one, follows x; colours and the rest come behind.
inline constexpr std::size_t depth_lane = 1;

/// x, a texel coordinate or a colour channel.
struct Position_Lane {
  static Word start(std::int32_t value) { return Position::at(value); }
  static Word step(const Step_Count& rows, std::int32_t difference) {
    return rows.line_step(difference);
  }
};

struct Depth_Lane {
  static Word start(std::int32_t value) { return Depth::at(value); }
  static Word step(const Step_Count& rows, std::int32_t difference) {
    return rows.depth_step(difference);
  }
};

template <class... Kinds>
struct Lanes {
  static constexpr std::size_t count = sizeof...(Kinds);
};

template <class First, class Second>
struct Joined_Lanes;
template <class... First, class... Second>
struct Joined_Lanes<Lanes<First...>, Lanes<Second...>> {
  using Type = Lanes<First..., Second...>;
};
template <class First, class Second>
using Joined = typename Joined_Lanes<First, Second>::Type;

/// A corner of a triangle: its buffer row and the whole value of each lane.
template <class Kinds>
struct Vertex {
  std::int32_t y;
  std::array<std::int32_t, Kinds::count> value;

  std::int32_t x() const { return value[0]; }
};

/// An edge on its way up: the running value and the step of each lane.
template <class Kinds>
class Edge;

template <class... Kinds>
class Edge<Lanes<Kinds...>> {
 public:
  static constexpr std::size_t lane_count = sizeof...(Kinds);
  using Corner = Vertex<Lanes<Kinds...>>;

  Edge(const Corner& from, const Corner& to)
      : Edge(from, to, std::index_sequence_for<Kinds...>{}) {}

  void advance() {
    for (std::size_t i = 0; i < lane_count; ++i) value_[i] += step_[i];
  }
  void move(std::int32_t rows) {
    for (std::size_t i = 0; i < lane_count; ++i) value_[i] += as_word(rows) * step_[i];
  }

  Word x() const { return value_[0]; }
  std::int32_t x_step() const { return as_signed(step_[0]); }
  Word operator[](std::size_t lane) const { return value_[lane]; }

 private:
  template <std::size_t... at>
  Edge(const Corner& from, const Corner& to, std::index_sequence<at...>) {
    const Step_Count rows(to.y - from.y);
    ((value_[at] = Kinds::start(from.value[at])), ...);
    ((step_[at] = Kinds::step(rows, wrapped_difference(to.value[at], from.value[at]))), ...);
  }

  alignas(16) std::array<Word, lane_count> value_;
  alignas(16) std::array<Word, lane_count> step_;
};

/// The three corners by rising row; equal rows keep the order of the strip.
template <class Kinds>
struct Sorted {
  const Vertex<Kinds>& top;
  const Vertex<Kinds>& mid;
  const Vertex<Kinds>& bottom;
};

struct Corner_Order {
  std::uint8_t top, mid, bottom;
};

/// Order of corners with rows y0, y1, y2: a look-up by the three comparisons, so that random
/// triangles mispredict nothing here. Entries 2 and 5 cannot occur.
inline Corner_Order order_by_row(std::int32_t y0, std::int32_t y1, std::int32_t y2) {
  static constexpr Corner_Order orders[8] = {{0, 1, 2}, {1, 0, 2}, {0, 1, 2}, {1, 2, 0},
                                             {0, 2, 1}, {1, 0, 2}, {2, 0, 1}, {2, 1, 0}};
  return orders[int{y0 > y1} | (int{y0 > y2} << 1) | (int{y1 > y2} << 2)];
}

template <class Kinds>
Sorted<Kinds> sorted(const std::array<Vertex<Kinds>, 3>& corners) {
  const Corner_Order order = order_by_row(corners[0].y, corners[1].y, corners[2].y);
  return {corners[order.top], corners[order.mid], corners[order.bottom]};
}

}  // namespace zbuffer
