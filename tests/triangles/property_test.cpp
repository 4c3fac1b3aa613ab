// What holds for every triangle: neighbours share no pixel and leave none between them, a clip
// cuts and changes nothing else, and nothing is drawn where it may not be.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "tests/support/session.h"

namespace {

using namespace support;

std::mt19937 engine;
int pick(int low, int high) {
  const auto from = static_cast<unsigned>(low);
  const unsigned many = static_cast<unsigned>(high) - from + 1;
  return static_cast<int>(from + static_cast<unsigned>(engine()) % many);
}

KT_RGB32 any_color(int green, int alpha) {
  return {static_cast<std::uint8_t>(pick(0, 255)), static_cast<std::uint8_t>(green),
          static_cast<std::uint8_t>(pick(0, 255)), static_cast<std::uint8_t>(alpha)};
}

KT_Int_Rectangle any_rectangle(int width, int height) {
  const int x = pick(0, width - 1), y = pick(0, height - 1);
  return {x, pick(x, width - 1), y, pick(y, height - 1)};
}

bool contains(const KT_Int_Rectangle& r, int x, int y) {
  return x >= r.left && x <= r.right && y >= r.bottom && y <= r.top;
}

/// The triangles of a rectangle, x 2 to 42 and y 2 to 32, cut into cells. Inner corners are moved
/// by less than half a cell, so that none turns over; diagonals and windings are chosen freely.
std::vector<Strip> random_mesh(int columns, int rows) {
  std::vector<KT_DCI_Point> grid;
  for (int j = 0; j <= rows; ++j) {
    for (int i = 0; i <= columns; ++i) {
      KT_DCI_Point p{2 + 40 * i / columns, 2 + 30 * j / rows, pick(0, 65535)};
      if (i > 0 && i < columns) p.x += pick(-40 / columns / 3, 40 / columns / 3);
      if (j > 0 && j < rows) p.y += pick(-30 / rows / 3, 30 / rows / 3);
      grid.push_back(p);
    }
  }
  std::vector<Strip> triangles;
  for (int cell = 0; cell < columns * rows; ++cell) {
    const auto* p = grid.data() + cell / columns * (columns + 1) + cell % columns;
    std::array around = {p[0], p[1], p[columns + 2], p[columns + 1]};
    std::rotate(around.begin(), around.begin() + pick(0, 1), around.end());
    for (const auto& [a, b, c] : {std::array<std::size_t, 3>{0, 1, 2}, {2, 3, 0}}) {
      Strip strip = strip_of({around[a], around[b], around[c]});
      for (KT_RGB32& color : strip.colors) color = any_color(pick(0, 255), 255);
      std::shuffle(strip.points.begin(), strip.points.end(), engine);
      triangles.push_back(strip);
    }
  }
  return triangles;
}

TEST(Property, MeshesCoverEachPixelOnce) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {46, 36}});
    for (int seed = 0; seed < 24; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Layer layer = all_layers[seed % 4];
      const Kind kind = all_kinds[seed / 4 % 3];
      SCOPED_TRACE(describe(variant, layer, kind) + ", seed " + std::to_string(seed));
      KT_Int_Rectangle clip{0, 45, 0, 35};
      if (clips(layer) && seed % 3 != 0) clip = {9, 31, 5, 20};
      session.display().hard_clip = clip;
      std::vector<int> covered(46 * 36);
      for (const Strip& triangle : random_mesh(pick(1, 9), pick(1, 7))) {
        session.clear();
        draw(session, layer, kind, triangle);
        for (int i = 0; i < 46 * 36; ++i) {
          covered[static_cast<std::size_t>(i)] += session.color->touched(i % 46, i / 46);
        }
      }
      for (int i = 0; i < 46 * 36; ++i) {
        const int x = i % 46, y = i / 46;
        ASSERT_EQ(covered[static_cast<std::size_t>(i)],
                  contains(clip, x, y) && contains({2, 41, 2, 31}, x, y))
            << "at " << x << ", " << y;
      }
    }
  }
}

// Exact where both roads do the same: not for the dithered colours of colorized mapped triangles,
// nor for values in solid spans of one or two pixels, which the scan alone cuts short.
TEST(Property, AClippedStripIsTheWholeOneCut) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {60, 40}});
    for (int seed = 0; seed < 200; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Kind kind = all_kinds[seed % 3];
      const bool patterned = seed / 3 % 2;
      if (kind == Kind::colorized && zbuffer::is_mapped(variant)) continue;
      if (kind == Kind::gouraud && !patterned) continue;
      SCOPED_TRACE(describe(variant, Layer::int_any, kind) + ", seed " + std::to_string(seed));
      session.face().face_pattern = patterned ? pick(5, 73) : 64;
      session.misc().pattern_options = static_cast<unsigned>(pick(0, 1));
      session.misc().pattern_origin = {pick(-9, 9), pick(-9, 9)};
      Strip strip;
      const int z = pick(0, 65535);
      for (int i = pick(3, 9); i > 0; --i) {
        strip.points.push_back({pick(0, 59), pick(0, 39), patterned ? pick(0, 65535) : z});
        strip.colors.push_back(any_color(i % 3 * 100, 255));  // never nearly equal
      }
      const KT_Int_Rectangle cut = any_rectangle(60, 40);
      Pixels expected[2];
      for (const KT_Int_Rectangle& clip : {KT_Int_Rectangle{0, 59, 0, 39}, cut}) {
        session.clear();
        session.display().hard_clip = clip;
        draw(session, Layer::int_any, kind, strip);
        for (const Guarded_Image* image : {session.color.get(), session.depth.get()}) {
          if (!image) continue;
          Pixels& wanted = expected[image == session.depth.get()];
          if (!wanted.empty()) {
            ASSERT_TRUE(same_pixels(image->pixels(), wanted, 60));
          }
          wanted = image->pixels();
          for (int i = 0; i < 60 * 40; ++i) {
            if (!contains(cut, i % 60, i / 60))
              wanted[static_cast<std::size_t>(i)] = image->untouched();
          }
        }
      }
    }
  }
}

TEST(Property, NothingOutsideClipMaskOrImage) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {50, 30}, .origin = {-20, 35}, .use_mask = true});
    for (int seed = 0; seed < 300; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Layer layer = seed % 2 ? Layer::float_any : Layer::int_any;
      const Kind kind = all_kinds[seed % 3];
      SCOPED_TRACE(describe(variant, layer, kind) + ", seed " + std::to_string(seed));
      const KT_Int_Rectangle clip = any_rectangle(50, 30);
      const bool blends = seed / 3 % 3 == 0, has_clip = seed % 4 == 0;
      session.display().hard_clip = {clip.left - 20, clip.right - 20, clip.bottom + 35,
                                     clip.top + 35};
      session.display().complex_clip =
          has_clip ? contour({{-18, 37, 0}, {28, 40, 0}, {0, 64, 0}}) : KT_Contour_Set();
      session.face().face_pattern = seed % 5 ? 64 : pick(1, 73);
      session.misc().pattern_options = static_cast<unsigned>(pick(0, 3));
      session.misc().drawing_mode = seed % 7 ? 0 : 20;
      session.misc().advanced_options.bits = blends ? 8 : 0;
      constexpr int reaches[] = {60, 5000, 100000, 2000000000};
      const int reach = reaches[seed / 2 % 4];
      Strip strip;
      for (int i = pick(3, 70); i > 0; --i) {
        strip.points.push_back({pick(-reach, reach), pick(-reach, reach), pick(0, 65535)});
        strip.colors.push_back(any_color(pick(0, 255), pick(0, 255)));
      }
      session.clear();
      draw(session, layer, kind, strip);
      // Blended strips with depth are not subject to the mask.
      const bool masked =
          has_clip && variant != Variant::rgb_alpha_z && !(variant == Variant::rgb_z && blends);
      const Mask_Cache_Data& cache = *session.renderer().mask_cache;
      for (int i = 0; i < 50 * 30; ++i) {
        const int x = i % 50, y = i / 50;
        const bool hidden = masked && (cache.head->image->rows[y][x / 8] & 128 >> x % 8) != 0;
        if (contains(clip, x, y) && !hidden) continue;
        ASSERT_FALSE(session.color->touched(x, y)) << "at " << x << ", " << y;
        ASSERT_FALSE(session.depth && session.depth->touched(x, y)) << "at " << x << ", " << y;
      }
    }
  }
}

}  // namespace
