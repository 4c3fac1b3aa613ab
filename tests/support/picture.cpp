#include "tests/support/picture.h"

#include <cstring>
#include <sstream>

namespace support {
namespace {

int bytes_of(KT_Image_Format format) {
  return format == KT_Image_Format::rgb32 ? 4 : format == KT_Image_Format::depth ? 2 : 1;
}

std::string hex(std::uint32_t value) {
  std::ostringstream out;
  out << "0x" << std::hex << value;
  return out.str();
}

testing::AssertionResult wrong_pixel(int x, int y, std::uint32_t expected, std::uint32_t got) {
  return testing::AssertionFailure()
         << "pixel (" << x << ", " << y << "): expected " << hex(expected) << ", got " << hex(got);
}

}  // namespace

Guarded_Image::Guarded_Image(KT_Int_XY size, KT_Image_Format its_format, int padding)
    : KT_Shared_Image_Data(size.x, size.y + 2 * guard_rows, its_format,
                           (size.x + padding) * bytes_of(its_format), nullptr) {
  height = size.y;
  scan_lines += guard_rows;
  rows += guard_rows;
  fill(0);
}

Guarded_Image::~Guarded_Image() {
  scan_lines -= guard_rows;
}

int Guarded_Image::pixel_bytes() const {
  return bytes_of(format);
}

void Guarded_Image::fill(std::uint32_t value) {
  untouched_ = value;
  for (int line = -guard_rows; line < height + guard_rows; ++line) {
    std::memset(scan_lines[line], guard_byte, static_cast<std::size_t>(row_bytes));
  }
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) set(x, y, value);
  }
}

std::uint32_t Guarded_Image::at(int x, int y) const {
  std::uint32_t value = 0;
  std::memcpy(&value, rows[y] + x * pixel_bytes(), static_cast<std::size_t>(pixel_bytes()));
  return value;
}

void Guarded_Image::set(int x, int y, std::uint32_t value) {
  std::memcpy(rows[y] + x * pixel_bytes(), &value, static_cast<std::size_t>(pixel_bytes()));
}

std::vector<std::uint32_t> Guarded_Image::pixels() const {
  std::vector<std::uint32_t> all;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) all.push_back(at(x, y));
  }
  return all;
}

testing::AssertionResult Guarded_Image::guards_intact(bool padding_too) const {
  for (int line = -guard_rows; line < height + guard_rows; ++line) {
    const bool inside = line >= 0 && line < height;
    if (inside && !padding_too) continue;
    for (int i = inside ? width * pixel_bytes() : 0; i < row_bytes; ++i) {
      if (scan_lines[line][i] == guard_byte) continue;
      return testing::AssertionFailure() << "a store outside the image at byte " << i
                                         << " of row " << height - 1 - line;
    }
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult shows(const Guarded_Image& image, const std::vector<std::string>& picture,
                               const Legend& legend) {
  testing::AssertionResult result = testing::AssertionSuccess();
  std::ostringstream drawn;
  for (int y = image.height - 1; y >= 0; --y) {
    const std::string& row = picture.at(static_cast<std::size_t>(image.height - 1 - y));
    for (int x = 0; x < image.width; ++x) {
      const std::uint32_t got = image.at(x, y);
      const char wanted = row.at(static_cast<std::size_t>(x));
      const std::uint32_t expected = wanted == '.' ? image.untouched() : legend.at(wanted);
      char shown = got == image.untouched() ? '.' : '?';
      for (const auto& [character, value] : legend) {
        if (value == got) shown = character;
      }
      drawn << shown;
      if (got != expected && result) result = wrong_pixel(x, y, expected, got);
    }
    drawn << '\n';
  }
  if (result) return result;
  return result << "\nthe whole picture:\n" << drawn.str();
}

testing::AssertionResult same_pixels(const std::vector<std::uint32_t>& got,
                                     const std::vector<std::uint32_t>& expected, int width) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const int at = static_cast<int>(i);
    if (got.at(i) != expected[i]) return wrong_pixel(at % width, at / width, expected[i], got[i]);
  }
  return testing::AssertionSuccess();
}

}  // namespace support
