// Textured strips: what they allocate and hold, and the materials that lit ones make. The test
// program's own default material stands in front of the framework's.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "tests/support/session.h"

namespace {

using namespace support;

class Texture : public KT_Texture_Source_Data {
 public:
  KT_Shared_Image held{2, 2, KT_Image_Format::rgb32, 8, nullptr, false};

  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override { return result = held; }
};

/// A material with a texture and, as the module makes it, a light.
class Material : public KT_Material_Object {
 public:
  static inline int living = 0;
  static inline float default_specular = 0;
  static inline std::function<float()> light;

  KT_Texture_Source source;

  Material() {
    ++living;
    std::fill_n(specular_color, 3, default_specular);
  }
  Material(const Material& other) : KT_Material_Object(other), source(other.source) {
    ++living;
    std::copy_n(other.specular_color, 3, specular_color);
  }
  ~Material() override { --living; }
  KT_Counted* clone() const override { return new Material(*this); }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    return result = source;
  }
  void shade(float result[3], const KT_Rendition&, const KT_Vector&, int, int, int, int,
             int) override {
    std::fill_n(result, 3, light());
  }
};

}  // namespace

KT_Basic_Material::KT_Basic_Material() : KT_Handle(new Material) {}

namespace {

/// A session with a textured material. What is made for a call must be gone after it.
struct Stage : Session {
  KT_Handle<Texture> texture{new Texture};
  KT_Handle<Material> textured{new Material};

  explicit Stage(Variant variant) : Session({.variant = variant, .size = {140, 12}}) {
    texture->wrap_s = texture->wrap_t = 2;
    for (int i = 0; i < 4; ++i) texture->held->row<std::uint32_t>(i / 2)[i % 2] = 0xFF302010;
    textured->source.reset(texture.get());
    material().basic_material.reset(textured.get());
  }

  /// Draws a zigzag of `count` points; returns what the call allocated.
  long draw(Layer layer, int count, const KT_Vector* vectors = nullptr) {
    std::vector<KT_DCI_Point> points;
    for (int i = 0; i < count; ++i) points.push_back({2 * i, i % 2 == 0 ? 1 : 9, 9});
    const std::vector<KT_Parameter> parameters(points.size(), {0.3f, 0.7f, 0});
    const std::vector<KT_RGB32> colors(points.size(), {9, 8, 7, 100});
    using enum KT_Action;
    return call_by_layer<Draw_2D_Textured_Polytriangle, Draw_DC_Textured_Polytriangle,
                         Draw_2DI_Textured_Polytriangle, Draw_DCI_Textured_Polytriangle>(
        *this, layer, points, colors.data(), parameters.data(), 1, nullptr, vectors);
  }

  void expect_all_given_back() const {
    EXPECT_EQ(rendition->reference_count, 1u);
    EXPECT_EQ(textured->reference_count, 2u);  // the stage's and the rendition's
    EXPECT_EQ(texture->reference_count, 2u);   // the stage's and the material's
    EXPECT_EQ(texture->held->reference_count, 1u);
  }
};

TEST(Textured, AllocateFromTheSixtyFifthPointOnAndHoldNothing) {
  for (const Variant variant : {Variant::mapped_z, Variant::rgb_z, Variant::rgb_alpha_z}) {
    Stage stage(variant);
    for (const bool modulate : {false, true}) {
      stage.texture->modulate = modulate;
      for (const Layer layer : all_layers) {
        const bool cut = clips(layer) && modulate;
        stage.display().hard_clip = {cut ? 2 : 0, 139, 0, cut ? 6 : 11};
        EXPECT_EQ(stage.draw(layer, 64), 0) << name_of(variant);
        EXPECT_EQ(stage.draw(layer, 65), clips(layer) + takes_floats(layer)) << name_of(variant);
      }
    }
    EXPECT_TRUE(stage.color->touched(20, 4));
    stage.expect_all_given_back();
  }
}

class Lit_Texture : public testing::Test {
 protected:
  Lit_Texture() { stage.material().lighting = this; }
  ~Lit_Texture() override {
    Material::light = nullptr;
    Material::default_specular = 0;
  }

  Stage stage{Variant::mapped_z};
  const std::vector<KT_Vector> vectors{8, KT_Vector{0, 0, 1}};
};

// One for the diffuse and one for the specular part, or one for both where there is no specular
// colour to take away.
TEST_F(Lit_Texture, MakesAsFewMaterialsAsItNeeds) {
  for (const float specular : {0.0f, 0.5f}) {
    Material::default_specular = specular;
    const int before = Material::living;
    int most = 0, asked = 0;
    Material::light = [&] {
      most = std::max(most, Material::living);
      ++asked;
      return 1.0f;
    };
    stage.draw(Layer::int_inside, 8, vectors.data());
    EXPECT_EQ(asked, 6 * 6);
    EXPECT_EQ(most, before + (specular != 0 ? 2 : 1));
    EXPECT_EQ(Material::living, before);
    stage.expect_all_given_back();
  }
}

TEST_F(Lit_Texture, GivesEverythingBackWhenTheMaterialThrows) {
  const int before = Material::living;
  int calls = 0;
  Material::light = [&]() -> float {
    if (++calls == 9) throw std::runtime_error("out of light");
    return 1;
  };
  EXPECT_THROW(stage.draw(Layer::float_inside, 8, vectors.data()), std::runtime_error);
  EXPECT_EQ(Material::living, before);
  stage.expect_all_given_back();
}

}  // namespace
