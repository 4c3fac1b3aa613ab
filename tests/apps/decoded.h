// Pictures that the tests read and write.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct Decoded {
  std::uint32_t width = 0, height = 0;
  std::vector<std::uint8_t> bytes;

  std::array<int, 3> at(std::uint32_t x, std::uint32_t y) const {
    const std::size_t i = 3 * (std::size_t{y} * width + x);
    return {bytes[i], bytes[i + 1], bytes[i + 2]};
  }
};

// Of a PNG; throws when it is none.
Decoded decode(const std::string& path);

// The letter of the strongest channels: 'r', 'g', 'b', 'm' (red and blue), 'w' for all, 'k' for
// none, '?' for any other mixture.
char hue(const std::array<int, 3>& color);

// The bytes of a PNG of `width` columns, a letter a texel as of `hue`, '.' for nothing at all. Each
// texel becomes a square of `cell` pixels.
std::string png_of(const std::string& letters, std::uint32_t width, std::uint32_t cell = 1);
