// Counted records, images and option values: copies, identity and what they hold.
#include <gtest/gtest.h>

#include <numeric>

#include "host/application.h"
#include "tests/support/heap.h"

namespace {

TEST(Counted, WritingLeavesOtherHoldersAlone) {
  KT_Handle<KT_Material> writer(new KT_Material);
  const KT_Material* const object = writer.get();
  const std::uint32_t first_id = writer->id;
  writer.writable().color = {1, 2, 3, 4};
  EXPECT_EQ(writer.get(), object);  // a sole owner keeps it
  EXPECT_NE(writer->id, first_id);

  const KT_Handle<KT_Material> reader = writer;
  const std::uint32_t old_id = reader->id;
  writer.writable().color = {5, 6, 7, 8};
  EXPECT_EQ(reader->color, (KT_RGB32{1, 2, 3, 4}));
  EXPECT_EQ(reader->id, old_id);
  EXPECT_NE(writer->id, old_id);
  EXPECT_EQ(reader->reference_count, 1U);
  EXPECT_EQ(writer->reference_count, 1U);
}

TEST(Counted, AllocatesOnTheFrameworkHeap) {
  const long before = heap::live(), of_framework = heap::allocated_by_framework();
  {
    const KT_Handle<KT_Material> record(new KT_Material);
    EXPECT_EQ(heap::allocated_by_framework(), of_framework + 1);
    EXPECT_EQ(heap::live(), before + 1);
  }
  EXPECT_EQ(heap::live(), before);
  const heap::Exhausted exhausted(0, heap::Refusal::by_null);
  EXPECT_THROW(new KT_Material, std::bad_alloc);
}

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

  const KT_Shared_Image reader = image;
  image.writable().rows[0][3] = 99;
  EXPECT_EQ(reader->rows[0][3], 12);
  EXPECT_EQ(image->rows[2][0], 1);
  EXPECT_EQ(image->keep_window_size, 1);
}

TEST(Image, LeavesNothingBehindWithoutRoom) {
  const long before = heap::live();
  for (int granted = 0; granted < 2; ++granted) {
    const heap::Exhausted exhausted(granted, heap::Refusal::by_null);
    EXPECT_THROW(KT_Shared_Image(8, 8, KT_Image_Format::mapped, 8, nullptr, false), std::bad_alloc);
  }
  EXPECT_EQ(heap::live(), before);
  EXPECT_THROW(KT_Shared_Image(8, -1, KT_Image_Format::mapped, 8, nullptr, false), std::bad_alloc);
}

TEST(Option_Value, CopiesHaveTheirOwnStorageAndKeepObjectsAlive) {
  KT_Option_Value value(1, 2, 3);
  const KT_Option_Value reader = value;
  static_cast<std::int32_t*>(value.writable().data)[1] = 20;
  EXPECT_EQ(reader->as_ints()[1], 2);
  EXPECT_EQ(value->as_ints()[0], 1);
  EXPECT_EQ(value->as_ints()[1], 20);
  EXPECT_EQ(value->as_ints()[2], 3);

  const KT_Handle<KT_Material> object(new KT_Material);
  {
    KT_Option_Value copy(false);
    copy = KT_Option_Value(static_cast<const KT_Counted*>(object.get()));
    const KT_Option_Value other = copy;
    copy.writable();
    EXPECT_EQ(object->reference_count, 3U);
  }
  EXPECT_EQ(object->reference_count, 1U);
}

}  // namespace
