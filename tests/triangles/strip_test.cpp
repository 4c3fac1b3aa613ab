// Strips: the fill rule as pictures, what a call allocates, and that neighbours share no pixel and
// leave none between them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/support/random.h"
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
            << describe(variant, layer, Kind::flat);
      }
    }
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
            SCOPED_TRACE(describe(variant, layer, kind));
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

/// The triangles of a rectangle, x 2 to 42 and y 2 to 32, cut into cells. Inner corners are moved
/// by less than half a cell, so that none turns over; diagonals and windings are chosen freely.
std::vector<Strip> random_mesh(Random& random) {
  const int columns = random.range(1, 9), rows = random.range(1, 7);
  std::vector<KT_DCI_Point> grid;
  for (int j = 0; j <= rows; ++j) {
    for (int i = 0; i <= columns; ++i) {
      KT_DCI_Point p{2 + 40 * i / columns, 2 + 30 * j / rows, random.range(0, 65535)};
      if (i > 0 && i < columns) p.x += random.range(-40 / columns / 3, 40 / columns / 3);
      if (j > 0 && j < rows) p.y += random.range(-30 / rows / 3, 30 / rows / 3);
      grid.push_back(p);
    }
  }
  std::vector<Strip> triangles;
  for (int cell = 0; cell < columns * rows; ++cell) {
    const auto* p = grid.data() + cell / columns * (columns + 1) + cell % columns;
    std::array around = {p[0], p[1], p[columns + 2], p[columns + 1]};
    std::rotate(around.begin(), around.begin() + random.range(0, 1), around.end());
    triangles.push_back(strip_of({around[0], around[2], around[1]}));
    triangles.push_back(strip_of({around[3], around[2], around[0]}));
    for (KT_RGB32& color : triangles.back().colors) color = random.color();
  }
  return triangles;
}

TEST(Strips, OfAMeshCoverEachPixelOnce) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {46, 36}});
    for (int seed = 0; seed < 24; ++seed) {
      Random random(static_cast<unsigned>(seed));
      const Layer layer = all_layers[seed % 4];
      const Kind kind = all_kinds[seed / 4 % 3];
      SCOPED_TRACE(describe(variant, layer, kind) + ", seed " + std::to_string(seed));
      const bool cut = clips(layer) && seed % 3 != 0;
      session.display().hard_clip =
          cut ? KT_Int_Rectangle{9, 31, 5, 20} : KT_Int_Rectangle{0, 45, 0, 35};
      std::vector<int> covered(46 * 36);
      for (Strip& triangle : random_mesh(random)) {
        for (KT_RGB32& color : triangle.colors) color.alpha = 255;
        session.clear();
        draw(session, layer, kind, triangle);
        const Pixels pixels = session.color->pixels();
        for (std::size_t i = 0; i < pixels.size(); ++i) {
          covered[i] += pixels[i] != session.color->untouched();
        }
      }
      for (int i = 0; i < 46 * 36; ++i) {
        const int x = i % 46, y = i / 46;
        const KT_Int_Rectangle mesh{2, 41, 2, 31}, clip = session.display().hard_clip;
        ASSERT_EQ(covered[static_cast<std::size_t>(i)], lies_in(clip, x, y) && lies_in(mesh, x, y))
            << "at " << x << ", " << y;
      }
    }
  }
}

}  // namespace
