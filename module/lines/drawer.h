// What the steppers draw with.
//
// A `Drawer` is what the segments of a call share: the images, the mask and the paint. With the
// ends of a segment it is a `Segment_Drawer`, which gives the steppers a `Line_Cursor`: that is at
// a row and carries depth and colour from pixel to pixel. Steppers take cursors by value, so that
// their state can live in registers while pixels are written.
#pragma once

#include "module/core/call.h"
#include "module/core/frame.h"
#include "module/lines/sources.h"
#include "module/lines/stepper.h"
#include "module/pixels/blends.h"
#include "module/pixels/depth_test.h"
#include "module/pixels/mask.h"

namespace zbuffer::lines {

/// A source with its blend: all that a drawer needs to know of colour.
template <class Source_Type, class Blend_Type>
struct Paint {
  using Source = Source_Type;
  using Blend = Blend_Type;

  Source source;
  Blend blend;

  /// From now on `color`, if the paint is of one colour at a time.
  void take(KT_RGB32 color) {
    if constexpr (requires { source.take(color); }) source.take(color);
    if constexpr (requires { blend.take(color); }) blend.take(color);
  }
};
template <class Source, class Blend>
Paint(Source, Blend) -> Paint<Source, Blend>;

/// The depth along a cursor, at the cursor's row.
template <class Test>
struct Line_Depth {
  std::uint16_t* row;
  std::ptrdiff_t stride;
  Stepped z;

  bool passes(std::int32_t x) const { return Test::passes(depth(), row[x]); }
  void write(std::int32_t x) const { row[x] = Test::written(true, depth(), row[x]); }
  void advance() { z.advance(); }
  void next_row() { row += stride; }

 private:
  std::uint16_t depth() const { return static_cast<std::uint16_t>(Depth::whole_unsigned(z.value)); }
};

template <>
struct Line_Depth<No_Depth_Test> {
  static bool passes(std::int32_t) { return true; }
  static void write(std::int32_t) {}
  static void advance() {}
  static void next_row() {}
};

/// The mask at a cursor's row.
template <Masking masking>
struct Mask_Cursor {
  static bool hidden(std::int32_t) { return false; }
  static void next_row() {}
};

template <>
struct Mask_Cursor<Masking::masked> {
  Bit_Cursor row;
  std::ptrdiff_t stride;

  bool hidden(std::int32_t x) const { return offset(row, x).hidden(); }
  void next_row() { zbuffer::advance(row, stride); }
};

template <class Test, Masking masking, class Cursor, class Blend>
class Line_Cursor {
 public:
  using Pixel = typename Cursor::Pixel;

  Line_Cursor(Pixel* row, std::ptrdiff_t stride, const Line_Depth<Test>& depth,
              const Mask_Cursor<masking>& mask, const Cursor& source, const Blend& blend)
      : row_(row), stride_(stride), depth_(depth), mask_(mask), source_(source), blend_(blend) {}

  [[gnu::always_inline]] void dot(std::int32_t x) {
    if (depth_.passes(x) && !mask_.hidden(x)) {
      depth_.write(x);
      row_[x] = blend_(row_[x], source_.value(row_ + x));
    }
    depth_.advance();
    source_.advance();
  }

  template <Heading heading>
  [[gnu::always_inline]] void run(std::int32_t x, std::int32_t n) {
    if constexpr (uniform) {
      blend_run(blend_, row_ + (heading == Heading::right ? x : x - n + 1), n, source_);
    } else {
      for (; n > 0; --n, x += static_cast<std::int32_t>(heading)) dot(x);
    }
  }

  void next_row() {
    row_ += stride_;
    depth_.next_row();
    mask_.next_row();
    source_.next_row();
  }

 private:
  static constexpr bool uniform = !Test::tests && masking == Masking::open && Cursor::constant;

  Pixel* row_;
  std::ptrdiff_t stride_;
  [[no_unique_address]] Line_Depth<Test> depth_;
  [[no_unique_address]] Mask_Cursor<masking> mask_;
  [[no_unique_address]] Cursor source_;
  [[no_unique_address]] Blend blend_;
};

template <class Test_Type, Masking masking, class Paint_Type>
class Drawer {
 public:
  using Test = Test_Type;
  using Source = typename Paint_Type::Source;
  using Pixel = typename Source::Pixel;

  Paint_Type paint;

  Drawer(const Strip_Call& line, const Paint_Type& with)
      : paint(with), frame_(line.renderer), renderer_(line.renderer) {}

  KT_Int_XY origin() const { return frame_.origin; }

  auto cursor(const Ends& ends, Rows rows, std::int32_t pixels, std::int32_t skipped) const {
    using Cursor = typename Source::Cursor;
    const Spread spread{Divisor(pixels), as_word(skipped)};
    return Line_Cursor<Test, masking, Cursor, typename Paint_Type::Blend>(
        pixel(0, rows.first), stride(*renderer_.color_image, sizeof(Pixel)) * rows.sy,
        depth_cursor(ends, rows, spread), mask_cursor(rows), paint.source.begin(ends, spread, rows),
        paint.blend);
  }

  // Single pixels, in buffer coordinates.
  Pixel* pixel(std::int32_t x, std::int32_t y) const { return frame_.template color<Pixel>(y, x); }
  std::uint16_t* depth(std::int32_t x, std::int32_t y) const { return frame_.depth(y, x); }
  bool hidden(std::int32_t x, std::int32_t y) const { return mask_cursor({y, 1}).hidden(x); }

 private:
  /// From a row to the one above it, in elements.
  static std::ptrdiff_t stride(const KT_Shared_Image_Data& image, std::size_t element) {
    return -(std::ptrdiff_t{image.row_bytes} / static_cast<std::ptrdiff_t>(element));
  }

  Line_Depth<Test> depth_cursor(const Ends& ends, Rows rows, const Spread& spread) const {
    if constexpr (Test::tests) {
      return {frame_.depth(rows.first, 0),
              stride(*renderer_.depth_image, sizeof(std::uint16_t)) * rows.sy,
              spread.between<Depth>(ends.z0, ends.z1)};
    } else {
      return {};
    }
  }

  Mask_Cursor<masking> mask_cursor(Rows rows) const {
    if constexpr (masking == Masking::masked) {
      const Frame_Buffer_Mask& mask = *renderer_.mask_cache->head;
      return {row_cursor(mask, rows.first), stride(*mask.image, 1) * 8 * rows.sy};
    } else {
      return {};
    }
  }

  const Frame frame_;
  const Software_Z_Buffer& renderer_;
};

/// A drawer at a segment.
template <class Drawer_Type>
struct Segment_Drawer {
  const Drawer_Type& drawer;
  Ends ends;

  auto cursor(std::int32_t row, std::int32_t sy, std::int32_t pixels, std::int32_t skipped) const {
    return drawer.cursor(ends, {row, sy}, pixels, skipped);
  }
};
template <class Drawer_Type>
Segment_Drawer(const Drawer_Type&, Ends) -> Segment_Drawer<Drawer_Type>;

}  // namespace zbuffer::lines
