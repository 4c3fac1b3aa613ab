// The cache of clip masks: which masks it keeps, and in which order.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

class Mask_Cache : public testing::Test {
 protected:
  Session session{{.use_mask = true}};
  std::map<char, KT_Contour_Set> clips;

  /// Draws under clip `name`, which leaves 1 column for A, 2 for B and so on; returns its mask.
  const Frame_Buffer_Mask* use(char name) {
    const int columns = name - 'A' + 1;
    const auto x = static_cast<float>(columns);
    KT_Contour_Set& clip = clips[name];
    if (!clip) clip = contour({{0, 0, 0}, {x, 0, 0}, {x, 8, 0}, {0, 8, 0}});
    session.display().complex_clip = clip;
    draw_triangle();
    EXPECT_TRUE(session.color->touched(columns - 1, 0) && !session.color->touched(columns, 0));
    return session.renderer().mask_cache->head;
  }

  void draw_triangle() {
    session.clear();
    draw(session, Layer::int_any, Kind::flat, strip_of({{0, 0, 9}, {9, 0, 9}, {0, 7, 9}}));
  }

  /// The cache from the head on, by the names of the clips; the links back must agree.
  std::string order() const {
    const Mask_Cache_Data& cache = *session.renderer().mask_cache;
    std::string names;
    const Frame_Buffer_Mask* before = nullptr;
    for (const Frame_Buffer_Mask* mask = cache.head; mask; before = mask, mask = mask->next) {
      EXPECT_EQ(mask->previous, before);
      for (const auto& [name, clip] : clips) {
        if (clip->id == mask->contour_id) names += name;
      }
    }
    EXPECT_EQ(cache.tail, before);
    EXPECT_EQ(cache.count, static_cast<int>(names.size()));
    return names;
  }
};

TEST_F(Mask_Cache, TheLeastRecentlyUsedOfFourGoes) {
  const Frame_Buffer_Mask* const a = use('A');
  const Frame_Buffer_Mask* const b = use('B');
  use('C'), use('D');
  EXPECT_EQ(order(), "DCBA");
  EXPECT_EQ(use('A'), a);  // from the tail
  EXPECT_EQ(order(), "ADCB");
  EXPECT_EQ(use('E'), b);  // the object of the one that goes is used again
  EXPECT_EQ(order(), "EADC");
  use('D'), use('B');  // from the middle, and in the tail's place
  EXPECT_EQ(order(), "BDEA");
  session.display().complex_clip.release();
  draw_triangle();
  EXPECT_TRUE(session.color->touched(7, 0));
  EXPECT_EQ(order(), "BDEA");

  // With a window that begins at a negative coordinate the moved clip is the one that counts.
  session.display().complex_clip = contour({{2, 0, 0}, {12, 0, 0}, {12, 8, 0}, {2, 8, 0}});
  session.display().extent_left = -1;
  draw_triangle();
  EXPECT_EQ(session.renderer().mask_cache->head->contour_id,
            session.rendition.shifted_complex_clip()->id);
  EXPECT_TRUE(session.color->touched(1, 0) && !session.color->touched(0, 0));
}

// Renderers that share the cache may have windows of other sizes.
TEST_F(Mask_Cache, AMaskOfAnotherSizeIsNotFound) {
  Session wide({.size = {70, 40}, .use_mask = true, .source = &session.renderer()});
  session.establish();
  use('B');
  wide.display().complex_clip = clips['B'];
  draw(wide, Layer::int_any, Kind::flat, strip_of({{0, 0, 9}, {69, 0, 9}, {0, 39, 9}}));
  EXPECT_TRUE(wide.color->touched(1, 5) && !wide.color->touched(2, 5));
  EXPECT_EQ(session.renderer().mask_cache->count, 2);
  EXPECT_NE(use('B'), wide.renderer().mask_cache->tail);
  EXPECT_EQ(order(), "BB");
}

}  // namespace
