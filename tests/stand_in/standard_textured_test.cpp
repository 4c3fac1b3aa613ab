// Textured strips of the general routines, on the module's own image actions.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "tests/support/session.h"

namespace {

using support::Configuration;
using support::Session;
using support::Variant;

constexpr KT_Int_XY size = {48, 40};

Configuration configuration_of(Variant variant) {
  Configuration configuration;
  configuration.variant = variant;
  configuration.size = size;
  return configuration;
}

/// An image whose texels tell their place: red the column, green the row from the bottom.
KT_Shared_Image place_image(int width, int height) {
  std::vector<KT_RGB32> texels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      texels.push_back(
          {0, static_cast<std::uint8_t>(height - 1 - y), static_cast<std::uint8_t>(x), 255});
    }
  }
  return {width, height, KT_Image_Format::rgb32, width * 4, texels.data(), false};
}

KT_Shared_Image plain_image(KT_RGB32 color) {
  const std::vector<KT_RGB32> texels(4, color);
  return {2, 2, KT_Image_Format::rgb32, 8, texels.data(), false};
}

/// A strip of two triangles, from left bottom to right top.
struct Quad {
  std::vector<KT_DCI_Point> points;
  std::vector<KT_Parameter> parameters;
  std::vector<KT_RGB32> colors;
  std::vector<float> w;
  std::vector<KT_Vector> vectors;
};

/// Covers x 4 to 4 + width - 1 and y 3 to 3 + height - 1; parameters from 0 to `times`.
Quad quad(int width, int height, float times = 1, int z = 100) {
  Quad made;
  made.points = {{4, 3, z}, {4 + width, 3, z}, {4, 3 + height, z}, {4 + width, 3 + height, z}};
  made.parameters = {{0, 0, 0}, {times, 0, 0}, {0, times, 0}, {times, times, 0}};
  return made;
}

void draw(Session& session, const Quad& q) {
  const auto or_null = [](const auto& list) { return list.empty() ? nullptr : list.data(); };
  KD_Standard_Draw_2DI_Textured_Polytriangle(
      &session.renderer(), session.rendition, static_cast<int>(q.points.size()), q.points.data(),
      or_null(q.colors), q.parameters.data(), 1, or_null(q.w), or_null(q.vectors));
}

KT_RGB32 pixel(const Session& session, int x, int y) {
  return KT_RGB32::from_word(session.color->at(x, y));
}

void set_texture(Session& session, const KT_Shared_Image& image,
                 std::uint32_t wrap = KT_Texture_Wrap::none, bool modulate = false,
                 bool standard_only = false) {
  session.material().basic_material =
      KD_Textured_Material(image, wrap, wrap, modulate, standard_only);
}

TEST(Textured, FacesShowTheTexelsOfTheirPlaces) {
  for (Variant variant : {Variant::rgb, Variant::rgb_alpha, Variant::rgb_z, Variant::rgb_alpha_z}) {
    Session session(configuration_of(variant));
    set_texture(session, place_image(30, 20));
    draw(session, quad(30, 20));
    for (int y = 0; y < size.y; ++y) {
      for (int x = 0; x < size.x; ++x) {
        const bool inside = x >= 4 && x < 34 && y >= 3 && y < 23;
        ASSERT_EQ(session.color->touched(x, y), inside) << x << ", " << y;
        if (!inside) continue;
        ASSERT_EQ(pixel(session, x, y).red, x - 4) << x << ", " << y;
        ASSERT_EQ(pixel(session, x, y).green, y - 3) << x << ", " << y;
        ASSERT_TRUE(!session.depth || session.depth->at(x, y) == 100);
      }
    }
  }
}

TEST(Textured, FacesAreOfMappedColorsToo) {
  const KT_RGB32 color = {60, 140, 220, 255};
  for (Variant variant : {Variant::mapped, Variant::mapped_z}) {
    Session session(configuration_of(variant));
    set_texture(session, plain_image(color));
    draw(session, quad(32, 32));
    const KT_Palette palette = KD_Cube_Palette();
    int red = 0;
    int blue = 0;
    for (int n = 0; n < 64; ++n) {
      red += palette->entries[session.color->at(8 + n % 8, 8 + n / 8)].color.red;
      blue += palette->entries[session.color->at(8 + n % 8, 8 + n / 8)].color.blue;
    }
    EXPECT_NEAR(red / 64, color.red, 4);
    EXPECT_NEAR(blue / 64, color.blue, 4);
  }
}

TEST(Textured, PerspectiveDividesByW) {
  const auto drawn = [](const std::vector<float>& w, std::uint32_t options) {
    Session session(configuration_of(Variant::rgb));
    set_texture(session, place_image(200, 100));
    session.misc().texture_options = options;
    Quad q = quad(40, 30);
    q.w = w;
    draw(session, q);
    return session.color->pixels();
  };
  const auto straight = drawn({}, 0);
  EXPECT_EQ(drawn({2, 2, 2, 2}, 1), straight);
  EXPECT_EQ(drawn({1, 3, 1, 3}, 0), straight) << "not asked for";
  EXPECT_EQ(drawn({1, 0, -1, NAN}, 1), straight) << "behind the eye";
  const auto deep = drawn({1, 4, 1, 4}, 1);
  for (int x = 0; x < 40; ++x) {
    const double part = x / 40.0;
    const double s = part / 4 / (1 - part + part / 4);
    for (int y : {3, 15, 32}) {
      const auto got = KT_RGB32::from_word(deep[static_cast<std::size_t>(y * size.x + x + 4)]);
      ASSERT_NEAR(got.red, std::floor(200 * s), 1) << x << ", " << y;
    }
  }
}

TEST(Textured, PlacesBeyondTheImageGoByTheWrapMode) {
  // Texel of an image of 6 at a place of its own size on, before its start and behind its end.
  const std::function<int(int)> texel_by_mode[] = {
      [](int place) { return place >= 0 && place < 6 ? place : -1; },
      [](int place) { return place < 0   ? 0
                             : place > 5 ? 5
                                         : place; },
      [](int place) { return (place + 60) % 6; },
      [](int place) {
        const int two = (place + 60) % 12;
        return two < 6 ? two : 11 - two;
      }};
  for (std::uint32_t mode : {0U, 1U, 2U, 3U}) {
    Session session(configuration_of(Variant::rgb_z));
    set_texture(session, place_image(6, 6), mode);
    Quad q = quad(30, 30);
    q.parameters = {{-2, -2, 0}, {3, -2, 0}, {-2, 3, 0}, {3, 3, 0}};
    draw(session, q);
    for (int y = 0; y < 30; ++y) {
      for (int x = 0; x < 30; ++x) {
        const int column = texel_by_mode[mode](x - 12);
        const int line = texel_by_mode[mode](y - 12);
        const bool expected = column >= 0 && line >= 0;
        ASSERT_EQ(session.color->touched(x + 4, y + 3), expected) << mode << " " << x << " " << y;
        ASSERT_EQ(session.depth->touched(x + 4, y + 3), expected);
        if (!expected) continue;
        ASSERT_EQ(pixel(session, x + 4, y + 3).red, column) << mode << " " << x << " " << y;
        ASSERT_EQ(pixel(session, x + 4, y + 3).green, line);
      }
    }
  }
}

TEST(Textured, SmoothTexelsAreMeans) {
  Session session(configuration_of(Variant::rgb));
  const KT_RGB32 texels[2] = {{0, 0, 0, 255}, {200, 100, 40, 255}};
  const KT_Shared_Image image(2, 1, KT_Image_Format::rgb32, 8, texels, false);
  set_texture(session, image, KT_Texture_Wrap::clamp, false, true);
  draw(session, quad(40, 8));
  for (int x = 0; x < 40; ++x) {
    const double part = std::clamp((x / 20.0) - 0.5, 0.0, 1.0);
    ASSERT_NEAR(pixel(session, x + 4, 5).blue, 200 * part, 1.01) << x;
    ASSERT_NEAR(pixel(session, x + 4, 5).green, 100 * part, 1.01) << x;
  }
}

TEST(Textured, TexelsTakeTheColorsAndTheLightOfPoints) {
  const KT_RGB32 texel = {100, 200, 40, 255};
  Session session(configuration_of(Variant::rgb));
  Quad q = quad(40, 30);
  q.colors = {{255, 255, 255, 255}, {0, 0, 0, 255}, {255, 255, 255, 255}, {0, 0, 0, 255}};
  set_texture(session, plain_image(texel));
  draw(session, q);
  EXPECT_EQ(pixel(session, 43, 20), texel) << "not modulated";

  set_texture(session, plain_image(texel), KT_Texture_Wrap::none, true);
  draw(session, q);
  EXPECT_EQ(pixel(session, 4, 20), texel);
  EXPECT_NEAR(pixel(session, 24, 20).green, 100, 2);
  EXPECT_NEAR(pixel(session, 24, 20).blue, 50, 2);

  // At half a right angle the light is dimmed by its cosine, and hardly anything is mirrored.
  q.colors.clear();
  q.vectors.assign(4, {0, 1, 1});
  draw(session, q);
  EXPECT_EQ(pixel(session, 24, 20), texel) << "no lighting";
  session.material().lighting = &session;
  draw(session, q);
  EXPECT_NEAR(pixel(session, 24, 20).green, 200 * std::sqrt(0.5), 1);
  EXPECT_NEAR(pixel(session, 24, 20).red, 40 * std::sqrt(0.5), 1);
  q.vectors.assign(4, {0, 0, 1});
  draw(session, q);
  EXPECT_EQ(pixel(session, 24, 20).red, 255) << "mirrored";
}

TEST(Textured, TransparentTexelsBlendOrAreCutOut) {
  const KT_RGB32 clear = {9, 9, 9, 0};
  Session blended(configuration_of(Variant::rgb_alpha_z));
  set_texture(blended, plain_image(clear));
  draw(blended, quad(20, 20));
  EXPECT_FALSE(blended.color->touched(10, 10));
  EXPECT_FALSE(blended.depth->touched(10, 10));
  set_texture(blended, plain_image({255, 255, 255, 128}));
  draw(blended, quad(20, 20));
  EXPECT_NEAR(pixel(blended, 10, 10).blue, 136, 2);

  for (bool alpha : {false, true}) {
    Session mapped(configuration_of(Variant::mapped_z));
    mapped.options().set_alpha_blending(alpha);
    set_texture(mapped, plain_image(clear));
    draw(mapped, quad(20, 20));
    EXPECT_NE(mapped.color->touched(10, 10), alpha);
  }
}

TEST(Textured, FacesHaveThePatternsOfPlainOnes) {
  for (int pattern : {0, 20, 64, 66, 75, 83}) {
    for (std::uint32_t options : {0U, 1U, 2U, 3U}) {
      Session textured(configuration_of(Variant::rgb_z));
      Session plain(configuration_of(Variant::rgb_z));
      for (Session* session : {&textured, &plain}) {
        session->face().face_pattern = pattern;
        session->misc().pattern_options = options;
        session->misc().pattern_origin = {3, 5};
      }
      set_texture(textured, plain_image(textured.rendition->material->color));
      const Quad q = quad(37, 33);
      draw(textured, q);
      plain.actions().call<KT_Action::Draw_2DI_Polytriangle>(plain.rendition, 4, q.points.data());
      EXPECT_TRUE(support::same_pixels(textured.color->pixels(), plain.color->pixels(), size.x))
          << pattern << " by " << options;
    }
  }
}

/// The pixels of plain triangles, their depths included, up to the rounding of steps.
TEST(Textured, TrianglesAreThoseOfTheRenderer) {
  const std::vector<KT_DCI_Point> strip = {
      {-20, 5, 100}, {20, 2, 9000}, {9, 37, 30000}, {60, 33, 100}, {40, 60, 65000}};
  Session textured(configuration_of(Variant::rgb_z));
  Session plain(configuration_of(Variant::rgb_z));
  for (Session* session : {&textured, &plain}) {
    session->display().hard_clip = {2, 41, 4, 36};
    session->face().face_depth_offset = 70;
  }
  set_texture(textured, plain_image(textured.rendition->material->color), 2);
  Quad q;
  q.points = strip;
  q.parameters.resize(strip.size());
  draw(textured, q);
  plain.actions().call<KT_Action::Draw_2DI_Polytriangle>(
      plain.rendition, static_cast<int>(strip.size()), strip.data());
  int different = 0;
  for (int y = 0; y < size.y; ++y) {
    for (int x = 0; x < size.x; ++x) {
      different += textured.color->touched(x, y) != plain.color->touched(x, y);
      if (textured.color->touched(x, y) && plain.color->touched(x, y)) {
        ASSERT_NEAR(textured.depth->at(x, y), plain.depth->at(x, y), 700) << x << ", " << y;
      }
      const bool inside = x >= 2 && x <= 41 && y >= 4 && y <= 36;
      ASSERT_TRUE(inside || !textured.color->touched(x, y));
    }
  }
  EXPECT_LE(different, 2);
}

TEST(Textured, OddFacesEnd) {
  for (Variant variant : support::all_variants) {
    Session session(configuration_of(variant));
    session.face().face_pattern = INT32_MAX;
    session.misc().texture_options = 0xFFFFFFFF;
    session.misc().advanced_options.bits = 0xFFFFFFDF;
    Quad q;
    q.points = {{INT32_MIN, INT32_MIN, 0}, {INT32_MAX, 0, 7}, {5, INT32_MAX, 9}, {5, 6, 7}};
    q.parameters = {{NAN, INFINITY, 0}, {-1e30F, 1e30F, 0}, {0, 3, 0}, {1e9F, -7, 0}};
    q.w = {1e-30F, 1e30F, 1, 2};
    for (std::uint32_t wrap : {0U, 1U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
      for (bool smooth : {false, true}) {
        set_texture(session, place_image(3, 7), wrap, true, smooth);
        draw(session, q);
      }
    }
    set_texture(session, {});
    draw(session, q);
  }
}

TEST(Textured, FacesWithoutATextureHaveTheirColors) {
  Session session(configuration_of(Variant::rgb));
  Quad q = quad(20, 20);
  draw(session, q);
  EXPECT_EQ(session.color->at(10, 10), session.own_color());
  q.colors.assign(4, {1, 2, 3, 255});
  draw(session, q);
  EXPECT_EQ(pixel(session, 10, 10), q.colors[0]);
}

}  // namespace
