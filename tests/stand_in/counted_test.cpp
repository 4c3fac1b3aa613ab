#include <gtest/gtest.h>

#include "host/application.h"
#include "tests/stand_in/watched_heap.h"

namespace {

TEST(Counted, WritingLeavesOtherHoldersAlone) {
  KT_Handle<KT_Material> writer(new KT_Material);
  writer->color = {1, 2, 3, 4};
  const KT_Handle<KT_Material> reader = writer;
  const std::uint32_t old_id = reader->id;

  writer.writable().color = {5, 6, 7, 8};

  EXPECT_EQ(reader->color, (KT_RGB32{1, 2, 3, 4}));
  EXPECT_EQ(reader->id, old_id);
  EXPECT_NE(writer->id, old_id);
  EXPECT_EQ(reader->reference_count, 1U);
  EXPECT_EQ(writer->reference_count, 1U);
}

TEST(Counted, SoleOwnerKeepsTheObjectAndChangesItsId) {
  KT_Handle<KT_Material> owner(new KT_Material);
  const KT_Material* const object = owner.get();
  const std::uint32_t old_id = owner->id;
  owner.writable();
  EXPECT_EQ(owner.get(), object);
  EXPECT_NE(owner->id, old_id);
}

TEST(Counted, AllocatesOnTheFrameworkHeap) {
  const int before = watched_heap::live_blocks();
  {
    const KT_Handle<KT_Material> record(new KT_Material);
    EXPECT_EQ(watched_heap::live_blocks(), before + 1);
  }
  EXPECT_EQ(watched_heap::live_blocks(), before);

  const watched_heap::Exhausted exhausted(0);
  EXPECT_THROW(new KT_Material, std::bad_alloc);
}

}  // namespace
