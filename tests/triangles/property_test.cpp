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
  return low + static_cast<int>(engine() % static_cast<unsigned>(high - low + 1));
}

KT_RGB32 any_color(std::uint8_t alpha) {
  const auto byte = [] { return static_cast<std::uint8_t>(engine() & 255); };
  return {byte(), byte(), byte(), alpha};
}

std::string describe(const Configuration& configuration, Layer layer, Kind kind, int seed) {
  return std::string(name_of(configuration.variant)) + ", layer " +
         std::to_string(static_cast<int>(layer)) + ", kind " +
         std::to_string(static_cast<int>(kind)) + ", seed " + std::to_string(seed);
}

/// The triangles of a square of `columns` by `rows` cells between (2, 2) and (42, 32), its inner
/// corners moved about and its cells cut along either diagonal, each wound either way.
std::vector<Strip> random_mesh(int columns, int rows) {
  std::vector<KT_DCI_Point> grid;
  for (int j = 0; j <= rows; ++j) {
    for (int i = 0; i <= columns; ++i) {
      KT_DCI_Point p{2 + 40 * i / columns, 2 + 30 * j / rows, pick(0, 65535)};
      // Less than half a cell, so that no triangle turns over.
      if (i > 0 && i < columns) p.x += pick(-40 / columns / 3, 40 / columns / 3);
      if (j > 0 && j < rows) p.y += pick(-30 / rows / 3, 30 / rows / 3);
      grid.push_back(p);
    }
  }
  std::vector<Strip> triangles;
  for (int j = 0; j < rows; ++j) {
    for (int i = 0; i < columns; ++i) {
      const auto corner = [&](int x, int y) {
        return grid[static_cast<std::size_t>((j + y) * (columns + 1) + i + x)];
      };
      KT_DCI_Point around[] = {corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)};
      std::rotate(around, around + pick(0, 1), around + 4);
      for (const auto& [a, b, c] : {std::array{0, 1, 2}, std::array{2, 3, 0}}) {
        Strip strip = strip_of({around[a], around[b], around[c]});
        for (KT_RGB32& color : strip.colors) color = any_color(255);
        std::shuffle(strip.points.begin(), strip.points.end(), engine);
        triangles.push_back(strip);
      }
    }
  }
  return triangles;
}

TEST(Property, MeshesCoverEachPixelOnce) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {46, 36}});
    session.color->fill(0xFE);  // no index or colour that is drawn
    for (int seed = 0; seed < 24; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Layer layer = all_layers[seed % 4];
      const Kind kind = all_kinds[seed / 4 % 3];
      SCOPED_TRACE(describe({.variant = variant}, layer, kind, seed));
      const bool any = layer == Layer::float_any || layer == Layer::int_any;
      const KT_Int_Rectangle clip =
          any && seed % 3 ? KT_Int_Rectangle{9, 31, 5, 20} : KT_Int_Rectangle{0, 45, 0, 35};
      session.display().hard_clip = clip;
      std::vector<int> covered(46 * 36);
      for (const Strip& triangle : random_mesh(pick(1, 9), pick(1, 7))) {
        session.color->fill(0xFE);
        if (session.depth) session.depth->fill(0xFFFF);
        draw(session, layer, kind, triangle);
        for (int i = 0; i < 46 * 36; ++i) {
          covered[static_cast<std::size_t>(i)] += session.color->touched(i % 46, i / 46);
        }
      }
      for (int i = 0; i < 46 * 36; ++i) {
        const int x = i % 46, y = i / 46;
        const bool inside = x >= std::max(2, clip.left) && x < std::min(42, clip.right + 1) &&
                            y >= std::max(2, clip.bottom) && y < std::min(32, clip.top + 1);
        ASSERT_EQ(covered[static_cast<std::size_t>(i)], inside) << "at " << x << ", " << y;
      }
    }
  }
}

// Exact where the roads do the same: not for the dithered colours of a mapped triangle, nor for
// values in solid spans of one or two pixels, which are short-cut on one road alone.
TEST(Property, AClippedStripIsTheWholeOneCut) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {60, 40}});
    session.material().contrast_color = any_color(255);
    for (int seed = 0; seed < 200; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Kind kind = all_kinds[seed % 3];
      const bool patterned = seed / 3 % 2;
      if (kind == Kind::colorized && zbuffer::is_mapped(variant)) continue;
      if (kind == Kind::gouraud && !patterned) continue;
      SCOPED_TRACE(describe({.variant = variant}, Layer::int_any, kind, seed));
      session.face().face_pattern = patterned ? pick(5, 73) : 64;
      session.misc().pattern_options = static_cast<unsigned>(pick(0, 1));
      session.misc().pattern_origin = {pick(-9, 9), pick(-9, 9)};
      Strip strip;
      const int z = pick(0, 65535);
      for (int i = pick(3, 9); i > 0; --i) {
        strip.points.push_back({pick(0, 59), pick(0, 39), patterned ? pick(0, 65535) : z});
        // Far enough apart that no test finds them nearly equal.
        strip.colors.push_back(any_color(255));
        strip.colors.back().green = static_cast<std::uint8_t>(i % 3 * 100);
      }
      const int x = pick(0, 59), y = pick(0, 39);
      const KT_Int_Rectangle cut{x, pick(x, 59), y, pick(y, 39)};
      std::vector<std::uint32_t> expected[2];
      for (const bool clipped : {false, true}) {
        session.clear();
        session.display().hard_clip = clipped ? cut : KT_Int_Rectangle{0, 59, 0, 39};
        draw(session, Layer::int_any, kind, strip);
        Guarded_Image* const images[] = {session.color.get(), session.depth.get()};
        for (int which = 0; which < 2; ++which) {
          if (!images[which]) continue;
          Guarded_Image& image = *images[which];
          if (clipped) {
            ASSERT_TRUE(same_pixels(image.pixels(), expected[which], 60)) << "of image " << which;
            continue;
          }
          expected[which] = image.pixels();
          for (int i = 0; i < 60 * 40; ++i) {
            const int px = i % 60, py = i / 60;
            if (px < cut.left || px > cut.right || py < cut.bottom || py > cut.top)
              expected[which][static_cast<std::size_t>(i)] = image.untouched();
          }
        }
      }
    }
  }
}

TEST(Property, NothingOutsideClipMaskOrImage) {
  for (const Variant variant : all_variants) {
    const Configuration configuration{
        .variant = variant, .size = {50, 30}, .origin = {-20, 35}, .use_mask = true};
    Session session(configuration);
    for (int seed = 0; seed < 300; ++seed) {
      engine.seed(static_cast<unsigned>(seed));
      const Layer layer = seed % 2 ? Layer::float_any : Layer::int_any;
      const Kind kind = all_kinds[seed % 3];
      SCOPED_TRACE(describe(configuration, layer, kind, seed));
      const int left = pick(0, 49), bottom = pick(0, 29);
      const int right = pick(left, 49), top = pick(bottom, 29);
      session.display().hard_clip = {left - 20, right - 20, bottom + 35, top + 35};
      session.display().complex_clip.release();
      if (seed % 4 == 0) {
        session.display().complex_clip = contour({{-18, 37, 0}, {28, 40, 0}, {0, 64, 0}});
      }
      session.face().face_pattern = seed % 5 ? 64 : pick(1, 73);
      session.misc().pattern_options = static_cast<unsigned>(pick(0, 3));
      session.misc().drawing_mode = seed % 7 ? 0 : 20;
      const bool blends = seed / 3 % 3 == 0;
      session.misc().advanced_options.bits = blends ? 8 : 0;
      const int reach = std::array{60, 5000, 100000, 2000000000}[seed / 2 % 4];
      Strip strip;
      for (int i = pick(3, 70); i > 0; --i) {
        strip.points.push_back({pick(-reach, reach), pick(-reach, reach), pick(0, 65535)});
        strip.colors.push_back(any_color(static_cast<std::uint8_t>(pick(0, 255))));
      }
      session.clear();
      draw(session, layer, kind, strip);
      const Mask_Cache_Data& cache = *session.renderer().mask_cache;
      // Blended strips with depth are not subject to the mask.
      const bool masked = seed % 4 == 0 && variant != Variant::rgb_alpha_z &&
                          !(variant == Variant::rgb_z && blends);
      for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 50; ++x) {
          const bool hidden = masked && (cache.head->image->rows[y][x / 8] & 128 >> x % 8) != 0;
          if (x >= left && x <= right && y >= bottom && y <= top && !hidden) continue;
          ASSERT_FALSE(session.color->touched(x, y)) << "at " << x << ", " << y;
          if (session.depth) {
            ASSERT_FALSE(session.depth->touched(x, y)) << "at " << x << ", " << y;
          }
        }
      }
      ASSERT_TRUE(session.color->guards_intact());
    }
  }
}

}  // namespace
