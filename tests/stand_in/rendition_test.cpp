// Renditions and the default materials.
#include <gtest/gtest.h>

#include "host/application.h"

namespace {

TEST(Rendition, SettersTouchNoOtherHolder) {
  const KT_Rendition original = KD_Default_Rendition({0, 9, 0, 9});
  KT_Rendition changed = original;
  changed.set_color({1, 2, 3, 4}, false);
  changed.set_hard_clip_unrestricted({1, 2, 3, 4}, false);
  EXPECT_EQ(changed->material->color, (KT_RGB32{1, 2, 3, 4}));
  EXPECT_EQ(changed->display_context->hard_clip, (KT_Int_Rectangle{1, 2, 3, 4}));
  EXPECT_EQ(original->material->color, (KT_RGB32{255, 255, 255, 255}));
  EXPECT_EQ(original->display_context->hard_clip, (KT_Int_Rectangle{0, 9, 0, 9}));
  // What was not written to is still in common.
  EXPECT_EQ(changed->face_attributes, original->face_attributes);
}

TEST(Rendition, ShiftedClipKeepsItsIdentityWhileItsSourceDoes) {
  const KT_Point triangle[3] = {{0, 0, 5}, {10, 0, 5}, {0, 10, 5}};
  const KT_Contour_Set clip(3, triangle, false);
  const auto rendition_with_clip = [&] {
    KT_Rendition rendition = KD_Default_Rendition({-20, 79, 30, 129});
    rendition->display_context->complex_clip = clip;
    return rendition;
  };
  KT_Rendition first = rendition_with_clip();
  const KT_Rendition second = rendition_with_clip();

  const KT_Contour_Set shifted = first.shifted_complex_clip();
  EXPECT_NE(shifted->id, clip->id);
  EXPECT_EQ(shifted->contours[0][1].x, -10);
  EXPECT_EQ(shifted->contours[0][1].y, 30);
  EXPECT_EQ(shifted->contours[0][1].z, 5);
  EXPECT_EQ(clip->contours[0][1].x, 10);

  // A different shift in between, as of a second window.
  first.edit(&KT_Rendition_Data::display_context).extent_left = -21;
  EXPECT_EQ(first.shifted_complex_clip()->contours[0][1].x, -11);
  EXPECT_EQ(second.shifted_complex_clip(), shifted);

  KT_Rendition third = second;
  third.edit(&KT_Rendition_Data::display_context).complex_clip.writable().contours[0][1].x = 50;
  EXPECT_EQ(third.shifted_complex_clip()->contours[0][1].x, 30);
  EXPECT_NE(third.shifted_complex_clip()->id, shifted->id);

  third.edit(&KT_Rendition_Data::display_context).complex_clip.release();
  EXPECT_FALSE(third.shifted_complex_clip());
}

TEST(Material_Object, OnlyABasicMaterialWithAWidthIsOutlined) {
  KT_Basic_Material basic;
  KT_Basic_Textured_Material textured;
  EXPECT_EQ(basic->classify_points(0, nullptr).kind, 0);
  basic->outline_width = textured->outline_width = 2;
  EXPECT_EQ(basic->classify_points(0, nullptr).kind, KT_Point_Class::outlined);
  EXPECT_EQ(textured->classify_points(0, nullptr).kind, 0);

  const KT_Handle<KT_Material_Object> other = basic;
  basic.writable().outline_width = 0;
  EXPECT_EQ(other->classify_points(0, nullptr).kind, KT_Point_Class::outlined);
}

TEST(Material_Object, LightIsTheColourTurnedAwayPlusAHighlight) {
  KT_Rendition rendition = KD_Default_Rendition({0, 9, 0, 9});
  rendition.set_color({0, 51, 255, 255}, false);
  KT_Basic_Material material;
  float light[3];
  const auto shade = [&](const KT_Vector& vector) {
    material->shade(light, rendition, vector, 0, 0, 0, 1, 0);
  };
  shade({3, 0, 0});
  for (const float channel : light) EXPECT_FLOAT_EQ(channel, 0);

  std::fill_n(material->specular_color, 3, 0.0F);
  shade({0, 3, 4});
  EXPECT_FLOAT_EQ(light[0], 0.8F);
  EXPECT_FLOAT_EQ(light[1], 0.16F);
  EXPECT_FLOAT_EQ(light[2], 0);

  material->specular_color[2] = 0.5F;
  shade({0, 0, -2});
  EXPECT_FLOAT_EQ(light[0], 1);
  EXPECT_FLOAT_EQ(light[2], 0.5F);
}

}  // namespace
