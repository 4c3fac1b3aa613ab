// Modulations: what a texel is multiplied by. A modulation is started at a span from the
// interpolants of its edges and then gives factors for four pixels at a time. Short spans take
// the products with the left edge's factors and with the means of both edges.
//
//   product of a channel = (texel byte * factor) >> 16
#pragma once

#include "module/pixels/dither.h"
#include "module/pixels/quad.h"
#include "module/raster/span_start.h"
#include "module/textures/interpolants.h"

namespace zbuffer::textures {

/// A value between two edges that goes on from the left edge with its fraction.
inline Quad_Line between_edges(const Span_Start& start, Word left, Word right) {
  const Word step = start.pixels.span_step(wrapped_difference(as_signed(right), as_signed(left)));
  return {left + as_word(start.skipped) * step, step};
}

/// The products of a texel's channels, 16 bits each.
struct Products {
  Word red, green, blue, alpha;
};

/// No colours: the texel is taken as it is.
struct No_Modulation {
  using Values = Interpolants<>;

  struct Factors {};
  struct Cursor {
    Factors at(std::int32_t) const { return {}; }
  };
  template <class Edge>
  Cursor begin(const Span_Start&, const Edge&, const Edge&) const {
    return {};
  }
  template <class Edge>
  Word at_left(Word texel, const Edge&) const {
    return texel;
  }
  template <class Edge>
  Word at_mean(Word texel, const Edge&, const Edge&) const {
    return texel;
  }
};

/// Factors for the cube's channels.
template <class Number>
struct Cube_Factors {
  Number red, green, blue;
};

/// Mapped colour without vertex colours: full in every channel.
class Full_Cube_Modulation {
 public:
  using Values = Interpolants<>;

  explicit Full_Cube_Modulation(const Cube& cube)
      : running_{{full(cube.scale.red), full(cube.scale.green), full(cube.scale.blue)}} {}

  struct Cursor {
    Cube_Factors<Word> at_start;
    const Cube_Factors<Word>& at(std::int32_t) const { return at_start; }
  };
  template <class Edge>
  Cursor begin(const Span_Start&, const Edge&, const Edge&) const {
    return running_;
  }

 private:
  static Word full(std::int32_t scale) { return as_word(scale) * 65280 + 128; }

  Cursor running_;
};

/// Mapped colour with vertex colours: three channels scaled by the cube.
struct Cube_Modulation {
  using Values = Interpolants<Byte_Interpolant, Byte_Interpolant, Byte_Interpolant>;

  Cube cube;

  struct Cursor {
    Quad_Line red, green, blue;

    Cube_Factors<Quad> at(std::int32_t i) const { return {red.at(i), green.at(i), blue.at(i)}; }
  };
  template <class Edge>
  Cursor begin(const Span_Start& start, const Edge& left, const Edge& right) const {
    const auto channel = [&](std::size_t i) {
      return between_edges(start, left[first_channel + i], right[first_channel + i]);
    };
    return {channel(0), channel(1), channel(2)};
  }

  template <class Vertex>
  void put_color(Vertex& vertex, KT_RGB32 color) const {
    const Channels scaled = cube.scaled(color);
    vertex.value[first_channel] = scaled.red;
    vertex.value[first_channel + 1] = scaled.green;
    vertex.value[first_channel + 2] = scaled.blue;
  }
};

/// Four factors of direct colour.
struct Direct_Factors {
  Quad red, green, blue, alpha;

  /// Whether no product reaches beyond a byte.
  bool in_range() const {
    const auto fits = [](Quad factor) { return at_most(factor >> 8, Quad{} + 256u); };
    return is_nowhere(~(fits(red) & fits(green) & fits(blue) & fits(alpha)));
  }
  /// The low bytes of the products, as a colour.
  Quad colors(Quad texels) const {
    return pair(texels & outer_channels, blue, red) |
           (pair((texels >> 8) & outer_channels, green, alpha) << 8);
  }
  Products products(std::size_t i, Word texel) const {
    return {byte_of(texel, 2) * red[i] >> 16, byte_of(texel, 1) * green[i] >> 16,
            byte_of(texel, 0) * blue[i] >> 16, byte_of(texel, 3) * alpha[i] >> 16};
  }

 private:
  // Two channels of each pixel in the two shorts of its word. With a factor of 256 w + r,
  //   (t * factor) >> 16 = (t * w + (t * r >> 8)) >> 8
  // and for its low byte 16 bits of the sum are enough.
  static Quad pair(Quad bytes, Quad low, Quad high) {
    using Shorts __attribute__((vector_size(16))) = std::uint16_t;
    const auto t = reinterpret_cast<Shorts>(bytes);
    const auto whole =
        reinterpret_cast<Shorts>(((low >> 8) & 0xFFFFu) | ((high << 8) & 0xFFFF0000u));
    const auto rest = reinterpret_cast<Shorts>((low & 255u) | ((high & 255u) << 16));
    return reinterpret_cast<Quad>(Shorts((t * whole + (t * rest >> 8)) >> 8));
  }
};

/// Whether a modulation has alpha beside red, green and blue.
enum class Modulation_Alpha : std::uint8_t { none, carried };

/// Direct colour with vertex colours.
template <class Channel, Modulation_Alpha alpha>
struct Direct_Modulation {
  static constexpr bool has_alpha = alpha == Modulation_Alpha::carried;
  using Values = std::conditional_t<has_alpha, Interpolants<Channel, Channel, Channel, Channel>,
                                    Interpolants<Channel, Channel, Channel>>;

  struct Color_Cursor {
    Quad_Line red, green, blue;

    Direct_Factors at(std::int32_t i) const { return {red.at(i), green.at(i), blue.at(i), Quad{}}; }
  };
  struct Alpha_Cursor {
    Color_Cursor color;
    Quad_Line opacity;

    Direct_Factors at(std::int32_t i) const {
      Direct_Factors factors = color.at(i);
      factors.alpha = opacity.at(i);
      return factors;
    }
  };
  using Cursor = std::conditional_t<has_alpha, Alpha_Cursor, Color_Cursor>;

  template <class Edge>
  Cursor begin(const Span_Start& start, const Edge& left, const Edge& right) const {
    const auto channel = [&](std::size_t i) {
      return between_edges(start, left[first_channel + i], right[first_channel + i]);
    };
    const Color_Cursor color{channel(0), channel(1), channel(2)};
    if constexpr (has_alpha) {
      return {color, channel(3)};
    } else {
      return color;
    }
  }

  template <class Edge>
  Products at_left(Word texel, const Edge& left) const {
    const auto product = [&](std::size_t interpolant, int byte) {
      return byte_of(texel, byte) * left[first_channel + interpolant] >> 16;
    };
    return products(product);
  }
  // The sum of both edges is multiplied before it is halved.
  template <class Edge>
  Products at_mean(Word texel, const Edge& left, const Edge& right) const {
    const auto product = [&](std::size_t interpolant, int byte) {
      const std::size_t at = first_channel + interpolant;
      return byte_of(texel, byte) * (left[at] + right[at]) >> 17;
    };
    return products(product);
  }

  template <class Vertex>
  void put_color(Vertex& vertex, KT_RGB32 color) const {
    vertex.value[first_channel] = color.red;
    vertex.value[first_channel + 1] = color.green;
    vertex.value[first_channel + 2] = color.blue;
    if constexpr (has_alpha) vertex.value[first_channel + 3] = color.alpha;
  }

 private:
  template <class Product>
  static Products products(Product product) {
    Products made{product(0, 2), product(1, 1), product(2, 0), 0};
    if constexpr (has_alpha) made.alpha = product(3, 3);
    return made;
  }
};

}  // namespace zbuffer::textures
