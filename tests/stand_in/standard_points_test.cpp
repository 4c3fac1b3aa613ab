// Markers, dots and images of the general routines, on the module's own actions.
#include <gtest/gtest.h>

#include <set>

#include "tests/stand_in/general_session.h"

namespace {

using namespace general;

TEST(Markers, AreSixteenPicturesRoundTheirPoint) {
  std::set<Picture> looks;
  for (int symbol = 1; symbol <= 16; ++symbol) {
    General session;
    session.set_marker(symbol);
    session.draw<Draw_2DI_Polymarker>({{20, 20, 9}});
    EXPECT_TRUE(session.stays_in({16, 24, 16, 24})) << symbol;
    looks.insert(session.picture());
  }
  EXPECT_EQ(looks.size(), 16U);
}

TEST(Markers, AreClippedWhereverTheyLie) {
  const KT_Int_Rectangle clip{10, 14, 10, 14};
  for (Variant variant : all_variants) {
    for (int symbol : {INT32_MIN, -1, 0, 13, 16, 21, INT32_MAX}) {
      General session(variant);
      session.display().hard_clip = General::at(clip);
      session.set_marker(symbol);
      session.draw<Draw_2DI_Polymarker>(
          {{10, 10, 0}, {17, 17, 0}, {12, 6, 3}, {INT32_MAX, INT32_MIN, 0}});
      EXPECT_TRUE(session.stays_in(clip)) << name_of(variant) << symbol;
      EXPECT_TRUE(session.color->touched(10, 10)) << name_of(variant) << symbol;
    }
  }
}

TEST(Dots, OfTheFrameworkAreThoseOfTheRenderer) {
  for (Variant variant : all_variants) {
    General own(variant, {4, 4}), general(variant, {4, 4});
    const KT_DCI_Point at = General::at(2, 2, 7);
    own.actions().call<Draw_DCI_Dot>(own.rendition, &at, nullptr);
    general.actions().bind<Draw_DCI_Dot>(&general.renderer(), KD_Standard_Draw_DCI_Dot);
    general.actions().call<Draw_DCI_Dot>(general.rendition, &at, nullptr);
    EXPECT_TRUE(same_pixels(general.color->pixels(), own.color->pixels(), 4));
  }
}

TEST(Images, OfColorsKeepThemInAMappedRenderer) {
  const KT_RGB32 colors[] = {{200, 30, 90, 255}, {0, 0, 0, 255}, {17, 128, 240, 0}};
  const KT_Palette palette = KD_Cube_Palette();
  const KT_DCI_Point start = General::at(0, 7, 9), end = General::at(7, 0, 9);
  for (const KT_RGB32& color : colors) {
    General session(Variant::mapped_z, {8, 8});
    const std::vector<KT_RGB32> pixels(64, color);
    session.actions().call<Draw_DCI_RGB32_Image>(session.rendition, &start, &end, 32, pixels.data(),
                                                 0, nullptr);
    for (const auto channel : {&KT_RGB32::red, &KT_RGB32::green, &KT_RGB32::blue}) {
      int sum = 0;
      for (const auto index : session.color->pixels())
        sum += palette->entries[index].color.*channel;
      EXPECT_NEAR(sum / 64, color.*channel, 4);
    }
  }
}

TEST(Images, OfIndicesTakeThePalettesColors) {
  const std::uint8_t pixels[] = {0, 5, 215, 99, 254, 1, 2, 3};
  const KT_Palette palette = KD_Cube_Palette();
  for (Variant variant : {Variant::rgb, Variant::rgb_alpha, Variant::rgb_z, Variant::rgb_alpha_z}) {
    General session(variant, {4, 2});
    const KT_DCI_Point start = General::at(0, 1, 40), end = General::at(3, 0, 70);
    session.actions().call<Draw_DCI_Index8_Image>(session.rendition, &start, &end, 4, pixels);
    for (int n = 0; n < 8; ++n) {
      EXPECT_EQ(session.pixel(n % 4, 1 - n / 4), palette->entries[pixels[n]].color);
      if (!session.depth) continue;
      EXPECT_EQ(session.depth->at(n % 4, 1 - n / 4),
                static_cast<std::uint32_t>(40 + n % 4 * 10 + n / 4 * 30));
    }
  }
}

}  // namespace
