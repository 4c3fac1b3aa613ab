// Hatched faces, markers and images of the general routines, on the module's own actions.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/session.h"

namespace {

using support::Configuration;
using support::Kind;
using support::Layer;
using support::Session;
using support::Variant;

Configuration configuration_of(Variant variant, KT_Int_XY size = {48, 40}) {
  Configuration configuration;
  configuration.variant = variant;
  configuration.size = size;
  configuration.origin = {100, -20};
  return configuration;
}

std::vector<bool> touched(const Session& session) {
  std::vector<bool> all;
  for (std::uint32_t pixel : session.color->pixels()) {
    all.push_back(pixel != session.color->untouched());
  }
  return all;
}

int count_of(const std::vector<bool>& pixels) {
  return static_cast<int>(std::count(pixels.begin(), pixels.end(), true));
}

/// All that is drawn is drawn of the other as well, and the other has more.
bool is_part(const std::vector<bool>& part, const std::vector<bool>& whole) {
  for (std::size_t n = 0; n < part.size(); ++n) {
    if (part[n] && !whole[n]) return false;
  }
  return count_of(part) > 0 && count_of(part) < count_of(whole);
}

TEST(Hatches, LeaveHolesInEveryKindOfFace) {
  const support::Strip strip =
      support::strip_of({{104, -18, 5}, {140, -15, 5}, {110, 16, 5}, {145, 18, 5}});
  std::set<std::vector<bool>> looks;
  for (Variant variant : support::all_variants) {
    for (Kind kind : support::all_kinds) {
      for (Layer layer : support::all_layers) {
        Session session(configuration_of(variant));
        support::draw(session, layer, kind, strip);
        const auto solid = touched(session);
        const bool every_hatch = kind == Kind::flat && layer == Layer::int_any;
        for (int pattern = 75; pattern < (every_hatch ? 91 : 77); ++pattern) {
          session.clear();
          session.face().face_pattern = pattern;
          support::draw(session, layer, kind, strip);
          EXPECT_TRUE(is_part(touched(session), solid)) << pattern;
          looks.insert(touched(session));
        }
      }
    }
  }
  EXPECT_EQ(looks.size(), 16U);
}

TEST(Hatches, AreTheSameInPolygons) {
  const std::vector<KT_Point> convex = {{104, -18, 5}, {140, -15, 5}, {145, 18, 5}, {110, 16, 5}};
  const std::vector<KT_Point> notched = {{104, -18, 5}, {140, -18, 5}, {120, 0, 5}, {140, 18, 5}};
  const KT_RGB32 color = {1, 2, 3, 255};
  for (Variant variant : support::all_variants) {
    for (const auto& points : {convex, notched}) {
      for (const KT_RGB32* given : {static_cast<const KT_RGB32*>(nullptr), &color}) {
        Session session(configuration_of(variant));
        std::vector<KT_DCI_Point> whole;
        for (const KT_Point& p : points) {
          whole.push_back({static_cast<int>(p.x), static_cast<int>(p.y), static_cast<int>(p.z)});
        }
        const auto drawn = [&]<KT_Action action>(const auto& at) {
          session.clear();
          session.actions().call<action>(session.rendition, 4, at.data(), given);
          return touched(session);
        };
        const auto solid = drawn.operator()<KT_Action::Draw_2DI_Polygon>(whole);
        session.face().face_pattern = 200;
        const auto hatched = drawn.operator()<KT_Action::Draw_2D_Polygon>(points);
        EXPECT_TRUE(is_part(hatched, solid));
        EXPECT_EQ(drawn.operator()<KT_Action::Draw_DC_Polygon>(points), hatched);
        EXPECT_EQ(drawn.operator()<KT_Action::Draw_2DI_Polygon>(whole), hatched);
        EXPECT_EQ(drawn.operator()<KT_Action::Draw_DCI_Polygon>(whole), hatched);
      }
    }
  }
}

TEST(Hatches, LeaveTheCallersRenditionAlone) {
  Session session(configuration_of(Variant::rgb_z));
  session.face().face_pattern = 80;
  const std::uint32_t id = session.rendition->face_attributes->id;
  support::draw(session, Layer::float_any, Kind::flat,
                support::strip_of({{104, -18, 5}, {140, -15, 5}, {110, 16, 5}}));
  EXPECT_EQ(session.rendition->face_attributes->id, id);
  EXPECT_EQ(session.rendition->face_attributes->face_pattern, 80);
  EXPECT_EQ(session.rendition->face_attributes->user_pattern, nullptr);
}

TEST(Markers, AreSixteenPicturesRoundTheirPoint) {
  const KT_DCI_Point at = {120, 0, 9};
  for (Variant variant : support::all_variants) {
    std::set<std::vector<bool>> looks;
    for (int symbol = 1; symbol <= 16; ++symbol) {
      Session session(configuration_of(variant));
      session.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = symbol;
      session.actions().call<KT_Action::Draw_2DI_Polymarker>(session.rendition, 1, &at);
      const auto picture = touched(session);
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 48; ++x) {
          const bool in_box = std::max(std::abs(x - 20), std::abs(y - 20)) <= 4;
          const auto place = static_cast<std::size_t>(y * 48 + x);
          ASSERT_TRUE(in_box || !picture[place]) << symbol << " at " << x << ", " << y;
          ASSERT_TRUE(!picture[place] || session.color->at(x, y) == session.own_color());
        }
      }
      EXPECT_GT(count_of(picture), 7) << symbol;
      looks.insert(picture);
    }
    EXPECT_EQ(looks.size(), 16U) << support::name_of(variant);
  }
}

TEST(Markers, LookLikeTheirNames) {
  const auto picture = [](int symbol) {
    Session session(configuration_of(Variant::rgb_alpha));
    session.material().color.alpha = 90;
    session.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = symbol;
    const KT_DCI_Point at = {120, 0, 9};
    session.actions().call<KT_Action::Draw_2DI_Polymarker>(session.rendition, 1, &at);
    std::vector<std::string> rows;
    for (int y = 24; y >= 16; --y) {
      rows.emplace_back();
      for (int x = 16; x <= 24; ++x) rows.back() += session.color->touched(x, y) ? '#' : '.';
    }
    return rows;
  };
  EXPECT_EQ(
      picture(KT_Marker_Symbol::triangle),
      (std::vector<std::string>{"....#....", "....#....", "...#.#...", "...#.#...", "..#...#..",
                                "..#...#..", ".#.....#.", ".#.....#.", "#########"}));
  EXPECT_EQ(
      picture(KT_Marker_Symbol::diamond + KT_Marker_Symbol::filled),
      (std::vector<std::string>{"....#....", "...###...", "..#####..", ".#######.", "#########",
                                ".#######.", "..#####..", "...###...", "....#...."}));
}

TEST(Markers, AreClippedWhereverTheyLie) {
  for (Variant variant : support::all_variants) {
    for (int symbol : {INT32_MIN, -1, 0, 13, 16, 21, INT32_MAX}) {
      Session session(configuration_of(variant));
      session.display().hard_clip = {110, 114, -10, -6};
      session.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = symbol;
      const KT_DCI_Point points[] = {{110, -10, 0},
                                     {117, -3, 0},
                                     {112, -14, 3},
                                     {INT32_MAX, INT32_MIN, 0},
                                     {112, INT32_MAX, 0}};
      session.actions().call<KT_Action::Draw_2DI_Polymarker>(session.rendition, 5, points);
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 48; ++x) {
          const bool inside = x >= 10 && x <= 14 && y >= 10 && y <= 14;
          ASSERT_TRUE(inside || !session.color->touched(x, y)) << x << ", " << y;
        }
      }
      EXPECT_TRUE(session.color->touched(10, 10)) << support::name_of(variant) << symbol;
    }
  }
}

KT_RGB32 color_of(const Session& session, const KT_Palette& palette, int x, int y) {
  return palette->entries[session.color->at(x, y)].color;
}

TEST(Images, OfColorsKeepThemInAMappedRenderer) {
  const KT_RGB32 colors[] = {
      {200, 30, 90, 255}, {0, 0, 0, 255}, {255, 255, 255, 255}, {17, 128, 240, 0}};
  for (Variant variant : {Variant::mapped, Variant::mapped_z}) {
    for (const KT_RGB32& color : colors) {
      Session session(configuration_of(variant, {16, 16}));
      const std::vector<KT_RGB32> pixels(256, color);
      const KT_DCI_Point start = {100, -5, 100};
      const KT_DCI_Point end = {115, -20, 100};
      session.actions().call<KT_Action::Draw_DCI_RGB32_Image>(session.rendition, &start, &end, 64,
                                                              pixels.data(), 0, nullptr);
      const KT_Palette palette = KD_Cube_Palette();
      int red = 0;
      int green = 0;
      int blue = 0;
      for (int n = 0; n < 64; ++n) {
        const KT_RGB32 got = color_of(session, palette, n % 8, n / 8);
        red += got.red;
        green += got.green;
        blue += got.blue;
      }
      EXPECT_NEAR(red / 64, color.red, 4);
      EXPECT_NEAR(green / 64, color.green, 4);
      EXPECT_NEAR(blue / 64, color.blue, 4);
    }
  }
}

TEST(Images, OfColorsTakeTheNearestEntryWithoutACube) {
  const KT_RGB32 entries[3] = {{0, 0, 0, 255}, {10, 200, 10, 255}, {250, 0, 0, 255}};
  Session session(configuration_of(Variant::mapped, {3, 2}));
  session.options().set_palette(KT_Palette(entries, 3, nullptr));
  session.establish();
  session.color->fill(99);
  const KT_RGB32 pixels[8] = {{240, 20, 9, 0}, {0, 190, 0, 0}, {8, 9, 9, 0},  {77, 77, 77, 0},
                              {0, 255, 0, 0},  {0, 0, 9, 0},   {255, 0, 0, 0}};
  const KT_DCI_Point start = {100, -19, 0};
  const KT_DCI_Point end = {103, -20, 0};  // one column beyond the window
  session.actions().call<KT_Action::Draw_DCI_RGB32_Image>(session.rendition, &start, &end, 16,
                                                          pixels, 0, nullptr);
  EXPECT_TRUE(support::shows(*session.color, {"210", "102"}, {{'0', 0}, {'1', 1}, {'2', 2}}));
}

TEST(Images, OfIndicesTakeThePalettesColors) {
  for (Variant variant : {Variant::rgb, Variant::rgb_alpha, Variant::rgb_z, Variant::rgb_alpha_z}) {
    Session session(configuration_of(variant, {4, 2}));
    const std::uint8_t pixels[] = {0, 5, 215, 99, 254, 1, 2, 3};
    const KT_DCI_Point start = {100, -19, 40};
    const KT_DCI_Point end = {103, -20, 70};
    session.actions().call<KT_Action::Draw_DCI_Index8_Image>(session.rendition, &start, &end, 4,
                                                             pixels);
    const KT_Palette palette = KD_Cube_Palette();
    for (int n = 0; n < 8; ++n) {
      EXPECT_EQ(session.color->at(n % 4, 1 - n / 4), palette->entries[pixels[n]].color.word());
      if (session.depth) {
        EXPECT_EQ(session.depth->at(n % 4, 1 - n / 4),
                  static_cast<std::uint32_t>(40 + n % 4 * 10 + n / 4 * 30));
      }
    }
  }
}

TEST(Images, OfTheOtherSystemStandInTheDepthTest) {
  Session session(configuration_of(Variant::mapped_z, {8, 1}));
  session.clear(50);
  const std::vector<KT_RGB32> white(8, {255, 255, 255, 255});
  const KT_DCI_Point start = {100, -20, 30};
  const KT_DCI_Point end = {107, -20, 100};
  session.actions().call<KT_Action::Draw_DCI_RGB32_Image>(session.rendition, &start, &end, 32,
                                                          white.data(), 0, nullptr);
  EXPECT_TRUE(support::shows(*session.color, {"www....."}, {{'w', 215}}));
}

TEST(Dots, OfTheFrameworkAreThoseOfTheRenderer) {
  for (Variant variant : support::all_variants) {
    Session own(configuration_of(variant, {4, 4}));
    Session general(configuration_of(variant, {4, 4}));
    const KT_DCI_Point at = {102, -18, 7};
    own.actions().call<KT_Action::Draw_DCI_Dot>(own.rendition, &at, nullptr);
    general.actions().bind<KT_Action::Draw_DCI_Dot>(&general.renderer(), KD_Standard_Draw_DCI_Dot);
    general.actions().call<KT_Action::Draw_DCI_Dot>(general.rendition, &at, nullptr);
    EXPECT_TRUE(support::same_pixels(general.color->pixels(), own.color->pixels(), 4));
  }
}

}  // namespace
