// Lit textures: what the material is asked, and how its answers come out.
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/textures/stage.h"

namespace {

using namespace stage;

int lamp = 0;

Call lit(std::vector<Vertex> strip) {
  Call call{std::move(strip)};
  for (std::size_t i = 0; i < call.strip.size(); ++i) {
    call.vectors.push_back({static_cast<float>(i), 0, 0});
  }
  return call;
}

const Call square = lit({{{1, 1, 9}}, {{9, 1, 9}}, {{1, 9, 9}}, {{9, 9, 9}}});

class Light : public testing::Test {
 protected:
  Light() : stage(Set::mapped_z) {
    stage.material().lighting = &lamp;
    Material::default_specular = 0.5f;
  }
  ~Light() override { Material::default_specular = 0; }

  std::uint32_t drawn_with(float diffuse, float specular) {
    Material::light = [=](const Light_Asked& asked) {
      return asked.color.red != 0 ? diffuse : specular;
    };
    stage.clear();
    stage.draw(Layer::int_inside, square);
    return stage.color->at(5, 5);
  }

  Stage stage;
};

TEST_F(Light, IsAskedInTwoPartsByRowOrder) {
  const int before = Material::living;
  // The first triangle has no height.
  stage.draw(Layer::float_inside,
             lit({{{1, 1, 9}}, {{5, 1, 9}}, {{9, 1, 9}}, {{2, 9, 9}}, {{9, 6, 9}}}));
  ASSERT_EQ(Material::asked.size(), 12u);
  const float order[] = {1, 2, 3, 1, 2, 3, 2, 4, 3, 2, 4, 3};
  for (std::size_t i = 0; i < 12; ++i) {
    const Light_Asked& asked = Material::asked[i];
    EXPECT_EQ(asked.vector.x, order[i]) << i;
    const bool diffuse = i % 6 < 3;
    EXPECT_EQ(asked.color.word(), diffuse ? 0xFFFFFFFFu : 0xFF000000u);
    EXPECT_EQ(asked.specular_color, diffuse ? 0.0f : 0.5f);
  }
  EXPECT_EQ(Material::living, before);
  EXPECT_EQ(stage.rendition->reference_count, 1u);

  Material::asked.clear();
  stage.draw(Layer::int_inside, lit({{{1, 1, 9}}, {{5, 1, 9}}, {{9, 1, 9}}}));
  EXPECT_TRUE(Material::asked.empty());
}

TEST_F(Light, IsHeldWithinTheCube) {
  const KT_Color_Cube& cube = stage.renderer().color_cube;
  const auto corner = [&](int step) {
    return static_cast<std::uint32_t>(cube.base_index + step * cube.red_stride +
                                      step * cube.green_stride + step);
  };
  const int top = cube.red_scale;
  EXPECT_EQ(drawn_with(-3, 0), corner(0));
  EXPECT_EQ(drawn_with(10, 0), corner(top));
  EXPECT_EQ(drawn_with(0, -1000), corner(0));
  // Full specular light adds about a 65536th part of the scale to a step.
  EXPECT_EQ(drawn_with(0, 1), drawn_with(0, 0));
}

TEST_F(Light, FullDiffuseLightIsTheModulatedWhite) {
  stage.set_texture(1, 1, {0xFF6080C0});
  stage.texture->modulate = 1;
  const auto lit_picture = [&] {
    drawn_with(1, 0);
    return stage.color->pixels();
  }();
  stage.clear();
  Call plain = square;
  plain.vectors.clear();
  stage.draw(Layer::int_inside, plain);
  EXPECT_TRUE(same_pixels(stage.color->pixels(), lit_picture, stage.color->width));
}

TEST_F(Light, SharesOneMaterialWithoutSpecularColour) {
  Material::default_specular = 0;
  const int before = Material::living;
  int most = 0;
  Material::light = [&](const Light_Asked&) {
    most = std::max(most, Material::living);
    return 1.0f;
  };
  stage.draw(Layer::int_inside, square);
  EXPECT_EQ(most, before + 1);
  EXPECT_EQ(Material::living, before);
}

TEST_F(Light, AnExceptionGivesEverythingBack) {
  const int before = Material::living;
  int calls = 0;
  Material::light = [&](const Light_Asked&) -> float {
    if (++calls == 9) throw std::runtime_error("out of light");
    return 1;
  };
  EXPECT_THROW(stage.draw(Layer::float_inside, square), std::runtime_error);
  EXPECT_EQ(Material::living, before);
  EXPECT_EQ(stage.rendition->reference_count, 1u);
  EXPECT_EQ(stage.texture->reference_count, 2u);
  EXPECT_EQ(stage.texture->held->reference_count, 1u);
}

}  // namespace
