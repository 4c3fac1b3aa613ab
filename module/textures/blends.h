// Blends: what a texel and a modulation make of a pixel. A blend is set to a row of the buffer and
// then makes pixels, four at a time or, for short spans, one; `alpha` is 0 for those that do not
// show.
#pragma once

#include "module/pixels/blend_255.h"
#include "module/textures/modulation.h"

namespace zbuffer::textures {

/// Pixels that were made. `alpha` is 0 for those that are transparent.
template <class Number>
struct Made {
  Number color;
  Number alpha;
};

/// Mapped colour: a place in the cube by ordered dither, without a clamp.
///
///   q = (((texel byte * factor) >> 8) + threshold) >> 16     index = sum of q * stride, 8 bits
class Dither_Blend {
 public:
  using Pixel = std::uint8_t;

  Dither_Blend(const Cube& cube, std::uint8_t contrast) : cube_(cube), contrast_(contrast) {}

  class Row {
   public:
    Row(const Dither_Blend& blend, std::int32_t y) : blend_(blend) {
      const std::uint16_t* thresholds = &SHARED.dither_table[(y & 7) * 8];
      for (std::size_t i = 0; i < 16; ++i) thresholds_[i] = thresholds[i & 7];
    }

    template <class Factors>
    Made<Quad> make(Quad texels, const Factors& factors, Quad, const Pixel* to) const {
      const Quad dither = thresholds(to);
      const auto place = [&](int byte, const auto& factor) {
        return (((((texels >> (8 * byte)) & 255u) * factor) >> 8) + dither) >> 16;
      };
      return {index(place(2, factors.red), place(1, factors.green), place(0, factors.blue)),
              texels >> 24};
    }

   protected:
    Quad thresholds(const Pixel* to) const {
      return load_quad(thresholds_ + (reinterpret_cast<std::uintptr_t>(to) & 7));
    }
    const Cube& cube() const { return blend_.cube_; }
    // Blue counts with stride 1.
    Quad index(Quad red, Quad green, Quad blue) const {
      return red * std::uint32_t{cube().red_stride} + green * std::uint32_t{cube().green_stride} +
             blue + std::uint32_t{cube().base};
    }

   private:
    const Dither_Blend& blend_;
    std::uint16_t thresholds_[16];  // of two repeats, for four from any column
  };

  Row row(std::int32_t y) const { return Row(*this, y); }
  Pixel contrast(Pixel) const { return contrast_; }

 private:
  Cube cube_;
  std::uint8_t contrast_;
};

/// What the blends of direct colour share: rows do not matter, and a contrast colour.
template <class Blend, Alpha_Rule contrast_rule>
class Direct_Blend {
 public:
  using Pixel = std::uint32_t;

  explicit Direct_Blend(KT_RGB32 contrast) : contrast_(contrast.word(), contrast_rule) {}

  const Blend& row(std::int32_t) const { return static_cast<const Blend&>(*this); }
  Pixel contrast(Pixel old) const { return contrast_(old, 0); }

 private:
  Constant_Blend_255 contrast_;
};

/// The texel word as it stands.
struct Copy_Blend : Direct_Blend<Copy_Blend, Alpha_Rule::store> {
  using Direct_Blend::Direct_Blend;

  template <class Factors>
  Made<Quad> make(Quad texels, const Factors&, Quad, const Pixel*) const {
    return {texels, Quad{}};
  }
  Made<Word> make(Word texel, Word) const { return {texel, 0}; }
};

/// The texel by the colours, alpha 255.
struct Modulated_Copy_Blend : Direct_Blend<Modulated_Copy_Blend, Alpha_Rule::store> {
  using Direct_Blend::Direct_Blend;

  Made<Quad> make(Quad texels, const Direct_Factors& factors, Quad, const Pixel*) const {
    return {factors.colors(texels) | opaque_alpha, Quad{}};
  }
  Made<Word> make(const Products& p, Word) const {
    return {opaque_alpha | (p.red & 255) << 16 | (p.green & 255) << 8 | (p.blue & 255), 0};
  }
};

/// The texel by its own alpha.
struct Alpha_Blend : Direct_Blend<Alpha_Blend, Alpha_Rule::by_alpha> {
  using Direct_Blend::Direct_Blend;

  template <class Factors>
  Made<Quad> make(Quad texels, const Factors&, Quad old, const Pixel*) const {
    return {blended_by_source(old, texels), texels >> 24};
  }
  Made<Word> make(Word texel, Word old) const {
    return {blended_by_source<Alpha_Rule::by_alpha>(old, texel), texel >> 24};
  }
};

/// The product of texel and colours by the product of their alphas.
///
/// Nothing holds the products within a byte: interpolated channels may run beyond their ends. Then
/// colours are signed 16 bits, alpha unsigned, the sum of the blend wraps, its division truncates
/// and the low byte is stored.
struct Modulated_Alpha_Blend : Direct_Blend<Modulated_Alpha_Blend, Alpha_Rule::by_alpha> {
  using Direct_Blend::Direct_Blend;

  Made<Quad> make(Quad texels, const Direct_Factors& factors, Quad old, const Pixel*) const {
    if (factors.in_range()) [[likely]] {
      const Quad source = factors.colors(texels);
      return {blended_by_source(old, source), source >> 24};
    }
    Made<Quad> made{};
    for (std::size_t i = 0; i < quad_size; ++i) {
      const Made<Word> one = make(factors.products(i, texels[i]), old[i]);
      made.color[i] = one.color;
      made.alpha[i] = one.alpha;
    }
    return made;
  }

  Made<Word> make(const Products& p, Word old) const {
    const Word a = p.alpha & 0xFFFF;
    if (a == 0) return {old, 0};
    const auto channel = [&](Word product, int byte) {
      const Word color = as_word(static_cast<std::int16_t>(product));
      if (a == 255) return (color & 255) << (8 * byte);
      const Word sum = color * a + byte_of(old, byte) * (255 - a);
      return (as_word(as_signed(sum) / 255) & 255) << (8 * byte);
    };
    return {opaque_alpha | channel(p.red, 2) | channel(p.green, 1) | channel(p.blue, 0), a};
  }
};

}  // namespace zbuffer::textures
