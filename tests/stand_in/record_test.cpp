// Counted records, images and option values: copies, identity and what they hold.
#include <gtest/gtest.h>

#include "host/application.h"

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
  EXPECT_TRUE(reader->reference_count == 1 && writer->reference_count == 1);
}

TEST(Image, CopiesAreTheirOwn) {
  const std::uint8_t pixels[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  KT_Shared_Image image(4, 3, KT_Image_Format::mapped, 4, pixels, false);
  image->keep_window_size = 1;
  EXPECT_EQ(image->rows[2][0], 1);  // the top row comes first

  const KT_Shared_Image reader = image;
  image.writable().rows[0][3] = 99;
  EXPECT_EQ(reader->rows[0][3], 12);
  EXPECT_EQ(image->rows[2][0], 1);
  EXPECT_EQ(image->keep_window_size, 1);
}

TEST(Option_Value, CopiesHaveTheirOwnStorageAndKeepObjectsAlive) {
  KT_Option_Value value(1, 2, 3);
  const KT_Option_Value reader = value;
  static_cast<std::int32_t*>(value.writable().data)[1] = 20;
  EXPECT_EQ(reader->as_ints()[1], 2);
  EXPECT_EQ(value->as_ints()[1], 20);

  const KT_Handle<KT_Material> object(new KT_Material);
  {
    KT_Option_Value copy(static_cast<const KT_Counted*>(object.get()));
    const KT_Option_Value other = copy;
    copy.writable();
    EXPECT_EQ(object->reference_count, 3U);
  }
  EXPECT_EQ(object->reference_count, 1U);
}

}  // namespace
