// Pixels on their way into a picture: textures and backgrounds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

struct Texel {
  std::uint8_t red = 0, green = 0, blue = 0, alpha = 255;

  friend constexpr bool operator==(const Texel&, const Texel&) = default;
};

// Rows from the top down, without gaps.
struct Image {
  std::uint32_t width = 0, height = 0;
  std::vector<Texel> texels;

  Image() = default;
  Image(std::uint32_t w, std::uint32_t h)
      : width(w), height(h), texels(std::size_t{w} * std::size_t{h}) {}

  const Texel& at(std::uint32_t x, std::uint32_t y) const {
    return texels[std::size_t{y} * width + x];
  }
};

inline bool sees_through(const Image& image) {
  return std::any_of(image.texels.begin(), image.texels.end(),
                     [](const Texel& texel) { return texel.alpha < 255; });
}

}  // namespace kv
