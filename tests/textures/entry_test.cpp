// Which textured primitives are drawn here, by which road, and in which pieces.
#include <gtest/gtest.h>

#include "tests/textures/stage.h"

namespace {

using namespace stage;

const Call square = {{{{1, 1, 9}}, {{9, 1, 9}}, {{1, 9, 9}}, {{9, 9, 9}}}};

bool inside(Layer layer) {
  return !clips(layer);
}

/// Draws and tells whether the general routine took the call.
bool goes_to_standard(const Stage& stage, Layer layer, const Call& call = square) {
  standard_calls = 0;
  stage.draw(layer, call);
  return standard_calls == 1;
}

TEST(Entry, GateSendsWhatIsNotSimpleToTheGeneralRoutine) {
  for (const Set set : all_sets) {
    for (const Layer layer : all_layers) {
      SCOPED_TRACE(name_of(set) + " layer " + std::to_string(static_cast<int>(layer)));
      Stage stage(set);
      EXPECT_FALSE(goes_to_standard(stage, layer));
      EXPECT_TRUE(stage.color->touched(4, 4));

      stage.face().face_pattern = 75;
      stage.textured->texture_asked = 0;
      EXPECT_TRUE(goes_to_standard(stage, layer));
      stage.face().face_pattern = 64;
      stage.display().depth_enabled = 0;
      EXPECT_TRUE(goes_to_standard(stage, layer));
      EXPECT_EQ(stage.textured->texture_asked, 0);
      stage.display().depth_enabled = 1;

      stage.misc().texture_options = 1;
      EXPECT_TRUE(goes_to_standard(stage, layer));
      stage.misc().texture_options = ~1u;
      EXPECT_FALSE(goes_to_standard(stage, layer));
      stage.texture->standard_only = 1;
      EXPECT_TRUE(goes_to_standard(stage, layer));
      stage.texture->standard_only = 0;
      for (std::uint32_t KT_Texture_Source_Data::*wrap :
           {&KT_Texture_Source_Data::wrap_s, &KT_Texture_Source_Data::wrap_t}) {
        for (const std::uint32_t mode : {1u, 3u, 4u, 0x80000002u, 0u, 2u}) {
          (*stage.texture).*wrap = mode;
          EXPECT_EQ(goes_to_standard(stage, layer), mode != 0 && mode != 2) << mode;
        }
      }
      EXPECT_EQ(standard_calls_bare, 0);
    }
  }
}

TEST(Entry, OnlyInsideActionsOfPlainMappedDrawLight) {
  for (const Set set : all_sets) {
    for (const Layer layer : all_layers) {
      Stage stage(set);
      int lamp = 0;
      Call call = square;
      call.vectors.resize(4);
      EXPECT_FALSE(goes_to_standard(stage, layer, call));  // no lighting
      stage.material().lighting = &lamp;
      const bool lit = set == Set::mapped_z && inside(layer);
      EXPECT_EQ(goes_to_standard(stage, layer, call), !lit);
      EXPECT_EQ(Material::asked.empty(), !lit);
      stage.misc().texture_mode = 3;
      EXPECT_TRUE(goes_to_standard(stage, layer, call));
      EXPECT_FALSE(goes_to_standard(stage, layer));  // no vectors
    }
  }
}

// Edges leave the inside of the square alone and take the rendition's colour.
enum class Drawn { filled, edges };

Drawn drawn(Stage& stage, Layer layer) {
  stage.clear();
  stage.draw(layer, square);
  EXPECT_TRUE(stage.color->touched(1, 4));
  return stage.color->touched(6, 3) ? Drawn::filled : Drawn::edges;
}

TEST(Entry, EdgesAreAskedForByHeads) {
  for (const Set set : all_sets) {
    for (const Layer layer : all_layers) {
      for (const std::uint8_t modulate : {std::uint8_t{0}, std::uint8_t{1}}) {
        SCOPED_TRACE(name_of(set) + " layer " + std::to_string(static_cast<int>(layer)) +
                     " modulate " + std::to_string(modulate));
        Stage stage(set);
        stage.texture->modulate = modulate;
        stage.misc().advanced_options.bits = KT_Advanced_Options::edge_bit;
        const bool asks =
            set == Set::rgb_z || (set == Set::rgb_alpha_z && (inside(layer) || modulate != 0));
        EXPECT_EQ(drawn(stage, layer), asks ? Drawn::edges : Drawn::filled);
        // The heads of the inside actions stand before the gate.
        stage.face().face_pattern = 75;
        const bool before_gate = set == Set::rgb_z || (set == Set::rgb_alpha_z && inside(layer));
        EXPECT_EQ(goes_to_standard(stage, layer), !before_gate);
      }
    }
  }
}

TEST(Entry, AlphaBitLeadsToTheBlendingSet) {
  for (const Layer layer : all_layers) {
    Stage stage(Set::rgb_z);
    stage.set_texture(1, 1, {0x00123456});
    stage.draw(layer, square);
    EXPECT_EQ(stage.color->at(4, 4), 0x00123456u);  // the word as it stands
    stage.clear();
    stage.misc().advanced_options.bits = KT_Advanced_Options::alpha_bit;
    stage.draw(layer, square);
    EXPECT_FALSE(stage.color->touched(4, 4));
    EXPECT_FALSE(stage.depth->touched(4, 4));
  }
}

TEST(Entry, ModulatedWithoutColours) {
  for (const Set set : all_sets) {
    for (const Layer layer : all_layers) {
      Stage stage(set);
      stage.texture->modulate = 1;
      Call call = square;
      call.with_colors = false;
      stage.draw(layer, call);
      EXPECT_EQ(stage.color->touched(4, 4), set == Set::rgb_alpha_z && inside(layer));
    }
  }
}

TEST(Entry, ConvertsUpTo64PointsOnTheStack) {
  for (const Set set : all_sets) {
    Stage stage(set, {140, 12});
    for (const std::size_t count : {std::size_t{64}, std::size_t{65}}) {
      Call call;
      for (int i = 0; i < static_cast<int>(count); ++i) {
        call.strip.push_back({{2 * i, i % 2 == 0 ? 1 : 9, 9}});
      }
      const bool longer = count > 64;
      EXPECT_EQ(stage.draw(Layer::float_any, call), longer ? 2 : 0);
      EXPECT_EQ(stage.draw(Layer::float_inside, call), longer ? 1 : 0);
      EXPECT_EQ(stage.draw(Layer::int_any, call), longer ? 1 : 0);
      EXPECT_EQ(stage.draw(Layer::int_inside, call), 0);
    }
  }
}

// Texels of their own colour by place, so that a wrong coordinate shows.
void set_distinct_texture(Stage& stage, int size) {
  std::vector<std::uint32_t> texels;
  for (int i = 0; i < size * size; ++i) {
    texels.push_back(0xFF000000u | static_cast<std::uint32_t>(i * 0x030507));
  }
  stage.set_texture(size, size, texels);
}

TEST(Entry, CutTrianglesReadTheSameTexels) {
  Call call{{{{-3, -2, 60000}, -0.5f, 0.25f},
             {{14, 1, 10}, 1.75f, -1},
             {{2, 15, 30000}, 0, 2.5f},
             {{16, 13, 900}, 1, 1}}};
  call.parameter_width = 2;
  for (const Set set : all_sets) {
    for (const Layer layer : {Layer::float_any, Layer::int_any}) {
      Stage whole(set, {40, 40}, {-10, -10});
      Stage cut(set, {40, 40}, {-10, -10});
      set_distinct_texture(whole, 16);
      set_distinct_texture(cut, 16);
      const KT_Int_Rectangle clip{1, 9, 0, 10};
      cut.display().hard_clip = clip;
      whole.draw(layer, call);
      cut.draw(layer, call);
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
          const bool visible = x - 10 >= clip.left && x - 10 <= clip.right &&
                               y - 10 >= clip.bottom && y - 10 <= clip.top;
          const std::uint32_t expected = visible ? whole.color->at(x, y) : cut.color->untouched();
          // Short spans have forms of their own where nothing is cut.
          const bool wide = visible && whole.color->touched(x, y) &&
                            whole.color->touched(x - 1, y) && whole.color->touched(x + 1, y);
          if (!visible || wide) {
            ASSERT_EQ(cut.color->at(x, y), expected) << name_of(set) << ' ' << x << ", " << y;
          }
        }
      }
    }
  }
}

TEST(Entry, PatternsStopAtTheHardClip) {
  Stage stage(Set::rgb_z);
  stage.face().face_pattern = 0;  // a hole everywhere
  stage.draw(Layer::int_any, square);
  EXPECT_FALSE(stage.color->touched(4, 4));
  stage.display().hard_clip = {0, 11, 0, 5};
  stage.draw(Layer::int_any, square);  // both triangles are cut, and drawn solid
  EXPECT_TRUE(stage.color->touched(4, 4));
  EXPECT_FALSE(stage.color->touched(4, 6));
}

TEST(Entry, ReferencesAreGivenBack) {
  for (const Set set : all_sets) {
    Stage stage(set);
    stage.display().hard_clip = {2, 7, 0, 6};
    for (const Layer layer : all_layers) stage.draw(layer, square);
    EXPECT_EQ(stage.texture->reference_count, 2u);  // the stage's and the material's
    EXPECT_EQ(stage.texture->held->reference_count, 1u);
  }
}

}  // namespace
