// Spans: one row of a triangle, from its edges to its pixels.
//
// A span is drawn in stretches. A solid span is one stretch of ordinary pixels; pattern and mask
// give bits for up to 64 pixels at a time, and a stretch that is all ordinary or all hidden is
// taken at once. The order at a pixel is: pixel bits, then depth test, then colour; a hidden pixel
// writes no depth. Values step through every pixel, drawn or
// not.
#pragma once

#include "module/core/frame.h"
#include "module/raster/walk.h"
#include "module/triangles/rules.h"
#include "module/triangles/sources.h"
#include "module/triangles/span_cursor.h"

namespace zbuffer::triangles {

template <class Test>
struct Depth_Interpolants {
  using Values = Interpolants<Depth_Interpolant>;
};
template <>
struct Depth_Interpolants<No_Depth_Test> {
  using Values = Interpolants<>;
};

template <class Bits, class Test, class Paint, Short_Spans short_spans>
class Span {
 public:
  using Pixel = typename Paint::Pixel;
  using Values =
      Joined<Joined<Interpolants<Position_Interpolant>, typename Depth_Interpolants<Test>::Values>,
             typename Paint::Source::Values>;
  static constexpr std::size_t first_of_paint = 1 + Depth_Interpolants<Test>::Values::count;
  using Paint_View = Edge_View<Edge<Values>, first_of_paint>;

  Span(const Frame& frame, const Bits& bits, const Paint& paint)
      : frame_(frame), bits_(bits), paint_(paint) {}

  template <class Run>
  void operator()(std::int32_t y, const Run& run, const Edge<Values>& left,
                  const Edge<Values>& right) {
    if constexpr (short_spans == Short_Spans::one_and_two && has_values) {
      if (run.count <= 2) return draw_short(y, run, left, right);
    }
    draw(y, run, left, right);
  }

 private:
  // Whether anything changes along a span, so that its form matters.
  static constexpr bool has_values = Test::tests || Paint::Source::Values::count > 0;

  template <class Run>
  void draw(std::int32_t y, const Run& run, const Edge<Values>& left, const Edge<Values>& right) {
    const Span_Start start(run);
    Span_Cursor<Test, Paint> cursor{
        paint_,
        frame_.color<Pixel>(y, run.x),
        nullptr,
        {},
        paint_.source.begin(start, y, Paint_View(left), Paint_View(right))};
    if constexpr (Test::tests) {
      cursor.depth = frame_.depth(y, run.x);
      cursor.z = start.between<Depth>(depth_of(left), depth_of(right));
    }
    if constexpr (Bits::solid) {
      cursor.ordinary(run.count);
    } else {
      draw_bits(cursor, bits_.begin(run.x, y), run.count);
    }
  }

  static void draw_bits(Span_Cursor<Test, Paint>& cursor, auto bits, std::int32_t count) {
    for (; count > 0; count -= bits_at_once) {
      const std::int32_t part = std::min(count, bits_at_once);
      const Pixel_Bits part_bits = bits.next(part);
      if (part_bits.ordinary == first_bits(part)) {
        cursor.ordinary(part);
      } else if ((part_bits.ordinary | part_bits.contrast) == 0) {
        cursor.skip(part);
      } else {
        cursor.mixed(part, part_bits);
      }
    }
  }

  // One or two pixels without a division: the left edge's values, and for the second pixel the
  // mean of both edges. Only solid fillings come here, so that no pixel takes a contrast colour.
  template <class Run>
  void draw_short(std::int32_t y, const Run& run, const Edge<Values>& left,
                  const Edge<Values>& right) {
    Pixel* const to = frame_.color<Pixel>(y, run.x);
    std::uint64_t visible = first_bits(run.count);
    if constexpr (!Bits::solid) visible = bits_.begin(run.x, y).next(run.count).ordinary;
    const Paint_View from(left);
    if (visible & 2) {
      const Word z = (depth_of(right) >> 1) + (depth_of(left) >> 1);
      plot(y, run.x + 1, z,
           [&] { return paint_.source.at_mean(from, Paint_View(right), y, to + 1); });
    }
    if (visible & 1) {
      plot(y, run.x, depth_of(left), [&] { return paint_.source.at_left(from, y, to); });
    }
  }

  static Word depth_of(const Edge<Values>& edge) {
    if constexpr (Test::tests) {
      return edge[at_depth];
    } else {
      return 0;
    }
  }

  template <class Value>
  void plot(std::int32_t y, std::int32_t x, Word z, Value value) {
    if constexpr (Test::tests) {
      if (!Test::try_pass(frame_.depth(y, x), z)) return;
    }
    Pixel* const to = frame_.color<Pixel>(y, x);
    *to = paint_.blend(*to, value());
  }

  const Frame& frame_;
  const Bits& bits_;
  const Paint& paint_;
};

}  // namespace zbuffer::triangles
