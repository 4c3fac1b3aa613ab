// Dots and polymarkers: which settings each variant honours, and in which order.
#include <gtest/gtest.h>

#include "module/pixels/alpha_scale.h"
#include "tests/support/session.h"

namespace {

int standard_markers = 0;

}  // namespace

// Stands in front of the framework's routine.
void KD_Standard_Draw_2DI_Polymarker(KT_Renderer_Data*, const KT_Rendition&, int,
                                     const KT_DCI_Point*) {
  ++standard_markers;
}

namespace {

using namespace support;

constexpr std::uint32_t paper = 0x4D302010;  // what an untouched pixel holds

void draw_dot(const Session& session, KT_DCI_Point point, const KT_RGB32* color = nullptr) {
  session.actions().call<KT_Action::Draw_DCI_Dot>(session.rendition, &point, color);
}

void draw_markers(const Session& session, const std::vector<KT_DCI_Point>& points) {
  session.actions().call<KT_Action::Draw_2DI_Polymarker>(
      session.rendition, static_cast<int>(points.size()), points.data());
}

// Both ways of drawing one point in the rendition's colour.
void draw_point(const Session& session, bool marker, KT_DCI_Point point) {
  marker ? draw_markers(session, {point}) : draw_dot(session, point);
}

TEST(Dots, BlendByAlphaScale) {
  for (const Variant variant : {Variant::rgb_alpha, Variant::rgb_alpha_z}) {
    for (const int depth_enabled : {0, 1}) {
      Session session({.variant = variant});
      session.display().depth_enabled = static_cast<std::uint8_t>(depth_enabled);
      for (const int alpha : {0, 1, 128, 254, 255}) {
        const KT_RGB32 color{200, 7, 90, static_cast<std::uint8_t>(alpha)};
        session.clear();
        draw_dot(session, {3, 4, 5}, &color);
        EXPECT_EQ(session.color->at(3, 4), zbuffer::blended_pixel(paper, color.word())) << alpha;
      }
    }
  }
}

TEST(Dots, DepthTestComparesSignedAndKeepsLowBits) {
  struct Case {
    unsigned test;
    std::int32_t z;
    bool pass;
  };
  const Case cases[] = {{2, 1000, true},  {2, 1001, false},  {1, 999, true},    {1, 1000, false},
                        {5, 1001, true},  {5, 1000, false},  {3, 1000, true},   {2, -1, true},
                        {5, 70000, true}, {2, 70000, false}, {5, -70000, false}};
  for (const Variant variant : {Variant::rgb_z, Variant::rgb_alpha_z, Variant::mapped_z}) {
    for (const bool marker : {false, true}) {
      if (marker && variant == Variant::mapped_z) continue;  // has no marker of its own
      Session session({.variant = variant});
      for (const Case& c : cases) {
        for (const std::uint8_t write : {std::uint8_t{0}, std::uint8_t{1}}) {
          SCOPED_TRACE(testing::Message() << name_of(variant) << " test " << c.test << " z " << c.z
                                          << " write " << int{write});
          session.clear(1000);
          session.set_depth_test(c.test);
          session.set_depth_write(write);
          draw_point(session, marker, {2, 3, c.z});
          const bool mapped = variant == Variant::mapped_z;  // honours neither setting
          const bool pass = mapped ? c.z <= 1000 : c.pass;
          EXPECT_EQ(session.color->touched(2, 3), pass);
          const bool written = pass && (mapped || write != 0);
          EXPECT_EQ(session.depth->at(2, 3), written ? c.z & 0xFFFF : 1000);
        }
      }
    }
  }
}

// With depth, neither mask nor merging counts; without, the mask comes first.
TEST(Dots, DepthLeavesOutMaskAndMerge) {
  for (const Variant variant : all_variants) {
    for (const int depth_enabled : {0, 1}) {
      for (const bool marker : {false, true}) {
        if (marker && variant == Variant::mapped_z) continue;
        SCOPED_TRACE(testing::Message() << name_of(variant) << depth_enabled << marker);
        Session session({.variant = variant, .use_mask = true, .force_merge = true});
        session.display().depth_enabled = static_cast<std::uint8_t>(depth_enabled);
        session.display().complex_clip = contour({{0, 0, 0}, {4, 0, 0}, {4, 8, 0}, {0, 8, 0}});
        draw_point(session, marker, {3, 2, 9});
        draw_point(session, marker, {6, 2, 9});
        const bool tested = zbuffer::has_depth(variant) && depth_enabled != 0;
        EXPECT_EQ(session.color->touched(6, 2), tested);
        std::uint32_t merged = session.own_color() & paper;
        merged |= 0xFF000000u;
        if (!zbuffer::is_mapped(variant)) {
          EXPECT_EQ(session.color->at(3, 2), tested ? session.own_color() : merged);
        }
      }
    }
  }
}

TEST(Dots, MappedColoursAreDitheredByAddressAndNeverMerged) {
  for (const Variant variant : {Variant::mapped, Variant::mapped_z}) {
    Session session({.variant = variant, .size = {19, 9}, .origin = {-5, 3}, .force_merge = true});
    const KT_Color_Cube& cube = session.renderer().color_cube;
    const KT_RGB32 color{77, 140, 33, 12};
    for (int y = 0; y < 9; ++y) {
      for (int x = 0; x < 19; ++x) {
        draw_dot(session, {x - 5, y + 3, 0}, &color);
        const auto column = reinterpret_cast<std::uintptr_t>(session.color->rows[y] + x) & 7;
        const int threshold = SHARED.dither_table[static_cast<std::size_t>(y & 7) * 8 + column];
        const auto place = [&](int channel, int scale) {
          return ((channel * scale << 8) + threshold) >> 16;
        };
        const int index = cube.base_index + cube.red_stride * place(color.red, cube.red_scale) +
                          cube.green_stride * place(color.green, cube.green_scale) +
                          place(color.blue, cube.blue_scale);
        ASSERT_EQ(session.color->at(x, y), static_cast<std::uint32_t>(index & 255))
            << x << ", " << y;
      }
    }
  }
}

TEST(Markers, AreClippedPointByPoint) {
  for (const Variant variant : all_variants) {
    if (variant == Variant::mapped_z) continue;
    Session session({.variant = variant, .size = {6, 4}, .origin = {100, -2}});
    session.display().hard_clip = {101, 104, -1, 0};
    std::vector<KT_DCI_Point> points;
    for (int y = -30; y < 30; ++y) {
      for (int x = 90; x < 120; ++x) points.push_back({x, y, 0});
    }
    draw_markers(session, points);
    EXPECT_TRUE(shows(*session.color, {"......", ".####.", ".####.", "......"},
                      {{'#', session.own_color()}}))
        << name_of(variant);
  }
}

// An opaque colour of the blending variants is stored; it is not blended to the same.
TEST(Markers, ChooseTheirVariantBeforeTheirSymbol) {
  for (const Variant variant : all_variants) {
    if (variant == Variant::mapped_z) continue;
    Session session({.variant = variant});
    session.material().color = {1, 2, 3, 128};
    const bool alpha = zbuffer::is_alpha(variant);
    draw_markers(session, {{5, 5, 0}});
    if (!zbuffer::is_mapped(variant)) {
      EXPECT_EQ(session.color->at(5, 5),
                alpha ? zbuffer::blended_pixel(paper, session.own_color()) : session.own_color());
    }
    session.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = 1;
    standard_markers = 0;
    draw_markers(session, {});
    draw_markers(session, {{7, 5, 0}});
    EXPECT_EQ(standard_markers, 2) << name_of(variant);
    EXPECT_FALSE(session.color->touched(7, 5));
  }
}

}  // namespace
