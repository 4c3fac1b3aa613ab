// Reference model, pixels: the frame images, the fixed-point steps, depth, mask, pattern, merge,
// blend, dither, dots. Everything is written for one pixel at a time and for clarity alone.
#pragma once

#include <stdexcept>
#include <vector>

#include "host/framework.h"

namespace model {

enum class Variant { rgb_alpha, rgb, mapped, mapped_z, rgb_alpha_z, rgb_z };
enum class Kind { flat, colorized, gouraud };
using enum Variant;

constexpr bool has_depth(Variant v) {
  return v >= mapped_z;
}
constexpr bool is_mapped(Variant v) {
  return v == mapped || v == mapped_z;
}
constexpr bool has_alpha(Variant v) {
  return v == rgb_alpha || v == rgb_alpha_z;
}
constexpr Variant without_depth(Variant v) {
  return is_mapped(v) ? mapped : has_alpha(v) ? rgb_alpha : rgb;
}
constexpr Variant with_alpha(Variant v) {
  return v == rgb ? rgb_alpha : v == rgb_z ? rgb_alpha_z : v;
}

/// A copy of a frame image in memory order, padding included.
struct Plane {
  std::vector<std::uint8_t> bytes;
  int width = 0, height = 0, row_bytes = 0;
  std::uintptr_t address = 0;  ///< of the first byte in the image that is copied

  Plane() = default;
  explicit Plane(const KT_Shared_Image& image);

  bool holds(int x, int y) const { return x >= 0 && x < width && y >= 0 && y < height; }
  /// Distance of the first byte of buffer row `y` from that of the image.
  std::ptrdiff_t row(int y) const { return std::ptrdiff_t{height - 1 - y} * row_bytes; }
  template <class Pixel>
  Pixel& at(int x, int y) {
    if (!holds(x, y)) throw std::out_of_range("the model left the image");
    return reinterpret_cast<Pixel*>(bytes.data() + row(y))[x];
  }
};

/// What a renderer holds between the calls.
struct State {
  Variant variant{};  ///< chosen by the configuration
  Plane color, depth;
  KT_Int_XY origin, extent;
  KT_Palette palette;
  KT_Color_Cube cube{{2, 2, 2}, 1.0f, 0};
  unsigned zbuffer_test = 2;
  bool zbuffer_write = true, force_merge = false;
  KT_RGB32 merge_background, merge_substitute;
  std::uint8_t merge_background_index = 0, merge_substitute_index = 0;
  KT_Shared_Image mask;  ///< null: none in force

  /// Takes the merge colours from a key of red, green, blue; `palette` must be set.
  void set_merge_key(const int (&key)[3]);
  bool merge_on(const KT_Rendition_Data&) const;
  /// True where the mask in force hides a pixel of buffer coordinates.
  bool hidden(int x, int y) const { return mask && (mask->rows[y][x / 8] & (128 >> (x % 8))) != 0; }
};

/// The bits and options of a face pattern.
struct Face_Pattern {
  KT_User_Pattern pattern{nullptr, 8, 8, 1};
  KT_Int_XY origin;
  bool opaque, inverted, solid, empty;  ///< empty: nothing at all is drawn

  explicit Face_Pattern(const KT_Rendition_Data&);
  bool bit(int x, int y) const;
};

// 32-bit arithmetic that wraps.
constexpr std::uint32_t bits(int value) {
  return static_cast<std::uint32_t>(value);
}
constexpr int sum(int a, int b) {
  return static_cast<int>(bits(a) + bits(b));
}
constexpr int difference(int a, int b) {
  return static_cast<int>(bits(a) - bits(b));
}
constexpr int product(int a, int b) {
  return static_cast<int>(bits(a) * bits(b));
}
/// d/n with 16 fraction bits; d itself where n is 0.
int line_step(int d, int n);
/// The same with 15 fraction bits.
int depth_step(int d, int n);

/// The value that a span takes on pixel `i` of the `n` between its edges' values, with as many
/// fraction bits as the edges have and then `dropped` less. `short_forms`: a span of one or two
/// pixels takes the left value and the mean.
std::uint32_t on_span(std::uint32_t left, std::uint32_t right, int n, int i, bool short_forms,
                      int dropped = 0);
std::uint16_t depth_on_span(std::uint32_t left, std::uint32_t right, int n, int i,
                            bool short_forms);
constexpr bool depth_passes(unsigned test, int z, int stored) {
  return test == 1 ? z < stored : test == 5 ? z > stored : z <= stored;
}

KT_RGB32 merge_rgb(const State&, KT_RGB32 pixel, KT_RGB32 color);
std::uint8_t merge_mapped(const State&, std::uint8_t pixel, std::uint8_t index);
/// `source` over `pixel` by its alpha; the alpha byte becomes 255, or stays.
KT_RGB32 blend(KT_RGB32 pixel, KT_RGB32 source, bool keep_alpha = false);
/// `source` over `pixel` by 65536ths.
KT_RGB32 blend_by(int weight, KT_RGB32 pixel, KT_RGB32 source);
constexpr int weight_of(std::uint8_t alpha) {
  return alpha * 256 / 255;
}
/// A colour as cube positions with 16 fraction bits.
struct Cube_Position {
  int rgb[3];
};
Cube_Position cube_position(const State&, KT_RGB32);
/// Threshold of the dither table under a pixel: it goes by the pixel's address.
int threshold(const State&, int x, int y);
/// Index of a cube position at a pixel of a mapped image: each channel is dithered by itself.
std::uint8_t dithered(const State&, const Cube_Position&, int x, int y);
/// Index by ordered fractions, as lines and triangles of one colour take it.
std::uint8_t ordered(const State&, const Cube_Position&, int x, int y);

/// The dot of variant `v`; a null colour means the rendition's.
void draw_dot(State&, Variant v, const KT_Rendition_Data&, const KT_DCI_Point&,
              const KT_RGB32* color);

}  // namespace model
