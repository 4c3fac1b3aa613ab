// The running state of a span: pixel addresses, depth and source, with the loops over pixels.
#pragma once

#include <algorithm>
#include <type_traits>

#include "module/pixels/blends.h"
#include "module/pixels/depth_test.h"
#include "module/pixels/pixel_bits.h"

namespace zbuffer::triangles {

/// The running state of a span: pixel addresses, depth and source.
template <class Test, class Paint>
struct Span_Cursor {
  using Pixel = typename Paint::Pixel;
  using Source = typename Paint::Cursor;

  const Paint& paint;
  Pixel* to;
  std::uint16_t* depth;
  Stepped z;
  Source source;

  void ordinary(std::int32_t count) {
    if constexpr (!Test::tests && Source::constant) {
      blend_run(paint.blend, to, count, source);
      to += count;
    } else if constexpr (Paint::Blend::branch_free) {
      count < worth_vectors ? ordinary_short(count) : ordinary_branch_free(count);
    } else {
      for (; count > 0; count -= bits_at_once) {
        const std::int32_t part = std::min(count, bits_at_once);
        mixed(part, {first_bits(part), 0});
      }
    }
  }

  /// Leaves `count` pixels alone.
  void skip(std::int32_t count) {
    to += count;
    if constexpr (Test::tests) depth += count;
    z.advance(count);
    source.advance(count);
  }

  /// Draws at most 64 pixels by their bits.
  void mixed(std::int32_t count, Pixel_Bits bits) {
    if constexpr (fills_bits) {
      fill_bits(to, count, bits.ordinary, source.word);
      for (; bits.contrast != 0; bits.contrast &= bits.contrast - 1) {
        Pixel& pixel = to[std::countr_zero(bits.contrast)];
        pixel = paint.contrast(pixel);
      }
      to += count;
      return;
    }
    for (std::int32_t i = 0; i < count; ++i) {
      const bool is_contrast = bits.contrast & 1;
      if (((bits.ordinary & 1) || is_contrast) && passes()) {
        *to = is_contrast ? paint.contrast(*to) : paint.blend(*to, source.value(to));
      }
      bits.ordinary >>= 1;
      bits.contrast >>= 1;
      ++to;
      if constexpr (Test::tests) ++depth;
      z.advance();
      source.advance();
    }
  }

 private:
  // Whether ordinary pixels are all stored alike.
  static constexpr bool fills_bits = !Test::tests &&
                                     std::is_same_v<Source, Constant_Cursor<Pixel>> &&
                                     std::is_same_v<typename Paint::Blend, Replace>;

  // Shorter runs than this lose more in setting up vectors than they gain.
  static constexpr std::int32_t worth_vectors = 16;

  void ordinary_short(std::int32_t count) {
    for (; count > 0; --count) {
      if (passes()) *to = paint.blend(*to, source.value(to));
      ++to;
      if constexpr (Test::tests) ++depth;
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
    const auto blend = paint.blend;
    for (std::int32_t i = 0; i < count; ++i) {
      bool pass = true;
      if constexpr (Test::tests) {
        const std::uint16_t d = Depth::stored(running_z.value);
        const std::uint16_t stored = depths[i];
        pass = Test::passes(d, stored);
        depths[i] = Test::written(pass, d, stored);
        running_z.advance();
      }
      const Pixel old = pixels[i];
      const Pixel made = blend(old, running.value(pixels + i));
      pixels[i] = pass ? made : old;
      running.advance();
    }
    to += count;
    if constexpr (Test::tests) depth += count;
    z.value = running_z.value;
    source.advance(count);
  }

  bool passes() {
    if constexpr (Test::tests) {
      return Test::try_pass(depth, z.value);
    } else {
      return true;
    }
  }
};

}  // namespace zbuffer::triangles
