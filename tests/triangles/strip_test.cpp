// Strips: the fill rule as pictures, and what a call allocates.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;
using Picture = std::vector<std::string>;

TEST(Strips, CoverByTheFillRule) {
  const std::pair<std::vector<KT_DCI_Point>, Picture> cases[] = {
      // Flat top: the lowest row is full, the highest row is not drawn.
      {{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {"......", "#.....", "##....", "###...", "####.."}},
      {{{0, 4, 0}, {4, 4, 0}, {0, 0, 0}}, {"......", "###...", "##....", "#.....", "......"}},
      // Steps of 5/3, rising and falling.
      {{{0, 0, 0}, {5, 3, 0}, {0, 3, 0}}, {"......", "......", "###...", "##....", "......"}},
      {{{5, 0, 0}, {0, 3, 0}, {5, 3, 0}}, {"......", "......", "..###.", "...##.", "......"}},
      // The middle point on the long edge.
      {{{0, 0, 0}, {2, 2, 0}, {4, 4, 0}}, Picture(5, "......")},
      {{{1, 0, 0}, {5, 0, 0}, {1, 4, 0}, {5, 4, 0}},
       {"......", ".####.", ".####.", ".####.", ".####."}},
  };
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {6, 5}, .origin = {-30, 7}});
    for (const auto& [points, picture] : cases) {
      Strip strip = strip_of(points);
      for (KT_DCI_Point& p : strip.points) p = {p.x - 30, p.y + 7, 0};
      for (const Layer layer : all_layers) {
        session.clear();
        draw(session, layer, Kind::flat, strip);
        EXPECT_TRUE(shows(*session.color, picture, session.legend()))
            << name_of(variant) << ", layer " << static_cast<int>(layer);
      }
    }
  }
}

TEST(Strips, ReachAsFarAsAHardClipWithoutEnd) {
  Session session;
  Pixels pictures[2];
  for (const int end : {11, INT32_MAX}) {
    session.display().hard_clip = {0, end, 0, end};
    session.clear();
    draw(session, Layer::int_any, Kind::flat, strip_of({{-5, 2, 9}, {9, 2, 9}, {3, 7, 9}}));
    pictures[end == 11] = session.color->pixels();
  }
  EXPECT_TRUE(same_pixels(pictures[0], pictures[1], 12));
}

TEST(Strips, OfFewerThanThreePointsDrawNothing) {
  const std::vector<KT_DCI_Point> points{{1, 1, 9}, {9, 5, 9}};
  for (const Variant variant : all_variants) {
    const Session session({.variant = variant});
    for (const Layer layer : all_layers) {
      for (const Kind kind : all_kinds) {
        for (int n = 0; n < 3; ++n)
          draw(session, layer, kind, {{points.begin(), points.begin() + n}, {{}}});
      }
    }
    EXPECT_EQ(drawn(*session.color), Picture(8, std::string(12, '.'))) << name_of(variant);
  }
}

Strip zigzag(int count, bool inside) {
  Strip strip;
  for (int i = 0; i < count; ++i) {
    strip.points.push_back({inside ? i / 2 : i - 5, i % 2 * (inside ? 29 : 45), 100});
    strip.colors.push_back({static_cast<std::uint8_t>(i * 40), 60, 90, 128});
  }
  return strip;
}

// Up to 64 points lie on the stack; from 65 on the float and the clipping layer allocate theirs.
TEST(Strips, AllocateFromTheSixtyFifthPointOn) {
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
            SCOPED_TRACE(testing::Message()
                         << name_of(variant) << ", layer " << static_cast<int>(layer) << ", kind "
                         << static_cast<int>(kind));
            session.clear();
            EXPECT_EQ(draw(session, layer, kind, zigzag(64, !clips(layer))), 0);
            EXPECT_TRUE(session.color->touched(20, 10));
            const long before = heap::live();
            EXPECT_EQ(draw(session, layer, kind, zigzag(65, !clips(layer))),
                      clips(layer) + takes_floats(layer));
            EXPECT_EQ(heap::live(), before);
          }
        }
      }
    }
  }
}

}  // namespace
