// Images against small pictures, and all twelve routines against a plain loop.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/session.h"

namespace {

using namespace support;

struct Image {
  KT_DCI_Point start, end;
  int stride;  // pixels
  std::vector<std::uint32_t> pixels;
};

void draw(const Session& session, const Image& image) {
  if (session.color->format == KT_Image_Format::mapped) {
    const std::vector<std::uint8_t> indices(image.pixels.begin(), image.pixels.end());
    session.actions().call<KT_Action::Draw_DCI_Index8_Image>(
        session.rendition, &image.start, &image.end, image.stride, indices.data());
  } else {
    std::vector<KT_RGB32> colors;
    for (const std::uint32_t word : image.pixels) colors.push_back(KT_RGB32::from_word(word));
    session.actions().call<KT_Action::Draw_DCI_RGB32_Image>(
        session.rendition, &image.start, &image.end, 4 * image.stride, colors.data(), 0, nullptr);
  }
}

void store_depth(const Session& session, int x, int y, std::uint16_t value) {
  session.depth->row<std::uint16_t>(y)[x] = value;
}

Image image_of(KT_DCI_Point start, KT_DCI_Point end, std::uint32_t first_pixel = 0xFF000001) {
  const int width = end.x - start.x + 1, height = start.y - end.y + 1;
  Image image{start, end, width, {}};
  for (int i = 0; i < width * height; ++i) {
    image.pixels.push_back(first_pixel + static_cast<std::uint32_t>(i));
  }
  return image;
}

TEST(Images, GoFromTopToBottomAndAreCutOnTheRight) {
  for (const Variant variant : all_variants) {
    SCOPED_TRACE(name_of(variant));
    Session session({.variant = variant, .size = {6, 4}, .origin = {20, -7}});
    const bool mapped = zbuffer::is_mapped(variant);
    const Image image = image_of({23, -5, 9}, {27, -6, 9}, mapped ? 11 : 0xFF000011);
    draw(session, image);
    const auto& p = image.pixels;
    const Legend legend{{'a', p[0]}, {'b', p[1]}, {'c', p[2]},
                        {'f', p[5]}, {'g', p[6]}, {'h', p[7]}};
    EXPECT_TRUE(shows(*session.color, {"......", "...abc", "...fgh", "......"}, legend));
    session.clear();
    draw(session, image_of({26, -5, 9}, {29, -6, 9}));  // right of the window
    Image upside_down = image_of({20, -5, 9}, {22, -6, 9});
    std::swap(upside_down.start.y, upside_down.end.y);
    upside_down.end.y -= 1;
    upside_down.start.y -= 1;
    draw(session, upside_down);
    EXPECT_TRUE(shows(*session.color, std::vector<std::string>(4, "......"), {}));
  }
}

TEST(Images, DepthRampRunsOnFromRowToRow) {
  for (const Variant variant : {Variant::mapped_z, Variant::rgb_z, Variant::rgb_alpha_z}) {
    Session session({.variant = variant, .size = {110, 3}});
    draw(session, image_of({0, 2, 0}, {100, 1, 100}));
    for (int x = 0; x <= 100; ++x) {
      ASSERT_EQ(session.depth->at(x, 2), static_cast<std::uint32_t>(x));
      ASSERT_EQ(session.depth->at(x, 1), static_cast<std::uint32_t>(100 + x));
    }
    // Cut on the right the step still counts the whole width, and the next row goes on from the
    // last pixel that is drawn.
    session.clear();
    draw(session, image_of({100, 2, 0}, {200, 1, 100}));
    for (int x = 0; x < 10; ++x) {
      ASSERT_EQ(session.depth->at(100 + x, 2), static_cast<std::uint32_t>(x));
      ASSERT_EQ(session.depth->at(100 + x, 1), static_cast<std::uint32_t>(9 + x));
    }
    EXPECT_FALSE(session.depth->touched(99, 1));
  }
}

TEST(Images, IgnoreTheDepthSettings) {
  for (const Variant variant : {Variant::mapped_z, Variant::rgb_z, Variant::rgb_alpha_z}) {
    Session session({.variant = variant, .size = {6, 1}});
    session.set_depth_test(5);
    session.set_depth_write(0);
    for (int x = 0; x < 6; ++x) store_depth(session, x, 0, static_cast<std::uint16_t>(98 + x));
    draw(session, image_of({0, 0, 100}, {5, 0, 100}));
    for (int x = 0; x < 6; ++x) {
      EXPECT_EQ(session.color->touched(x, 0), 98 + x >= 100) << x;
      EXPECT_EQ(session.depth->at(x, 0), static_cast<std::uint32_t>(std::min(98 + x, 100))) << x;
    }
  }
}

// What a call meets, and what a plain reading of the rules makes of it.
struct Round {
  Variant variant;
  bool depth_enabled, masked, alpha_bit, opaque_bit;
};

class Plain {
 public:
  Plain(const Session& session, const Round& round) : session_(session), round_(round) {
    const bool direct = !zbuffer::is_mapped(round.variant);
    const bool alpha_variant = zbuffer::is_alpha(round.variant);
    by_alpha_ = direct && (alpha_variant || round.alpha_bit) && (round.masked || !round.opaque_bit);
    // A mask keeps the depth test of a blended image.
    const bool mask_first = direct && (alpha_variant || round.alpha_bit) && round.masked;
    with_depth_ = zbuffer::has_depth(round.variant) && (round.depth_enabled || mask_first);
  }

  void draw(const Image& image, std::vector<std::uint32_t>& color,
            std::vector<std::uint32_t>& depth) const {
    const int width = session_.color->width;
    const int columns = std::min(image.end.x, width - 1) - image.start.x + 1;
    const int dx = image.end.x - image.start.x;
    const int step =
        dx == 0 ? image.end.z - image.start.z : (image.end.z - image.start.z) * 32768 / dx;
    int z = image.start.z * 32768 + 16384;
    for (int row = 0; row <= image.start.y - image.end.y; ++row) {
      for (int column = 0; column < columns; ++column) {
        if (column > 0) z += step;
        const int x = image.start.x + column, y = image.start.y - row;
        if (round_.masked && !visible(x)) continue;
        const auto at = static_cast<std::size_t>(y * width + x);
        const std::uint32_t source =
            image.pixels[static_cast<std::size_t>(row * image.stride + column)];
        if (by_alpha_ && source >> 24 == 0) continue;
        if (with_depth_) {
          if (static_cast<std::uint32_t>(z >> 15) > depth[at]) continue;
          depth[at] = static_cast<std::uint32_t>(z >> 15);
        }
        color[at] = by_alpha_ ? blended(color[at], source) : source;
      }
    }
  }

  static bool visible(int x) { return x >= 5 && x < 61 && (x < 20 || x >= 23); }

 private:
  static std::uint32_t blended(std::uint32_t old, std::uint32_t source) {
    const std::uint32_t a = source >> 24;
    std::uint32_t result = 0xFF000000u;
    for (int shift = 0; shift < 24; shift += 8) {
      const std::uint32_t o = (old >> shift) & 255, s = (source >> shift) & 255;
      result |= ((o * (255 - a) + s * a) / 255) << shift;
    }
    return result;
  }

  const Session& session_;
  const Round& round_;
  bool by_alpha_, with_depth_;
};

Image random_image(std::mt19937& random, bool mapped, KT_Int_XY size) {
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  Image image;
  image.start = {below(size.x), below(size.y), below(3000)};
  image.end = {image.start.x + below(80), below(image.start.y + 1), below(3000)};
  if (below(4) == 0) image.end.x = image.start.x + (1 << below(4));
  image.stride = image.end.x - image.start.x + 1 + below(3);
  const int rows = image.start.y - image.end.y + 1;
  for (int i = 0; i < image.stride * rows; ++i) {
    std::uint32_t pixel = static_cast<std::uint32_t>(random());
    if (below(3) == 0) pixel &= 0xFFFFFF;
    if (below(3) == 0) pixel |= 0xFF000000u;
    image.pixels.push_back(mapped ? pixel & 255 : pixel);
  }
  return image;
}

void run_round(const Round& round) {
  SCOPED_TRACE(testing::Message() << name_of(round.variant) << " depth " << round.depth_enabled
                                  << " mask " << round.masked << " alpha " << round.alpha_bit
                                  << " opaque " << round.opaque_bit);
  const KT_Int_XY size{70, 9};
  Session session({.variant = round.variant, .size = size, .use_mask = true});
  session.display().depth_enabled = round.depth_enabled;
  session.misc().advanced_options.bits =
      (round.alpha_bit ? KT_Advanced_Options::alpha_bit : 0) |
      (round.opaque_bit ? KT_Advanced_Options::opaque_image_bit : 0);
  if (round.masked) {
    KT_Contour_Set& clip = session.display().complex_clip;
    clip = contour({{5, -1, 0}, {20, -1, 0}, {20, 9, 0}, {5, 9, 0}});
    clip->contours.push_back({{23, -1, 0}, {61, -1, 0}, {61, 9, 0}, {23, 9, 0}});
  }
  const Plain plain(session, round);
  std::mt19937 random(7);
  for (int i = 0; i < 12; ++i) {
    session.clear();
    for (int at = 0; session.depth && at < size.x * size.y; ++at) {
      store_depth(session, at % size.x, at / size.x, static_cast<std::uint16_t>(random() % 3000));
    }
    std::vector<std::uint32_t> color = session.color->pixels(), depth;
    if (session.depth) depth = session.depth->pixels();
    const Image image = random_image(random, zbuffer::is_mapped(round.variant), size);
    plain.draw(image, color, depth);
    draw(session, image);
    ASSERT_TRUE(same_pixels(session.color->pixels(), color, size.x)) << "image " << i;
    if (session.depth) {
      ASSERT_TRUE(same_pixels(session.depth->pixels(), depth, size.x)) << "depth of image " << i;
    }
  }
}

TEST(Images, ChooseByDepthMaskAndAlpha) {
  for (const Variant variant : all_variants) {
    for (unsigned bits = 0; bits < 16; ++bits) {
      run_round({variant, (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0});
    }
  }
}

}  // namespace
