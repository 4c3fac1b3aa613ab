// A finished picture in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

// Three bytes a pixel: red, green, blue; the top row first.
struct Picture {
  int width = 0, height = 0;
  std::vector<std::uint8_t> pixels;

  Picture(int w, int h)
      : width(w),
        height(h),
        pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 3) {}

  std::uint8_t* row(int y) { return pixels.data() + row_start(y); }
  const std::uint8_t* row(int y) const { return pixels.data() + row_start(y); }

 private:
  std::size_t row_start(int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 3;
  }
};

}  // namespace kv
