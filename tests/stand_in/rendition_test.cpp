// Renditions and the default materials.
#include <gtest/gtest.h>

#include "host/application.h"

namespace {

TEST(Rendition, ShiftedClipKeepsItsIdentityWhileItsSourceDoes) {
  const KT_Point triangle[3] = {{0, 0, 5}, {10, 0, 5}, {0, 10, 5}};
  const KT_Contour_Set clip(3, triangle, false);
  KT_Rendition first = KD_Default_Rendition({-20, 79, 30, 129});
  KT_Rendition second = KD_Default_Rendition({-20, 79, 30, 129});
  for (KT_Rendition* rendition : {&first, &second}) {
    rendition->edit(&KT_Rendition_Data::display_context).complex_clip = clip;
  }
  const KT_Contour_Set shifted = first.shifted_complex_clip();
  EXPECT_NE(shifted->id, clip->id);
  EXPECT_EQ(shifted->contours[0][1].x, -10);
  EXPECT_EQ(shifted->contours[0][1].y, 30);
  EXPECT_EQ(clip->contours[0][1].x, 10);

  // A different shift in between, as of a second window.
  first.edit(&KT_Rendition_Data::display_context).extent_left = -21;
  EXPECT_EQ(first.shifted_complex_clip()->contours[0][1].x, -11);
  EXPECT_EQ(second.shifted_complex_clip(), shifted);

  second.edit(&KT_Rendition_Data::display_context).complex_clip.writable().contours[0][1].x = 50;
  EXPECT_EQ(second.shifted_complex_clip()->contours[0][1].x, 30);
  EXPECT_NE(second.shifted_complex_clip()->id, shifted->id);
}

TEST(Material_Object, OnlyABasicMaterialWithAWidthIsOutlined) {
  KT_Basic_Material basic;
  KT_Basic_Textured_Material textured;
  EXPECT_EQ(basic->classify_points(0, nullptr).kind, 0);
  basic->outline_width = textured->outline_width = 2;
  EXPECT_EQ(basic->classify_points(0, nullptr).kind, KT_Point_Class::outlined);
  EXPECT_EQ(textured->classify_points(0, nullptr).kind, 0);
}

}  // namespace
