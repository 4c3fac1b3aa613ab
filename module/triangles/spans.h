// Spans: one row of a triangle, from its edges to its pixels.
//
// A span is drawn in stretches. A solid span is one stretch of ordinary pixels; a cover gives up
// to 64 pixels at a time, and a stretch that is all ordinary or all hidden is taken at once. The
// order at a pixel is: depth test, then cover, then colour; what a hidden pixel would have written
// to depth is left out as well. Values step through every pixel, drawn or not.
#pragma once

#include "module/core/frame.h"
#include "module/pixels/depth_test.h"
#include "module/pixels/pixel_bits.h"
#include "module/raster/walk.h"
#include "module/triangles/rules.h"
#include "module/triangles/sources.h"
#include "module/triangles/stores.h"

namespace zbuffer {

template <class Gate>
struct Gate_Lanes {
  using Kinds = Lanes<Depth_Lane>;
};
template <>
struct Gate_Lanes<No_Gate> {
  using Kinds = Lanes<>;
};

/// The running state of a span: pixel addresses, depth and source.
template <class Gate, class Paint>
struct Pen {
  using Pixel = typename Paint::Pixel;
  using Source = typename Paint::Source::Running;

  const Paint& paint;
  Pixel* to;
  std::uint16_t* depth;
  Stepped z;
  Source source;

  void ordinary(std::int32_t count) {
    if constexpr (!Gate::tests && Paint::Source::constant) {
      paint.store.run(to, count, source);
      to += count;
    } else if constexpr (Paint::Store::branch_free) {
      count < worth_vectors ? ordinary_short(count) : ordinary_branch_free(count);
    } else {
      for (; count > 0; count -= chunk_size) {
        const std::int32_t part = std::min(count, chunk_size);
        mixed(part, {first_bits(part), 0});
      }
    }
  }

  /// Leaves `count` pixels alone.
  void skip(std::int32_t count) {
    to += count;
    if constexpr (Gate::tests) depth += count;
    z.advance(count);
    source.advance(count);
  }

  /// Draws at most a chunk of pixels by its bits.
  void mixed(std::int32_t count, Chunk chunk) {
    if constexpr (fills_bits) {
      fill_bits(to, count, chunk.ordinary, source.word);
      for (; chunk.contrast != 0; chunk.contrast &= chunk.contrast - 1) {
        Pixel& pixel = to[std::countr_zero(chunk.contrast)];
        pixel = paint.contrast(pixel);
      }
      to += count;
      return;
    }
    for (std::int32_t i = 0; i < count; ++i) {
      const bool is_contrast = chunk.contrast & 1;
      if (((chunk.ordinary & 1) || is_contrast) && passes()) {
        *to = is_contrast ? paint.contrast(*to) : paint.store(*to, source.value(to));
      }
      chunk.ordinary >>= 1;
      chunk.contrast >>= 1;
      ++to;
      if constexpr (Gate::tests) ++depth;
      z.advance();
      source.advance();
    }
  }

 private:
  // Whether ordinary pixels are all stored alike.
  static constexpr bool fills_bits = !Gate::tests &&
                                     std::is_same_v<Source, Constant_Running<Pixel>> &&
                                     std::is_same_v<typename Paint::Store, Replace>;

  // Shorter runs than this lose more in setting up vectors than they gain.
  static constexpr std::int32_t worth_vectors = 16;

  void ordinary_short(std::int32_t count) {
    for (; count > 0; --count) {
      if (passes()) *to = paint.store(*to, source.value(to));
      ++to;
      if constexpr (Gate::tests) ++depth;
      z.advance();
      source.advance();
    }
  }

  // Everything in locals, every pixel loaded and stored, no branch: loops that vectors can take.
  void ordinary_branch_free(std::int32_t count) {
    Pixel* const pixels = to;
    std::uint16_t* const depths = depth;
    Stepped running_z = z;
    Source running = source;
    const auto store = paint.store;
    for (std::int32_t i = 0; i < count; ++i) {
      bool pass = true;
      if constexpr (Gate::tests) {
        const std::uint16_t d = Depth::stored(running_z.value);
        const std::uint16_t stored = depths[i];
        pass = Gate::passes(d, stored);
        depths[i] = Gate::written(pass, d, stored);
        running_z.advance();
      }
      const Pixel old = pixels[i];
      const Pixel made = store(old, running.value(pixels + i));
      pixels[i] = pass ? made : old;
      running.advance();
    }
    to += count;
    if constexpr (Gate::tests) depth += count;
    z.value = running_z.value;
    source.advance(count);
  }

  bool passes() {
    if constexpr (Gate::tests) {
      return Gate::try_pass(depth, z.value);
    } else {
      return true;
    }
  }
};

template <class Cover, class Gate, class Paint, Short_Spans short_spans>
class Span {
 public:
  using Pixel = typename Paint::Pixel;
  using Kinds = Joined<Joined<Lanes<Position_Lane>, typename Gate_Lanes<Gate>::Kinds>,
                       typename Paint::Source::Kinds>;
  static constexpr std::size_t first_paint_lane = 1 + Gate_Lanes<Gate>::Kinds::count;
  using Paint_View = Lane_View<Edge<Kinds>, first_paint_lane>;

  Span(const Frame& frame, const Cover& cover, const Paint& paint)
      : frame_(frame), cover_(cover), paint_(paint) {}

  template <class Run>
  void operator()(std::int32_t y, const Run& run, const Edge<Kinds>& left,
                  const Edge<Kinds>& right) {
    if constexpr (short_spans == Short_Spans::one_and_two && has_values) {
      if (run.count <= 2) return draw_short(y, run, left, right);
    }
    draw(y, run, left, right);
  }

 private:
  // Whether anything changes along a span, so that its form matters.
  static constexpr bool has_values = Gate::tests || Paint::Source::Kinds::count > 0;

  template <class Run>
  void draw(std::int32_t y, const Run& run, const Edge<Kinds>& left, const Edge<Kinds>& right) {
    const Span_Start start(run);
    Pen<Gate, Paint> pen{paint_,
                         frame_.color<Pixel>(y, run.x),
                         nullptr,
                         {},
                         paint_.source.begin(start, y, Paint_View(left), Paint_View(right))};
    if constexpr (Gate::tests) {
      pen.depth = frame_.depth(y, run.x);
      pen.z = start.between<Depth>(depth_of(left), depth_of(right));
    }
    if constexpr (Cover::solid) {
      pen.ordinary(run.count);
    } else {
      draw_covered(pen, cover_.begin(run.x, y), run.count);
    }
  }

  static void draw_covered(Pen<Gate, Paint>& pen, auto cover, std::int32_t count) {
    for (; count > 0; count -= chunk_size) {
      const std::int32_t part = std::min(count, chunk_size);
      const Chunk chunk = cover.next(part);
      if (chunk.ordinary == first_bits(part)) {
        pen.ordinary(part);
      } else if ((chunk.ordinary | chunk.contrast) == 0) {
        pen.skip(part);
      } else {
        pen.mixed(part, chunk);
      }
    }
  }

  // One or two pixels without a division: the left edge's values, and for the second pixel the
  // mean of both edges. Only solid fillings come here, so that no pixel takes a contrast colour.
  template <class Run>
  void draw_short(std::int32_t y, const Run& run, const Edge<Kinds>& left,
                  const Edge<Kinds>& right) {
    Pixel* const to = frame_.color<Pixel>(y, run.x);
    std::uint64_t visible = first_bits(run.count);
    if constexpr (!Cover::solid) visible = cover_.begin(run.x, y).next(run.count).ordinary;
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

  static Word depth_of(const Edge<Kinds>& edge) {
    if constexpr (Gate::tests) {
      return edge[depth_lane];
    } else {
      return 0;
    }
  }

  template <class Value>
  void plot(std::int32_t y, std::int32_t x, Word z, Value value) {
    if constexpr (Gate::tests) {
      if (!Gate::try_pass(frame_.depth(y, x), z)) return;
    }
    Pixel* const to = frame_.color<Pixel>(y, x);
    *to = paint_.store(*to, value());
  }

  const Frame& frame_;
  const Cover& cover_;
  const Paint& paint_;
};

}  // namespace zbuffer
