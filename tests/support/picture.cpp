// Guarded images and what is said of their pixels.
#include "tests/support/picture.h"

#include <cstring>

namespace support {
namespace {

int bytes_of(KT_Image_Format format) {
  return format == KT_Image_Format::rgb32 ? 4 : format == KT_Image_Format::depth ? 2 : 1;
}

}  // namespace

Guarded_Image::Guarded_Image(KT_Int_XY size, KT_Image_Format its_format, int padding)
    : KT_Shared_Image_Data(size.x, size.y + 2 * guard_rows, its_format,
                           (size.x + padding) * bytes_of(its_format), nullptr),
      pixel_bytes_(static_cast<std::size_t>(bytes_of(its_format))) {
  height = size.y;
  scan_lines += guard_rows;
  rows += guard_rows;
  fill(0);
}

Guarded_Image::~Guarded_Image() {
  scan_lines -= guard_rows;
}

void Guarded_Image::fill(std::uint32_t value) {
  untouched_ = value;
  for (int line = -guard_rows; line < height + guard_rows; ++line) {
    std::memset(scan_lines[line], guard_byte, static_cast<std::size_t>(row_bytes));
    const bool inside = line >= 0 && line < height;
    for (std::size_t x = 0; inside && x < static_cast<std::size_t>(width); ++x) {
      std::memcpy(scan_lines[line] + x * pixel_bytes_, &value, pixel_bytes_);
    }
  }
}

std::uint32_t Guarded_Image::at(int x, int y) const {
  std::uint32_t value = 0;
  std::memcpy(&value, rows[y] + static_cast<std::size_t>(x) * pixel_bytes_, pixel_bytes_);
  return value;
}

Pixels Guarded_Image::pixels() const {
  Pixels all;
  for (int i = 0; i < width * height; ++i) all.push_back(at(i % width, i / width));
  return all;
}

testing::AssertionResult Guarded_Image::guards_intact() const {
  for (int line = -guard_rows; line < height + guard_rows; ++line) {
    const bool inside = line >= 0 && line < height;
    const int guard = inside ? width * static_cast<int>(pixel_bytes_) : 0;
    for (int i = guard; i < row_bytes; ++i) {
      if (scan_lines[line][i] == guard_byte) continue;
      return testing::AssertionFailure()
             << "a store outside the image, at byte " << i << " of row " << height - 1 - line;
    }
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult same_pixels(const Pixels& got, const Pixels& expected, int width) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (got.at(i) == expected[i]) continue;
    const int at = static_cast<int>(i);
    return testing::AssertionFailure()
           << "pixel (" << at % width << ", " << at / width << "): expected " << std::hex
           << expected[i] << ", got " << got[i];
  }
  return testing::AssertionSuccess();
}

std::vector<std::string> drawn(const Guarded_Image& image) {
  std::vector<std::string> rows;
  for (int y = image.height - 1; y >= 0; --y) {
    rows.emplace_back();
    for (int x = 0; x < image.width; ++x) rows.back() += image.touched(x, y) ? '#' : '.';
  }
  return rows;
}

testing::AssertionResult shows(const Guarded_Image& image, const std::vector<std::string>& picture,
                               const Legend& legend) {
  Pixels expected;
  for (int y = 0; y < image.height; ++y) {
    for (const char c : picture.at(static_cast<std::size_t>(image.height - 1 - y))) {
      expected.push_back(c == '.' ? image.untouched() : legend.at(c));
    }
  }
  testing::AssertionResult same = same_pixels(image.pixels(), expected, image.width);
  if (same) return same;
  same << "\nwhat is drawn:\n";
  for (const std::string& row : drawn(image)) same << row << '\n';
  return same;
}

}  // namespace support
