// Where the values of a span start and how they step: what the spans of all triangles share.
#pragma once

#include "module/core/fixed_point.h"
#include "module/pixels/cursors.h"

namespace zbuffer {

/// Spans that work straight from the edges, without a division.
enum class Short_Spans : std::uint8_t { none, one_and_two };

/// The interpolants of an edge from `first` on.
template <class Edge_Type, std::size_t first>
class Edge_View {
 public:
  explicit Edge_View(const Edge_Type& edge) : edge_(edge) {}
  Word operator[](std::size_t interpolant) const { return edge_[first + interpolant]; }

 private:
  const Edge_Type& edge_;
};

/// What the general form of a span needs to start its values.
struct Span_Start {
  Divisor pixels;        // of the whole span
  std::int32_t skipped;  // pixels of it that are cut off on the left

  template <class Run>
  explicit Span_Start(const Run& run) : pixels(run.whole_count()), skipped(run.skipped()) {}

  /// Between two edges' values of a colour byte or a 16-bit depth.
  template <class Format>
  Stepped between(Word left, Word right) const {
    const std::int32_t from = Format::whole_unsigned(left);
    const Word step = pixels.small_step<Format>(Format::whole_unsigned(right) - from);
    return {Format::at(from) + as_word(skipped) * step, step};
  }
};

}  // namespace zbuffer
