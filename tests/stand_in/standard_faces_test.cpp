// Hatched and textured faces of the general routines, on the module's own actions.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "tests/stand_in/general_session.h"

namespace {

using namespace general;

TEST(Hatches, LeaveHolesInEveryKindOfFace) {
  const Strip strip = strip_of(General::at({{4, 2, 5}, {40, 5, 5}, {10, 36, 5}, {45, 38, 5}}));
  std::set<Picture> looks;
  for (Variant variant : all_variants) {
    for (Kind kind : all_kinds) {
      for (Layer layer : all_layers) {
        General session(variant);
        draw(session, layer, kind, strip);
        const Picture solid = session.picture();
        const bool every_hatch = kind == Kind::flat && layer == Layer::int_any;
        for (int pattern = 75; pattern < (every_hatch ? 91 : 77); ++pattern) {
          session.clear();
          session.face().face_pattern = pattern;
          const std::uint32_t id = session.rendition->face_attributes->id;
          draw(session, layer, kind, strip);
          EXPECT_TRUE(is_part(session.picture(), solid)) << pattern;
          looks.insert(session.picture());
          EXPECT_EQ(session.rendition->face_attributes->id, id) << "the caller's is left alone";
        }
      }
    }
  }
  EXPECT_EQ(looks.size(), 16U);
}

TEST(Hatches, AreTheSameInPolygons) {
  const Points faces[] = {{{4, 2, 5}, {40, 5, 5}, {45, 38, 5}, {10, 36, 5}},
                          {{4, 2, 5}, {40, 2, 5}, {20, 20, 5}, {40, 38, 5}}};
  const KT_RGB32 color = {1, 2, 3, 255};
  for (const Points& points : faces) {
    for (const KT_RGB32* given : {static_cast<const KT_RGB32*>(nullptr), &color}) {
      Picture hatched;
      for (Layer layer : all_layers) {
        General session;
        const auto picture = [&](int pattern) {
          session.clear();
          session.face().face_pattern = pattern;
          call_by_layer<Draw_2D_Polygon, Draw_DC_Polygon, Draw_2DI_Polygon, Draw_DCI_Polygon>(
              session, layer, General::at(points), given);
          return session.picture();
        };
        if (layer == Layer::float_any) hatched = picture(200);
        EXPECT_EQ(picture(200), hatched);
        EXPECT_TRUE(is_part(hatched, picture(64)));
      }
    }
  }
}

KT_Shared_Image image_of(int width, int height, const std::vector<KT_RGB32>& texels) {
  return {width, height, KT_Image_Format::rgb32, width * 4, texels.data(), false};
}
KT_Shared_Image plain_image(KT_RGB32 color) {
  return image_of(1, 1, {color});
}
/// An image whose texels tell their place: red the column, green the row from the bottom.
KT_Shared_Image place_image(int width, int height) {
  std::vector<KT_RGB32> texels;
  for (int i = 0; i < width * height; ++i) {
    texels.push_back({0, static_cast<std::uint8_t>(height - 1 - i / width),
                      static_cast<std::uint8_t>(i % width), 255});
  }
  return image_of(width, height, texels);
}

/// A textured rectangle as a strip, from (4, 3) on; its parameters run from `first` to `last`.
struct Rectangle {
  Points points;
  std::vector<KT_Parameter> parameters;
  std::vector<KT_RGB32> colors;
  std::vector<float> w;
  std::vector<KT_Vector> vectors;

  Rectangle(int width, int height, float first = 0, float last = 1) {
    for (int n = 0; n < 4; ++n) {
      const bool right = n % 2 != 0, top = n > 1;
      points.push_back({right ? 4 + width : 4, top ? 3 + height : 3, 100});
      parameters.push_back({right ? last : first, top ? last : first, 0});
    }
  }
};

struct Textured : General {
  using General::General;

  void set_texture(const KT_Shared_Image& image, std::uint32_t wrap = KT_Texture_Wrap::none,
                   bool modulate = false, bool standard_only = false) {
    material().basic_material = KD_Textured_Material(image, wrap, wrap, modulate, standard_only);
  }
  void draw_textured(const Rectangle& r) const {
    const auto or_null = [](const auto& list) { return list.empty() ? nullptr : list.data(); };
    const Points places = at(r.points);
    KD_Standard_Draw_2DI_Textured_Polytriangle(
        &renderer(), rendition, static_cast<int>(places.size()), places.data(), or_null(r.colors),
        r.parameters.data(), 1, or_null(r.w), or_null(r.vectors));
  }
};

// The texel of an image of 6 at a place: on it, before its start and after its end.
int texel_by_mode(std::uint32_t mode, int place) {
  const int in_two = (place + 60) % 12;
  if (mode == KT_Texture_Wrap::none) return place >= 0 && place < 6 ? place : -1;
  if (mode == KT_Texture_Wrap::clamp) return std::clamp(place, 0, 5);
  if (mode == KT_Texture_Wrap::tile) return in_two % 6;
  return in_two < 6 ? in_two : 11 - in_two;
}

TEST(Textured_Faces, ShowTheTexelsOfTheirPlacesByTheWrapMode) {
  for (Variant variant : {Variant::rgb, Variant::rgb_alpha, Variant::rgb_z, Variant::rgb_alpha_z}) {
    for (std::uint32_t mode : {0U, 1U, 2U, 3U}) {
      Textured session(variant);
      session.set_texture(place_image(6, 6), mode);
      session.draw_textured(Rectangle(30, 30, -2, 3));
      EXPECT_TRUE(session.stays_in({4, 33, 3, 32}));
      for (int i = 0; i < 900; ++i) {
        const int x = 4 + i % 30, y = 3 + i / 30;
        const int column = texel_by_mode(mode, x - 16), line = texel_by_mode(mode, y - 15);
        const bool exists = column >= 0 && line >= 0;
        ASSERT_EQ(session.color->touched(x, y), exists) << mode << " " << x << " " << y;
        ASSERT_TRUE(!session.depth || session.depth->at(x, y) == (exists ? 100U : 0xFFFFU));
        if (!exists) continue;
        const KT_RGB32 got = session.pixel(x, y);
        ASSERT_TRUE(got.red == column && got.green == line) << mode << " " << x << " " << y;
      }
    }
  }
}

TEST(Textured_Faces, InPerspectiveAreDividedByW) {
  const auto made = [](const std::vector<float>& w, std::uint32_t options) {
    Textured session;
    session.set_texture(place_image(200, 100));
    session.misc().texture_options = options;
    Rectangle r(40, 30);
    r.w = w;
    session.draw_textured(r);
    return session.color->pixels();
  };
  const Pixels straight = made({}, 0);
  EXPECT_EQ(made({2, 2, 2, 2}, 1), straight);
  EXPECT_EQ(made({1, 3, 1, 3}, 0), straight) << "not asked for";
  EXPECT_EQ(made({1, 0, 1, NAN}, 1), straight) << "at the eye";
  EXPECT_EQ(made({1, -1, 1, 2}, 1), straight) << "behind the eye";
  const Pixels deep = made({1, 4, 1, 4}, 1);
  for (int x = 0; x < 40; ++x) {
    const double part = x / 40.0;
    const double s = part / 4 / (1 - part + part / 4);
    const auto at = static_cast<std::size_t>(15 * full_size.x + x + 4);
    ASSERT_NEAR(KT_RGB32::from_word(deep[at]).red, std::floor(200 * s), 1) << x;
  }
}

TEST(Textured_Faces, WithSmoothTexelsHaveTheirMeans) {
  Textured session;
  session.set_texture(image_of(2, 1, {{0, 0, 0, 255}, {200, 100, 40, 255}}), KT_Texture_Wrap::clamp,
                      false, true);
  session.draw_textured(Rectangle(40, 8));
  for (int x = 0; x < 40; ++x) {
    const double part = std::clamp((x / 20.0) - 0.5, 0.0, 1.0);
    ASSERT_NEAR(session.pixel(x + 4, 5).blue, 200 * part, 1.01) << x;
  }
}

TEST(Textured_Faces, TakeTheColorsAndTheLightOfPoints) {
  const KT_RGB32 texel = {100, 200, 40, 255};
  Textured session;
  Rectangle r(40, 30);
  r.colors = {{255, 255, 255, 255}, {0, 0, 0, 255}, {255, 255, 255, 255}, {0, 0, 0, 255}};
  session.set_texture(plain_image(texel));
  session.draw_textured(r);
  EXPECT_EQ(session.pixel(43, 20), texel) << "not modulated";

  session.set_texture(plain_image(texel), KT_Texture_Wrap::none, true);
  session.draw_textured(r);
  EXPECT_EQ(session.pixel(4, 20), texel);
  EXPECT_NEAR(session.pixel(24, 20).green, 100, 2);

  // At half a right angle the light is dimmed by its cosine, and hardly anything is mirrored.
  r.colors.clear();
  r.vectors.assign(4, {0, 1, 1});
  session.draw_textured(r);
  EXPECT_EQ(session.pixel(24, 20), texel) << "no lighting";
  session.material().lighting = &session;
  session.draw_textured(r);
  EXPECT_NEAR(session.pixel(24, 20).green, 200 * std::sqrt(0.5), 1);
  r.vectors.assign(4, {0, 0, 1});
  session.draw_textured(r);
  EXPECT_EQ(session.pixel(24, 20).red, 255) << "mirrored";

  Textured bare;
  r.colors.assign(4, {1, 2, 3, 255});
  bare.draw_textured(r);
  EXPECT_EQ(bare.pixel(10, 10), r.colors[0]) << "without a texture";
}

TEST(Textured_Faces, BlendOrCutOutTransparentTexels) {
  const std::tuple<Variant, bool, bool> cases[] = {{Variant::rgb_alpha_z, true, false},
                                                   {Variant::mapped_z, true, false},
                                                   {Variant::mapped_z, false, true}};
  for (const auto& [variant, alpha, is_drawn] : cases) {
    Textured session(variant);
    session.options().set_alpha_blending(alpha);
    session.set_texture(plain_image({9, 9, 9, 0}));
    session.draw_textured(Rectangle(20, 20));
    EXPECT_EQ(session.color->touched(10, 10), is_drawn) << name_of(variant);
    EXPECT_EQ(session.depth->touched(10, 10), is_drawn) << name_of(variant);
  }
  Textured blended(Variant::rgb_alpha_z);
  blended.set_texture(plain_image({255, 255, 255, 128}));
  blended.draw_textured(Rectangle(20, 20));
  EXPECT_NEAR(blended.pixel(10, 10).blue, 136, 2);
}

// With a texture of the plain face's colour the pixels are those of the plain face.
TEST(Textured_Faces, HaveThePatternsAndTheClipOfPlainOnes) {
  for (int pattern : {0, 20, 64, 66, 75, 83}) {
    for (std::uint32_t options : {0U, 1U, 2U, 3U}) {
      Textured textured(Variant::rgb_z), plain(Variant::rgb_z);
      for (Session* session : {static_cast<Session*>(&textured), static_cast<Session*>(&plain)}) {
        session->face().face_pattern = pattern;
        session->face().face_depth_offset = 70;
        session->misc().pattern_options = options;
        session->misc().pattern_origin = {3, 5};
        session->display().hard_clip = General::at(KT_Int_Rectangle{6, 41, 4, 30});
      }
      textured.set_texture(plain_image(textured.rendition->material->color));
      const Rectangle r(37, 33);
      textured.draw_textured(r);
      plain.draw<Draw_2DI_Polytriangle>(r.points);
      EXPECT_TRUE(same_pixels(textured.color->pixels(), plain.color->pixels(), full_size.x))
          << pattern << " by " << options;
      EXPECT_TRUE(same_pixels(textured.depth->pixels(), plain.depth->pixels(), full_size.x));
    }
  }
}

TEST(Textured_Faces, ComeToAnEndHoweverOdd) {
  for (Variant variant : all_variants) {
    Textured session(variant);
    session.face().face_pattern = INT32_MAX;
    session.misc().texture_options = 0xFFFFFFFF;
    session.misc().advanced_options.bits = 0xFFFFFFDF;
    Rectangle r(1, 1);
    r.points = {{INT32_MIN + 7, INT32_MIN, 0}, {INT32_MAX, 0, 7}, {5, INT32_MAX - 5, 9}, {5, 6, 7}};
    r.parameters = {{NAN, INFINITY, 0}, {-1e30F, 1e30F, 0}, {0, 3, 0}, {1e9F, -7, 0}};
    r.w = {1e-30F, 1e30F, 1, 2};
    for (std::uint32_t wrap : {0U, 1U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
      for (bool smooth : {false, true}) {
        session.set_texture(place_image(3, 7), wrap, true, smooth);
        session.draw_textured(r);
      }
    }
  }
}

}  // namespace
