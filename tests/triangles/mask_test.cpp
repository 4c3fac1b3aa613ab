// Clip masks: which are kept in the cache, and what they hide.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;
using Picture = std::vector<std::string>;

const Strip triangle = strip_of({{0, 0, 9}, {9, 0, 9}, {0, 7, 9}});

class Mask_Cache_Order : public testing::Test {
 protected:
  Session session{{.use_mask = true}};
  std::map<char, KT_Contour_Set> clips;
  std::map<char, const Frame_Buffer_Mask*> masks;

  void use(char name) {
    KT_Contour_Set& clip = clips[name];
    const auto x = static_cast<float>(name - 'A' + 1);
    if (!clip) clip = contour({{0, 0, 0}, {x, 0, 0}, {x, 8, 0}, {0, 8, 0}});
    session.display().complex_clip = clip;
    session.clear();
    draw(session, Layer::int_inside, Kind::flat, triangle);
    // The triangle's lowest row begins with columns 0 to 7; the clip leaves x of them.
    for (int column = 0; column < 7; ++column) {
      ASSERT_EQ(session.color->touched(column, 0), column < name - 'A' + 1) << name;
    }
    masks[name] = session.renderer().mask_cache->head;
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

TEST_F(Mask_Cache_Order, TheLeastRecentlyUsedOfFourGoes) {
  for (const char name : {'A', 'B', 'C', 'D'}) use(name);
  EXPECT_EQ(order(), "DCBA");
  const Frame_Buffer_Mask* const a = masks['A'];
  use('A');  // from the tail
  EXPECT_EQ(order(), "ADCB");
  EXPECT_EQ(masks['A'], a);
  const Frame_Buffer_Mask* const b = masks['B'];
  use('E');
  EXPECT_EQ(order(), "EADC");
  EXPECT_EQ(masks['E'], b);  // the object of the one that went is used again
  use('D');                  // from the middle
  EXPECT_EQ(order(), "DEAC");
  use('B');
  EXPECT_EQ(order(), "BDEA");

  session.display().complex_clip.release();
  session.clear();
  draw(session, Layer::int_inside, Kind::flat, triangle);
  EXPECT_TRUE(session.color->touched(7, 0));
  EXPECT_EQ(order(), "BDEA");
}

// With a window that begins at a negative coordinate the moved clip is the one that counts.
TEST_F(Mask_Cache_Order, NegativeExtentsTakeTheShiftedClip) {
  for (const bool left : {true, false}) {
    KT_Display_Context& display = session.display();
    display.complex_clip = contour({{2, 1, 0}, {12, 1, 0}, {12, 8, 0}, {2, 8, 0}});
    display.extent_left = left ? -1 : 0;
    display.extent_bottom = left ? 0 : -1;
    session.clear();
    draw(session, Layer::int_any, Kind::flat, triangle);
    EXPECT_EQ(session.renderer().mask_cache->head->contour_id,
              session.rendition.shifted_complex_clip()->id);
    EXPECT_EQ(session.color->touched(2, 0), !left);
    EXPECT_EQ(session.color->touched(1, 1), left);
  }
}

TEST(Mask, HidesColourAndDepthAndMovesThePattern) {
  // Of a rectangle with every fourth column a hole, the clip leaves a slanted part.
  const std::uint8_t bits[] = {0b1000};
  const KT_User_Pattern pattern{bits, 4, 1, 1};
  const Strip strip = strip_of({{0, 0, 9}, {11, 0, 9}, {0, 3, 9}, {11, 3, 9}});
  const Picture masked_picture = {"..#.###.....", "..#.###.....", ".##.###....."};
  const Picture whole_picture = Picture(3, "###.###.###.");
  for (const Variant variant : all_variants) {
    for (const bool use_mask : {true, false}) {
      Session session({.variant = variant, .size = {12, 3}, .use_mask = use_mask});
      session.face().face_pattern = 74;
      session.face().user_pattern = &pattern;
      session.display().complex_clip =
          contour({{0.5F, -0.5F, 0}, {6.5F, -0.5F, 0}, {6.5F, 2.5F, 0}, {2, 2.5F, 0}});
      // `RGB_Alpha_Z` draws as if there were no clip, and so does a renderer without masks.
      const bool masked = use_mask && variant != Variant::rgb_alpha_z;
      for (const bool clipped : {false, true}) {
        SCOPED_TRACE(testing::Message() << name_of(variant) << (clipped ? " clipped" : ""));
        Picture picture = masked ? masked_picture : whole_picture;
        session.clear();
        if (clipped) {
          session.display().hard_clip.left = 2;
          for (std::string& row : picture) row[0] = row[1] = '.';
        }
        draw(session, Layer::int_any, Kind::flat, strip);
        EXPECT_TRUE(shows(*session.color, picture, {{'#', session.own_color()}}));
        if (session.depth) {
          EXPECT_TRUE(shows(*session.depth, picture, {{'#', 9}}));
        }
      }
    }
  }
}

}  // namespace
