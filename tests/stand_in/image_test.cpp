#include "host/image.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/stand_in/watched_heap.h"

namespace {

TEST(Image, HasContiguousAlignedZeroedRowsInBothOrders) {
  const KT_Shared_Image image(5, 7, KT_Image_Format::rgb32, 24, nullptr, false);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image->scan_lines[0]) % 64, 0U);
  for (int line = 0; line < 7; ++line) {
    EXPECT_EQ(image->scan_lines[line], image->scan_lines[0] + 24 * line);
    EXPECT_EQ(image->rows[6 - line], image->scan_lines[line]);
    for (int byte = 0; byte < 24; ++byte) EXPECT_EQ(image->scan_lines[line][byte], 0);
  }
}

TEST(Image, CopiesAreTheirOwn) {
  std::vector<std::uint8_t> pixels(12);
  std::iota(pixels.begin(), pixels.end(), std::uint8_t{1});
  KT_Shared_Image image(4, 3, KT_Image_Format::mapped, 4, pixels.data(), false);
  image->keep_window_size = 1;
  EXPECT_EQ(image->rows[2][0], 1);  // the top row comes first
  EXPECT_EQ(image->rows[0][3], 12);

  const KT_Shared_Image reader = image;
  image.writable().rows[0][3] = 99;
  EXPECT_EQ(reader->rows[0][3], 12);
  EXPECT_EQ(image->rows[2][0], 1);
  EXPECT_EQ(image->keep_window_size, 1);
}

TEST(Image, LeavesNothingBehindWithoutRoom) {
  const int before = watched_heap::live_blocks();
  for (int granted = 0; granted < 2; ++granted) {
    const watched_heap::Exhausted exhausted(granted);
    EXPECT_THROW(KT_Shared_Image(8, 8, KT_Image_Format::mapped, 8, nullptr, false), std::bad_alloc);
  }
  EXPECT_EQ(watched_heap::live_blocks(), before);
  EXPECT_THROW(KT_Shared_Image(8, -1, KT_Image_Format::mapped, 8, nullptr, false), std::bad_alloc);
}

}  // namespace
