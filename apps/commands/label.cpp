// Letters from a font of rectangles; picture coordinates, y downward.
#include "apps/commands/label.h"

#include <algorithm>
#include <vector>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_easy_font.h>
#pragma GCC diagnostic pop

namespace kv {
namespace {

// What the font makes of a letter: four such corners a rectangle.
struct Corner {
  float x, y, z;
  std::uint8_t color[4];
};

}  // namespace

void fill(Picture& picture, int left, int top, int width, int height, KT_RGB32 color) {
  const int right = std::min(left + width, picture.width);
  const int bottom = std::min(top + height, picture.height);
  for (int y = std::max(top, 0); y < bottom; ++y)
    for (int x = std::max(left, 0); x < right; ++x) {
      std::uint8_t* pixel = picture.row(y) + 3 * x;
      pixel[0] = color.red;
      pixel[1] = color.green;
      pixel[2] = color.blue;
    }
}

void draw_label(Picture& picture, int left, int top, const std::string& text, KT_RGB32 color) {
  constexpr std::size_t most_rectangles_a_letter = 16;
  std::string copy = text;
  std::vector<Corner> corners(4 * most_rectangles_a_letter * (text.size() + 1));
  const int rectangles = stb_easy_font_print(0, 0, copy.data(), nullptr, corners.data(),
                                             static_cast<int>(corners.size() * sizeof(Corner)));
  for (int i = 0; i < rectangles; ++i) {
    const Corner& from = corners[static_cast<std::size_t>(4 * i)];
    const Corner& to = corners[static_cast<std::size_t>(4 * i + 2)];
    const int x = static_cast<int>(from.x), y = static_cast<int>(from.y);
    fill(picture, left + x, top + y, static_cast<int>(to.x) - x, static_cast<int>(to.y) - y, color);
  }
}

}  // namespace kv
