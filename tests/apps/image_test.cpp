// Images in memory: scaling, and the places of textures.
#include <gtest/gtest.h>

#include <vector>

#include "apps/load/image_scale.h"
#include "apps/scene/texture_places.h"

namespace {

using namespace kv;

Image striped(std::uint32_t width, std::uint32_t height) {
  Image image(width, height);
  for (std::uint32_t i = 0; i < width * height; ++i)
    image.texels[i] = {static_cast<std::uint8_t>(i * 37), static_cast<std::uint8_t>(i * 11), 7,
                       255};
  return image;
}

TEST(Image_Scale, parts_of_a_covered_frame_fit_the_whole) {
  const Image image = striped(23, 57);
  const Size frame{90, 40};
  const Image whole = covering(image, frame, {0, 89, 0, 39});
  for (const KT_Int_Rectangle& part : {KT_Int_Rectangle{0, 10, 0, 10}, {50, 89, 7, 39}}) {
    const Image piece = covering(image, frame, part);
    for (std::uint32_t y = 0; y < piece.height; ++y)
      for (std::uint32_t x = 0; x < piece.width; ++x)
        ASSERT_EQ(piece.at(x, y), whole.at(static_cast<std::uint32_t>(part.left) + x,
                                           static_cast<std::uint32_t>(39 - part.top) + y));
  }
}

// Else seams of that colour would show around everything that a texture cuts out.
TEST(Image_Scale, what_cannot_be_seen_lends_no_colour) {
  Image image(2, 1);
  image.texels = {{255, 0, 255, 0}, {10, 20, 30, 255}};
  const Image scaled = resized(image, 16, 16);
  for (const Texel& texel : scaled.texels)
    EXPECT_TRUE(texel.alpha == 0 || texel == (Texel{10, 20, 30, texel.alpha}));
}

TEST(Texture_Places, move_by_whole_repeats_into_reach) {
  const Image image(1024, 1024);
  Material material;
  std::vector<KT_Parameter> places = {{-3.25f, 700.5f, 0}, {-2.5f, 701, 0}, {-1, 700.75f, 0}};
  EXPECT_TRUE(settle_places(places, material, image));
  EXPECT_EQ(places[0].s, 0.75f);
  EXPECT_EQ(places[2].s, 3 - 0.5f / 1024) << "the last texel before the border";
  EXPECT_EQ(places[0].t, 0.5f);
  EXPECT_EQ(places[1].t, 1 - 0.5f / 1024);
  places = {{1, 2, 0}, {1.5f, 2, 0}};
  EXPECT_TRUE(settle_places(places, material, image));
  EXPECT_EQ(places[0].s, 0);
  EXPECT_EQ(places[1].t, 0);
  places = {{0, 0, 0}, {1, 33, 0}};
  EXPECT_FALSE(settle_places(places, material, image));
  material.wrap_s = Wrap::mirror;
  material.wrap_t = Wrap::clamp;
  places = {{3.5f, -2, 0}, {4, 2, 0}};
  EXPECT_TRUE(settle_places(places, material, image));
  EXPECT_EQ(places[0].s, 1.5f);
  EXPECT_EQ(places[0].t, -2);
}

}  // namespace
