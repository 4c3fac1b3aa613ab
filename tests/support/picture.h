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

/// An image that lies amid guard rows and has guard bytes behind each row; a store outside the
/// pixels shows there.
class Guarded_Image : public KT_Shared_Image_Data {
 public:
  /// `padding` is the number of guard pixels behind each row.
  Guarded_Image(KT_Int_XY size, KT_Image_Format format, int padding);
  ~Guarded_Image() override;

  /// Puts `value` into every pixel and renews the guards.
  void fill(std::uint32_t value);
  std::uint32_t untouched() const { return untouched_; }
  bool touched(int x, int y) const { return at(x, y) != untouched_; }
  std::uint32_t at(int x, int y) const;
  void set(int x, int y, std::uint32_t value);
  /// All pixels, the bottom row first.
  std::vector<std::uint32_t> pixels() const;

  /// Guard rows alone; with `rows_too` also what lies behind each row.
  testing::AssertionResult guards_intact(bool padding_too = true) const;

 private:
  static constexpr int guard_rows = 3;
  static constexpr std::uint8_t guard_byte = 0xA5;

  int pixel_bytes() const;

  std::uint32_t untouched_ = 0;
};

using Legend = std::map<char, std::uint32_t>;

/// Whether `image` looks like `picture`; the failure names the first pixel that does not.
testing::AssertionResult shows(const Guarded_Image& image, const std::vector<std::string>& picture,
                               const Legend& legend);

/// Whether two images of one size hold the same pixels, `expected` the second.
testing::AssertionResult same_pixels(const std::vector<std::uint32_t>& got,
                                     const std::vector<std::uint32_t>& expected, int width);

}  // namespace support
