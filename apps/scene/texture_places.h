// Places in textures as a renderer takes them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "apps/load/model.h"
#include "host/types.h"

namespace kv {

// Renderers count texels in signed 16 bits.
inline constexpr double last_texel = 32767;

// Renderers step from one whole texel to another along edges and rows, so that the ends of a span
// may be a texel off. Textures are drawn with so many texels at least that this is little.
constexpr std::uint32_t drawn_side(std::uint32_t side) {
  constexpr std::uint32_t least = 512;
  return std::max(side, least);
}

// Where a texture repeats, its picture is the same some whole images further: moves the places of
// one strip to where they are smallest and not negative. Those on the far border of a repeat move
// to the texel before it. False when they still reach beyond the last texel that a renderer can
// count to.
bool settle_places(std::span<KT_Parameter> places, const Material& material, const Image& image);

// A corner of a textured face on the device.
struct Textured_Corner {
  KT_Point point;
  KT_Parameter place;
  float w;
};

// Whether a texture that is mapped in the plane of the picture lies between two corners where it
// does in perspective: nowhere off by both half a texel and half a pixel.
bool is_even_side(const Textured_Corner& a, const Textured_Corner& b, const Image& image);

}  // namespace kv
