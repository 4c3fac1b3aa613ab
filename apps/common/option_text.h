// The values of options as the user writes them.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "apps/common/color.h"

namespace kv {

inline constexpr int largest_side = 16384;            // of a frame buffer
inline constexpr int largest_picture_side = 1 << 17;  // drawn in tiles
inline constexpr int smallest_tile_side = 16;

struct Size {
  int width = 1024, height = 768;
  friend bool operator==(const Size&, const Size&) = default;
};

std::optional<Size> find_size(const std::string& text);  // nothing when it is none

// Both throw std::invalid_argument with words for the user.
Size parse_size(const std::string& text);    // "640x480"
Color parse_color(const std::string& text);  // "#rrggbb" or a name

// "0.5,-2", each number from -limit to limit. Throws as well.
using Pair = std::pair<double, double>;
Pair parse_pair(const std::string& text, double limit);

// The way back.
std::string text_of(const Size& size);
std::string text_of(const Color& color);  // "#rrggbb"

}  // namespace kv
