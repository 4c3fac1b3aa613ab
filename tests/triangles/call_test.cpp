// What a call asks of others: memory for long strips alone, masks from the cache, lines where
// edges are asked for.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

Strip zigzag(int count, bool inside) {
  Strip strip;
  for (int i = 0; i < count; ++i) {
    strip.points.push_back({inside ? i / 2 : i - 5, i % 2 * (inside ? 29 : 45), 100});
    strip.colors.push_back({static_cast<std::uint8_t>(i * 40), 60, 90, 128});
  }
  return strip;
}

// Up to 64 points lie on the stack; from 65 on the float and the clipping layer allocate theirs.
TEST(Calls, AllocateForLongStripsAlone) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {40, 30}, .use_mask = true});
    for (const bool masked : {false, true}) {
      session.display().complex_clip =
          masked ? contour({{0, 0, 0}, {40, 0, 0}, {20, 30, 0}}) : KT_Contour_Set();
      draw(session, Layer::int_any, Kind::flat, zigzag(3, true));  // makes the mask
      for (const int pattern : {64, 20}) {
        session.face().face_pattern = pattern;
        for (const Layer layer : all_layers) {
          for (const Kind kind : all_kinds) {
            session.clear();
            EXPECT_EQ(draw(session, layer, kind, zigzag(64, !clips(layer))), 0)
                << describe(variant, layer, kind);
            EXPECT_TRUE(session.color->touched(20, 10));
            const long before = heap::live();
            EXPECT_EQ(draw(session, layer, kind, zigzag(65, !clips(layer))),
                      clips(layer) + takes_floats(layer))
                << describe(variant, layer, kind);
            EXPECT_EQ(heap::live(), before);
          }
        }
      }
    }
  }
}

// The edge bit draws lines and the alpha bit blends. With both, the inner colorized action of
// `RGB_Z` blends; every other road looks for edges first.
TEST(Calls, EdgeAndAlphaBits) {
  Session session({.variant = Variant::rgb_z, .size = {40, 30}});
  Strip strip = strip_of({{0, 0, 9}, {39, 0, 9}, {0, 29, 9}}, {0, 0, 255, 0});
  strip.colors[1] = {200, 0, 0, 0};
  for (const unsigned bits : {0U, 8U, 32U, 40U}) {
    for (const Layer layer : all_layers) {
      for (const Kind kind : {Kind::colorized, Kind::gouraud}) {
        session.misc().advanced_options.bits = bits;
        session.clear();
        draw(session, layer, kind, strip);
        // Amid the triangle a blended colour of alpha 0 takes the depth and no more.
        const bool blends =
            bits == 8 || (bits == 40 && layer == Layer::int_inside && kind == Kind::colorized);
        EXPECT_EQ(session.depth->touched(10, 10), bits == 0 || blends)
            << bits << describe(Variant::rgb_z, layer, kind);
        EXPECT_EQ(session.color->at(10, 10) << 8 == session.color->untouched() << 8, bits != 0)
            << bits << describe(Variant::rgb_z, layer, kind);
      }
    }
  }
}

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

}  // namespace
