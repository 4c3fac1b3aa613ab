// Spans of textured triangles. The order at a pixel is: depth test, pattern bit, wrap test, fetch,
// blend; a pixel that fails anywhere keeps its colour and depth, but for
// `Transparent::keeps_color`. Coordinates, depth and modulation step through every pixel, drawn or
// not.
//
// Pixels are taken four at a time, all of them fetched and made and those that passed selected;
// masked coordinates never leave the image, so that a texel may be fetched for nothing.
#pragma once

#include <optional>

#include "module/core/frame.h"
#include "module/pixels/pixel_bits.h"
#include "module/raster/walk.h"
#include "module/textures/blends.h"
#include "module/textures/rules.h"
#include "module/textures/sampler.h"

namespace zbuffer::textures {

/// The depth test along a span, four pixels at a time.
class Depth_Cursor {
 public:
  Depth_Cursor(std::uint16_t* depth, const Stepped& z, std::int32_t count)
      : depth_(depth), z_(z.value, z.step), left_(count) {}

  /// Goes to the next four pixels, from here on, of which one passes; false when there are none.
  bool find() {
    for (; left_ >= quad_size; advance()) {
      if (test(Whole_Quad{})) return true;
    }
    return left_ > 0 && test(Part_Of_Quad{left_});
  }
  void advance() {
    z_.advance();
    at_ += quad_size;
    left_ -= quad_size;
  }

  std::int32_t at() const { return at_; }      ///< the first of the four
  std::int32_t left() const { return left_; }  ///< pixels from there on
  Quad pass() const { return pass_; }

  /// Stores the depths of some that passed.
  template <class Access>
  void store(Access access, Quad where) {
    access.store(depth_ + at_, select(where, d_, stored_));
  }

 private:
  template <class Access>
  bool test(Access access) {
    d_ = (z_.at() >> Depth::fraction_bits) & 0xFFFFu;
    stored_ = access.load(depth_ + at_);
    pass_ = at_most(d_, stored_);
    return !is_nowhere(pass_);
  }

  std::uint16_t* depth_;
  Quad_Steps z_;
  std::int32_t at_ = 0;
  std::int32_t left_;
  Quad d_, stored_, pass_;
};

/// The texture and modulation of a span's pixels.
template <Transparent transparent, class Modulation, class Blend>
struct Texel_Cursor {
  using Pixel = typename Blend::Pixel;
  using Blend_Row = decltype(std::declval<const Blend&>().row(0));

  Sampler texture;  // a copy, which no store to a pixel can change
  Blend_Row blend;
  Pixel* to;
  Quad_Line u;
  Quad_Line v;
  typename Modulation::Cursor modulation;

  /// Draws the pixels where `tested` has stopped.
  template <class Access>
  void draw(Access access, Depth_Cursor& tested) const {
    const Quad us = u.at(tested.at());
    const Quad vs = v.at(tested.at());
    Pixel* const pixels = to + tested.at();
    const Quad pass = tested.pass() & texture.contains(us, vs);
    const Quad old = access.load(pixels);
    const Made<Quad> made =
        blend.make(texture.texel(us, vs), modulation.at(tested.at()), old, pixels);
    Quad colored = pass;
    if constexpr (transparent != Transparent::ordinary) colored &= ~is_zero(made.alpha);
    tested.store(access, transparent == Transparent::dropped ? colored : pass);
    access.store(pixels, select(colored, made.color, old));
  }
};

/// The state of a scan that outlives its spans: the depth that the latest span of two or more
/// pixels ended with, none at first.
using Latest_Depth = std::optional<Word>;

/// What a span draws with.
template <class Modulation_Type, class Blend_Type>
struct Paint {
  using Modulation = Modulation_Type;
  using Blend = Blend_Type;

  Sampler texture;
  Modulation modulation;
  Blend blend;
};

template <Member member, class Bits, class Paint_Type>
class Span {
 public:
  using Modulation = typename Paint_Type::Modulation;
  using Blend = typename Paint_Type::Blend;
  using Pixel = typename Blend::Pixel;

  Span(const Frame& frame, const Bits& bits, const Paint_Type& paint)
      : frame_(frame), bits_(bits), paint_(paint) {}

  /// The next triangle's middle row: rows below it belong to its low half.
  void begin_triangle(std::int32_t mid_y) { mid_y_ = mid_y; }

  template <class Run, class Edge_Type>
  void operator()(std::int32_t y, const Run& run, const Edge_Type& left, const Edge_Type& right) {
    if constexpr (!Bits::solid) {
      // The bit of the first pixel decides on the whole span.
      if (bits_.is_set(run.x, y)) {
        if (bits_.opaque()) draw_contrast(y, run, left, right);
        return;
      }
    } else if constexpr (rules::short_spans(member) == Short_Spans::one_and_two) {
      if (run.count <= 2) {
        if (run.count == 2) draw_second(y, run.x + 1, left, right);
        return draw_first(y, run.x, left);
      }
    }
    draw(y, run, left, right);
  }

 private:
  static constexpr Transparent transparent = rules::transparent(member);

  template <class Run, class Edge_Type>
  void draw(std::int32_t y, const Run& run, const Edge_Type& left, const Edge_Type& right) {
    const Span_Start start(run);
    const Stepped z = depths(start, left, right);
    if constexpr (keeps_latest_depth) {
      latest_depth_ = z.value + as_word(run.count - 1) * z.step;
    }
    // All but depth is set up where the first pixel passes: in crowded scenes few spans get there.
    Depth_Cursor tested(frame_.depth(y, run.x), z, run.count);
    if (!tested.find()) return;
    const Texel_Cursor<transparent, Modulation, Blend> texels{
        paint_.texture,
        paint_.blend.row(y),
        frame_.color<Pixel>(y, run.x),
        coordinate(start, left[at_u], right[at_u]),
        coordinate(start, left[at_v], right[at_v]),
        paint_.modulation.begin(start, left, right)};
    while (tested.left() >= quad_size) {
      texels.draw(Whole_Quad{}, tested);
      tested.advance();
      if (!tested.find()) return;
    }
    texels.draw(Part_Of_Quad{tested.left()}, tested);
  }

  template <class Edge_Type>
  static Stepped depths(const Span_Start& start, const Edge_Type& left, const Edge_Type& right) {
    return start.between<Depth>(left[at_depth], right[at_depth]);
  }

  // The numbers are unsigned, so that the difference to a negative one wraps and comes out right.
  static Quad_Line coordinate(const Span_Start& start, Word left, Word right) {
    const std::int32_t from = Position::whole_unsigned(left);
    const Word step = start.pixels.line_step(Position::whole_unsigned(right) - from);
    return {Position::at(from) + as_word(start.skipped) * step, step};
  }

  template <class Run, class Edge_Type>
  void draw_contrast(std::int32_t y, const Run& run, const Edge_Type& left,
                     const Edge_Type& right) {
    Stepped z = depths(Span_Start(run), left, right);
    Pixel* to = frame_.color<Pixel>(y, run.x);
    std::uint16_t* depth = frame_.depth(y, run.x);
    for (std::int32_t i = 0; i < run.count; ++i, z.advance()) {
      const std::uint16_t d = Depth::stored(z.value);
      if (d > depth[i]) continue;
      to[i] = paint_.blend.contrast(to[i]);
      depth[i] = d;
    }
  }

  // Short spans of the scan, without a division. The second pixel comes first.

  static constexpr Two_Pixel_Rule rule_of(Half half) {
    if constexpr (is_indexed(member.set)) {
      return {};
    } else {
      constexpr Two_Pixel_Rule low =
          rules::two_pixels(Half_Member{member.set, member.texturing, Half::low});
      constexpr Two_Pixel_Rule high =
          rules::two_pixels(Half_Member{member.set, member.texturing, Half::high});
      return half == Half::low ? low : high;
    }
  }
  static constexpr bool keeps_latest_depth =
      rule_of(Half::low).first_depth == Depth_From::left_or_latest;

  template <class Edge_Type>
  void draw_second(std::int32_t y, std::int32_t x, const Edge_Type& left, const Edge_Type& right) {
    const Two_Pixel_Rule rule = rule_of(y < mid_y_ ? Half::low : Half::high);
    const Word mean_z = (right[at_depth] >> 1) + (left[at_depth] >> 1);
    if constexpr (keeps_latest_depth) latest_depth_ = mean_z;
    const Word u = (right[at_u] + left[at_u]) >> 1;
    const Word v = (right[at_v] + left[at_v]) >> 1;
    if (!opens(y, x, mean_z, u, v)) return;
    const Word texel =
        paint_.texture.texel(u, rule.second_line == Line_From::left ? left[at_v] : v);
    plot(y, x, rule.second_depth, left[at_depth], mean_z, [&](Word old) {
      return paint_.blend.make(paint_.modulation.at_mean(texel, left, right), old);
    });
  }

  template <class Edge_Type>
  void draw_first(std::int32_t y, std::int32_t x, const Edge_Type& left) {
    const Word z = left[at_depth];
    if (!opens(y, x, z, left[at_u], left[at_v])) return;
    const Word texel = paint_.texture.texel(left[at_u], left[at_v]);
    plot(y, x, rule_of(Half::high).first_depth, z, latest_depth_.value_or(z),
         [&](Word old) { return paint_.blend.make(paint_.modulation.at_left(texel, left), old); });
  }

  bool opens(std::int32_t y, std::int32_t x, Word z, Word u, Word v) const {
    return Depth::stored(z) <= *frame_.depth(y, x) && paint_.texture.contains(u, v) != 0;
  }

  // `other` is the mean or the running depth.
  template <class Make>
  void plot(std::int32_t y, std::int32_t x, Depth_From from, Word left, Word other, Make make) {
    Pixel* const to = frame_.color<Pixel>(y, x);
    const Made<Word> made = make(*to);
    if (transparent == Transparent::dropped && made.alpha == 0) return;
    *to = made.color;
    const bool takes_left =
        from == Depth_From::left || (from != Depth_From::mean && made.alpha == 255);
    *frame_.depth(y, x) = Depth::stored(takes_left ? left : other);
  }

  const Frame& frame_;
  const Bits& bits_;
  const Paint_Type& paint_;
  std::int32_t mid_y_ = 0;
  Latest_Depth latest_depth_;
};

}  // namespace zbuffer::textures
