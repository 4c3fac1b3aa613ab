// Frame images with guard bands, and pictures of them as text.
//
// A picture has its top row first. '.' is a pixel that still holds what the image was filled with;
// every other character stands for a value by a legend.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host/image.h"

namespace support {

/// All pixels of an image, the bottom row first.
using Pixels = std::vector<std::uint32_t>;

/// An image amid guard rows, with `padding` guard pixels after each row: a store outside the
/// pixels shows there.
class Guarded_Image : public KT_Shared_Image_Data {
 public:
  Guarded_Image(KT_Int_XY size, KT_Image_Format format, int padding);
  ~Guarded_Image() override;

  /// Puts `value` into every pixel and renews the guards.
  void fill(std::uint32_t value);
  std::uint32_t untouched() const { return untouched_; }
  bool touched(int x, int y) const { return at(x, y) != untouched_; }
  std::uint32_t at(int x, int y) const;
  Pixels pixels() const;
  testing::AssertionResult guards_intact() const;

 private:
  static constexpr int guard_rows = 3;
  static constexpr std::uint8_t guard_byte = 0xA5;

  std::size_t pixel_bytes_;
  std::uint32_t untouched_ = 0;
};

constexpr bool lies_in(const KT_Int_Rectangle& r, int x, int y) {
  return x >= r.left && x <= r.right && y >= r.bottom && y <= r.top;
}

using Legend = std::map<char, std::uint32_t>;

/// Whether `image` looks like `picture`; the failure names the first pixel that does not.
testing::AssertionResult shows(const Guarded_Image& image, const std::vector<std::string>& picture,
                               const Legend& legend);
/// The rows of an image from the top on: '#' where it was drawn on.
std::vector<std::string> drawn(const Guarded_Image& image);
/// Whether an image of that width holds these pixels.
testing::AssertionResult same_pixels(const Pixels& got, const Pixels& expected, int width);

}  // namespace support
