// Pixels of textured spans: coordinates, short forms, transparency, scales and patterns.
#include <gtest/gtest.h>

#include "tests/textures/stage.h"

namespace {

using namespace stage;

constexpr std::uint32_t paper = 0x4D302010;  // of an untouched direct-colour pixel

// One row from (0, 0) with a texel a pixel, starting at texel number `u`.
Call row_of_texels(int pixels, int size, int u, int v) {
  const float texel = 1.0f / static_cast<float>(size);
  const float s = static_cast<float>(u) * texel, t = static_cast<float>(v) * texel;
  const float end = static_cast<float>(u + pixels) * texel;
  return {
      {{{0, 0, 5}, s, t}, {{pixels, 0, 5}, end, t}, {{0, 1, 5}, s, t}, {{pixels, 1, 5}, end, t}}};
}

TEST(Span, CoordinatesTileOrAreCutOff) {
  const std::uint32_t a = 0xFF0000AA, b = 0xFF00BB00, c = 0xFFCC0000, d = 0xFFDD00DD;
  for (const Set set : {Set::rgb_z, Set::rgb_alpha_z}) {
    for (const bool tiles : {true, false}) {
      Stage stage(set, {12, 1});
      stage.set_texture(4, 1, {a, b, c, d});
      stage.texture->wrap_s = tiles ? 2 : 0;
      stage.draw(Layer::int_inside, row_of_texels(12, 4, -3, 0));
      EXPECT_TRUE(shows(*stage.color, {tiles ? "bcdabcdabcda" : "...abcd....."},
                        {{'a', a}, {'b', b}, {'c', c}, {'d', d}}));
      EXPECT_EQ(stage.depth->touched(0, 0), tiles);
    }
  }
}

TEST(Span, MasksReadSizesThatAreNoPowersOfTwoAsTheyAre) {
  Stage stage(Set::rgb_z, {12, 1});
  const std::uint32_t a = 0xFF0000AA, b = 0xFF00BB00, c = 0xFFCC0000, d = 0xFFDD00DD,
                      e = 0xFFEEEE00, f = 0xFF0F0F0F;
  stage.set_texture(6, 1, {a, b, c, d, e, f});  // a column mask of 5
  stage.draw(Layer::int_inside, row_of_texels(12, 6, 0, 0));
  EXPECT_TRUE(shows(*stage.color, {"ababefefabab"},
                    {{'a', a}, {'b', b}, {'c', c}, {'d', d}, {'e', e}, {'f', f}}));
}

TEST(Span, LinesRunUpwards) {
  Stage stage(Set::rgb_z, {5, 4});
  stage.set_texture(1, 4, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
  stage.draw(Layer::int_inside, {{{{0, 0, 5}}, {{5, 0, 5}}, {{0, 4, 5}, 0, 1}, {{5, 4, 5}, 0, 1}}});
  EXPECT_TRUE(shows(*stage.color, {"44444", "33333", "22222", "11111"},
                    {{'1', 0xFF000001}, {'2', 0xFF000002}, {'3', 0xFF000003}, {'4', 0xFF000004}}));
}

// A triangle on a vertical left edge, n pixels wide in row n below the middle and in row 8 - n
// above it. v and depth change along the rows alone: left 0 and 100, right n and 100 + 50 n.
const Call wedge = {{{{0, 0, 100}}, {{4, 4, 300}, 0, 0.5f}, {{0, 8, 100}}}};

void set_lines(Stage& stage, std::uint32_t alpha) {
  std::vector<std::uint32_t> texels;
  for (std::uint32_t line = 0; line < 8; ++line) texels.push_back(alpha << 24 | (line + 1) * 0x20);
  stage.set_texture(1, 8, texels);
}

struct Short_Case {
  Set set;
  bool modulated;
  std::uint32_t alpha;
  // Of row 2 (upper half) and row 6 (lower half).
  int upper_line, upper_depth_1, upper_depth_0;
  int lower_line, lower_depth_1, lower_depth_0;
  int tip_depth;  // of the one pixel of row 7
};

const Short_Case short_cases[] = {
    {Set::rgb_z, false, 255, 0, 100, 100, 1, 150, 100, 100},
    {Set::rgb_z, true, 255, 1, 150, 100, 1, 150, 100, 100},
    {Set::rgb_alpha_z, false, 255, 0, 150, 100, 1, 150, 100, 100},
    {Set::rgb_alpha_z, true, 255, 1, 100, 100, 1, 100, 100, 100},
    {Set::rgb_alpha_z, true, 128, 1, 150, 150, 1, 150, 150, 150},
    // The general form: both pixels stepped from the left edge.
    {Set::mapped_z, false, 255, 0, 150, 100, 0, 150, 100, 100},
};

TEST(Span, ShortSpansDifferByMemberAndHalf) {
  for (const Short_Case& c : short_cases) {
    SCOPED_TRACE(name_of(c.set) + (c.modulated ? " modulated " : " plain ") +
                 std::to_string(c.alpha));
    Stage stage(c.set);
    set_lines(stage, c.alpha);
    stage.texture->modulate = c.modulated;
    stage.draw(Layer::int_inside, wedge);
    const auto depth = [&](int x, int y) { return static_cast<int>(stage.depth->at(x, y)); };
    EXPECT_EQ(depth(1, 2), c.upper_depth_1);
    EXPECT_EQ(depth(0, 2), c.upper_depth_0);
    EXPECT_EQ(depth(1, 6), c.lower_depth_1);
    EXPECT_EQ(depth(0, 6), c.lower_depth_0);
    EXPECT_EQ(depth(0, 7), c.tip_depth);
    EXPECT_EQ(depth(0, 1), 100);  // nothing wider came before
    if (c.alpha != 255 || c.set == Set::mapped_z) continue;
    const auto line = [&](int y) {
      return static_cast<int>((stage.color->at(1, y) & 255) + 1) / 0x20 - 1;
    };
    EXPECT_EQ(line(2), c.upper_line);
    EXPECT_EQ(line(6), c.lower_line);
  }
}

const Call square = {{{{1, 1, 9}}, {{9, 1, 9}}, {{1, 9, 9}}, {{9, 9, 9}}}};

TEST(Span, TransparentTexels) {
  for (const Set set : all_sets) {
    for (const bool clipped : {false, true}) {
      for (const std::uint8_t modulate : {std::uint8_t{0}, std::uint8_t{1}}) {
        SCOPED_TRACE(name_of(set) + (clipped ? " clipped" : " scan"));
        Stage stage(set);
        stage.texture->modulate = modulate;
        if (clipped) stage.display().hard_clip = {0, 5, 0, 11};
        stage.set_texture(1, 1, {0x00FFFFFF});
        stage.draw(Layer::int_any, square);
        const bool ordinary = set == Set::mapped_z || set == Set::rgb_z;
        EXPECT_EQ(stage.color->touched(3, 3), ordinary);
        EXPECT_EQ(stage.depth->touched(3, 3), ordinary || (set == Set::rgb_alpha_z && clipped));
        stage.clear();
        stage.set_texture(1, 1, {0x02FFFFFF});
        stage.draw(Layer::int_any, square);
        EXPECT_TRUE(stage.color->touched(3, 3));
        EXPECT_EQ(stage.depth->at(3, 3), 9u);
      }
    }
  }
}

TEST(Span, ScalesOfWhite) {
  for (const Set set : {Set::rgb_z, Set::rgb_alpha_z}) {
    for (const bool clipped : {false, true}) {
      Stage stage(set);
      stage.texture->modulate = 1;
      if (clipped) stage.display().hard_clip = {0, 5, 0, 11};
      stage.draw(Layer::int_any, square);
      // 254 over the paper by 254: a trace of it is left.
      const auto trace = [](std::uint32_t old) { return (254 * 254 + old) / 255; };
      const std::uint32_t blended =
          0xFF000000u | trace(0x30) << 16 | trace(0x20) << 8 | trace(0x10);
      const std::uint32_t expected = set == Set::rgb_z ? 0xFFFEFEFEu
                                     : clipped         ? blended
                                                       : 0xFFFFFFFFu;
      EXPECT_EQ(stage.color->at(3, 3), expected) << name_of(set) << clipped;
    }
  }
}

TEST(Span, BlendsByTheTexelsAlpha) {
  Stage stage(Set::rgb_alpha_z);
  stage.set_texture(1, 1, {0x800000FF});
  stage.draw(Layer::int_inside, square);
  const std::uint32_t blue = (0x10 * 127 + 255 * 128) / 255, green = 0x20 * 127 / 255,
                      red = 0x30 * 127 / 255;
  EXPECT_EQ(stage.color->at(3, 3), 0xFF000000u | red << 16 | green << 8 | blue);
  EXPECT_EQ(stage.color->untouched(), paper);
}

TEST(Span, DepthSettingsMaskAndMergeHaveNoPart) {
  for (const Set set : all_sets) {
    Stage stage(set);
    stage.set_depth_test(5);
    stage.set_depth_write(0);
    stage.misc().drawing_mode = KT_Misc_Attributes::merge_mode;
    stage.clear(9);
    stage.draw(Layer::int_inside, square);
    EXPECT_TRUE(stage.color->touched(3, 3)) << name_of(set);
    const std::uint32_t drawn = stage.color->at(3, 3);
    stage.misc().drawing_mode = 0;
    stage.clear(8);
    stage.draw(Layer::int_inside, square);
    EXPECT_FALSE(stage.color->touched(3, 3));
    stage.clear(60000);
    stage.draw(Layer::int_inside, square);
    EXPECT_EQ(stage.color->at(3, 3), drawn);
    EXPECT_EQ(stage.depth->at(3, 3), 9u);
  }
}

// A pattern of single columns: the bit of a span's first pixel decides on all of it.
TEST(Span, PatternsTakeWholeSpans) {
  const std::uint8_t bits[] = {0b00000010};
  const KT_User_Pattern pattern{bits, 8, 1, 1};
  for (const Set set : all_sets) {
    for (const std::uint32_t options : {0u, 1u, 3u}) {
      SCOPED_TRACE(name_of(set) + " options " + std::to_string(options));
      Stage stage(set);
      stage.face().face_pattern = 74;
      stage.face().user_pattern = &pattern;
      stage.misc().pattern_options = options;
      stage.texture->wrap_s = 0;  // the contrast colour asks no texture
      stage.material().contrast_color = {1, 2, 3, 0};
      stage.material().contrast_index = 99;
      Call call{{{{1, 1, 9}, 7}, {{9, 1, 9}, 7}, {{1, 3, 9}, 7}, {{9, 3, 9}, 7}}};
      stage.draw(Layer::int_inside, call);
      // A set bit at the left edge, that is a hole, contrast, or, inverted, the texture's turn;
      // the texture is cut off, so that only contrast pixels show.
      const bool contrast = options == 1;
      for (const int x : {1, 2, 8}) {
        EXPECT_EQ(stage.depth->touched(x, 1), contrast);
        EXPECT_EQ(stage.color->touched(x, 1), contrast && set != Set::rgb_alpha_z);
      }
      if (!contrast || set == Set::rgb_alpha_z) continue;
      EXPECT_EQ(stage.color->at(5, 1), set == Set::rgb_z ? 0x00030201u : 99u);
    }
  }
}

}  // namespace
