// The values of options as the user writes them.
#pragma once

#include <string>

#include "apps/model.h"

namespace kv {

inline constexpr int largest_side = 16384;

struct Size {
  int width = 1024, height = 768;
};

// Both throw std::invalid_argument with words for the user.
Size parse_size(const std::string& text);    // "640x480"
Color parse_color(const std::string& text);  // "#rrggbb" or a name

}  // namespace kv
