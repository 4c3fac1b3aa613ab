// Reference model, pixels: the frame images, the fixed-point steps, depth, merge, blend, dither.
// Everything is written for one pixel at a time and for clarity alone.
#pragma once

#include <cstdint>
#include <vector>

#include "host/framework.h"

namespace model {

enum class Variant { rgb_alpha, rgb, mapped, mapped_z, rgb_alpha_z, rgb_z };
enum class Kind { flat, colorized, gouraud };

constexpr bool has_depth(Variant v) {
  return v == Variant::mapped_z || v == Variant::rgb_alpha_z || v == Variant::rgb_z;
}
constexpr bool is_mapped(Variant v) {
  return v == Variant::mapped || v == Variant::mapped_z;
}
constexpr bool has_alpha(Variant v) {
  return v == Variant::rgb_alpha || v == Variant::rgb_alpha_z;
}
constexpr Variant without_depth(Variant v) {
  return v == Variant::mapped_z      ? Variant::mapped
         : v == Variant::rgb_alpha_z ? Variant::rgb_alpha
         : v == Variant::rgb_z       ? Variant::rgb
                                     : v;
}
constexpr Variant with_alpha(Variant v) {
  return v == Variant::rgb ? Variant::rgb_alpha : v == Variant::rgb_z ? Variant::rgb_alpha_z : v;
}

/// A copy of a frame image in memory order, padding included.
struct Plane {
  std::vector<std::uint8_t> bytes;
  int width = 0, height = 0, row_bytes = 0;
  std::uintptr_t address = 0;  ///< of the first byte in the image that is copied

  Plane() = default;
  explicit Plane(const KT_Shared_Image& image);

  /// Pixel at buffer (x, y); throws `std::out_of_range` outside the image.
  template <class Pixel>
  Pixel& at(int x, int y) {
    const auto offset =
        static_cast<std::size_t>(height - 1 - y) * static_cast<std::size_t>(row_bytes) +
        static_cast<std::size_t>(x) * sizeof(Pixel);
    if (x < 0 || x >= width || y < 0) offset_fault();
    return reinterpret_cast<Pixel&>(bytes.at(offset));
  }

 private:
  [[noreturn]] static void offset_fault();
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
};

/// b taken from a, wrapped.
constexpr std::int32_t difference(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
std::int32_t line_step(std::int32_t d, std::int32_t n);
std::int32_t depth_step(std::int32_t d, std::int32_t n);
/// 16.16 value of a colour channel on pixel `i` of the `n` between two edges.
std::uint32_t channel_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms);
/// The same in the mapped variants, with 16 fraction bits of cube position.
std::int32_t scaled_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms);
std::uint16_t depth_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms);
bool depth_passes(unsigned test, std::uint16_t z, std::uint16_t stored);

std::uint32_t merge_rgb(const State&, std::uint32_t pixel, std::uint32_t color);
std::uint8_t merge_mapped(const State&, std::uint8_t pixel, std::uint8_t index);
/// `source` over `pixel` by the alpha of `source`; alpha byte 255, or as it was.
KT_RGB32 blend(KT_RGB32 pixel, KT_RGB32 source, bool keep_alpha);
/// Threshold of the dither table under a pixel of a mapped image.
int threshold(const State&, int x, int y);
/// Index of cube positions with 16 fraction bits.
std::uint8_t dithered_index(const KT_Color_Cube&, const int (&rgb)[3], int threshold);
/// Index by ordered fractions, as the scan of a triangle of one colour takes it.
std::uint8_t ordered_index(const KT_Color_Cube&, const int (&rgb)[3], int threshold);

}  // namespace model
