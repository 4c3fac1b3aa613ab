// Pens and strokes: what the steppers draw with.
//
// A pen is what the segments of a call share: the images, the mask and the ink. From a pen and
// the ends of a segment comes a brush, and from that a stroke, which is at a row and carries depth
// and colour from pixel to pixel. Steppers take strokes by value, so that their state can live in
// registers while pixels are written.
#pragma once

#include "module/core/frame.h"
#include "module/lines/polyline.h"
#include "module/lines/sources.h"
#include "module/lines/stepper.h"
#include "module/lines/stores.h"
#include "module/pixels/mask.h"

namespace zbuffer::lines {

/// A source with its store: all that a pen needs to know of colour.
template <class Source_Type, class Store_Type>
struct Ink {
  using Source = Source_Type;
  using Store = Store_Type;

  Source source;
  Store store;

  /// From now on `color`, if the ink is of one colour at a time.
  void take(KT_RGB32 color) {
    source.take(color);
    store.take(color);
  }
};
template <class Source, class Store>
Ink(Source, Store) -> Ink<Source, Store>;

/// The depth along a stroke, at the stroke's row.
template <class Gate>
struct Depth_Lane {
  std::uint16_t* row;
  std::ptrdiff_t stride;
  Stepped z;

  bool passes(std::int32_t x) const { return Gate::passes(depth(), row[x]); }
  void write(std::int32_t x) const { row[x] = Gate::written(true, depth(), row[x]); }
  void advance() { z.advance(); }
  void next_row() { row += stride; }

 private:
  std::uint16_t depth() const { return static_cast<std::uint16_t>(Depth::whole_unsigned(z.value)); }
};

template <>
struct Depth_Lane<No_Gate> {
  static bool passes(std::int32_t) { return true; }
  static void write(std::int32_t) {}
  static void advance() {}
  static void next_row() {}
};

/// The mask at a stroke's row.
template <Masking masking>
struct Mask_Lane {
  static bool hidden(std::int32_t) { return false; }
  static void next_row() {}
};

template <>
struct Mask_Lane<Masking::masked> {
  Bit_Cursor row;
  std::ptrdiff_t stride;

  bool hidden(std::int32_t x) const { return offset(row, x).hidden(); }
  void next_row() { zbuffer::advance(row, stride); }
};

template <class Gate, Masking masking, class Running, class Store>
class Stroke {
 public:
  using Pixel = typename Running::Pixel;

  Stroke(Pixel* row, std::ptrdiff_t stride, const Depth_Lane<Gate>& depth,
         const Mask_Lane<masking>& mask, const Running& source, const Store& store)
      : row_(row), stride_(stride), depth_(depth), mask_(mask), source_(source), store_(store) {}

  [[gnu::always_inline]] void dot(std::int32_t x) {
    if (depth_.passes(x) && !mask_.hidden(x)) {
      depth_.write(x);
      row_[x] = store_(row_[x], source_.value(row_ + x));
    }
    depth_.advance();
    source_.advance();
  }

  template <Heading heading>
  [[gnu::always_inline]] void run(std::int32_t x, std::int32_t n) {
    if constexpr (uniform) {
      store_.run(row_ + (heading == Heading::right ? x : x - n + 1), n, source_.word);
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
  static constexpr bool uniform = !Gate::tests && masking == Masking::open && Running::constant;

  Pixel* row_;
  std::ptrdiff_t stride_;
  [[no_unique_address]] Depth_Lane<Gate> depth_;
  [[no_unique_address]] Mask_Lane<masking> mask_;
  [[no_unique_address]] Running source_;
  [[no_unique_address]] Store store_;
};

template <class Gate_Type, Masking masking, class Ink_Type>
class Pen {
 public:
  using Gate = Gate_Type;
  using Source = typename Ink_Type::Source;
  using Pixel = typename Source::Pixel;

  Ink_Type ink;

  Pen(const Polyline& line, const Ink_Type& with)
      : ink(with), frame_(line.renderer), renderer_(line.renderer) {}

  KT_Int_XY origin() const { return frame_.origin; }

  auto stroke(const Ends& ends, Rows rows, std::int32_t pixels, std::int32_t skipped) const {
    using Running = typename Source::Running;
    const Spread spread{Step_Count(pixels), as_word(skipped)};
    return Stroke<Gate, masking, Running, typename Ink_Type::Store>(
        pixel(0, rows.first), stride(*renderer_.color_image, sizeof(Pixel)) * rows.sy,
        depth_lane(ends, rows, spread), mask_lane(rows), ink.source.begin(ends, spread, rows),
        ink.store);
  }

  // Single pixels, in buffer coordinates.
  Pixel* pixel(std::int32_t x, std::int32_t y) const { return frame_.template color<Pixel>(y, x); }
  std::uint16_t* depth(std::int32_t x, std::int32_t y) const { return frame_.depth(y, x); }
  bool hidden(std::int32_t x, std::int32_t y) const { return mask_lane({y, 1}).hidden(x); }

 private:
  /// From a row to the one above it, in elements.
  static std::ptrdiff_t stride(const KT_Shared_Image_Data& image, std::size_t element) {
    return -(std::ptrdiff_t{image.row_bytes} / static_cast<std::ptrdiff_t>(element));
  }

  Depth_Lane<Gate> depth_lane(const Ends& ends, Rows rows, const Spread& spread) const {
    if constexpr (Gate::tests) {
      return {frame_.depth(rows.first, 0),
              stride(*renderer_.depth_image, sizeof(std::uint16_t)) * rows.sy,
              spread.between<Depth>(ends.z0, ends.z1)};
    } else {
      return {};
    }
  }

  Mask_Lane<masking> mask_lane(Rows rows) const {
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

/// A pen at a segment.
template <class Pen_Type>
struct Brush {
  const Pen_Type& pen;
  Ends ends;

  auto stroke(std::int32_t row, std::int32_t sy, std::int32_t pixels, std::int32_t skipped) const {
    return pen.stroke(ends, {row, sy}, pixels, skipped);
  }
};
template <class Pen_Type>
Brush(const Pen_Type&, Ends) -> Brush<Pen_Type>;

}  // namespace zbuffer::lines
