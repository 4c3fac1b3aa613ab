// Where the values of a span start and how they step: what the spans of all triangles share.
#pragma once

#include "module/core/fixed_point.h"

namespace zbuffer {

/// The lanes of an edge from `first` on.
template <class Edge_Type, std::size_t first>
class Lane_View {
 public:
  explicit Lane_View(const Edge_Type& edge) : edge_(edge) {}
  Word operator[](std::size_t lane) const { return edge_[first + lane]; }

 private:
  const Edge_Type& edge_;
};

/// A value and its step from pixel to pixel.
struct Stepped {
  Word value;
  Word step;

  void advance() { value += step; }
  void advance(std::int32_t count) { value += as_word(count) * step; }
};

/// Three channels on their way, as named values: an array would go through memory at every pixel.
struct Stepped_Rgb {
  Stepped red, green, blue;

  void advance() {
    red.advance();
    green.advance();
    blue.advance();
  }
  void advance(std::int32_t count) {
    red.advance(count);
    green.advance(count);
    blue.advance(count);
  }
};

/// What the general form of a span needs to start its values.
struct Span_Start {
  Step_Count pixels;     // of the whole span
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
