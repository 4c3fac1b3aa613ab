// Renderers of the framework's side: option tables, options in force, frame buffers, and what is
// counted where no action draws.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/application.h"
#include "tests/support/recorded_calls.h"
#include "tests/support/session.h"

namespace {

using support::Session;

TEST(Option_Table, CarriesOnlyWhatChangedAndOnce) {
  KT_Option_Table from, to;
  for (const wchar_t* name : {L"Changed", L"Kept"}) {
    from.add(KT_Option(name, KT_Option_Enum::local, 0));
    to.add(KT_Option(name, KT_Option_Enum::local, 1));
  }
  from.find(L"Changed")->set(KT_Option_Value(7));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 7);
  EXPECT_EQ(to.find(L"Kept")->value->as_int(), 1);
  to.find(L"Changed")->set(KT_Option_Value(8));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 8);
  // A value may also be written in place, alone or shared since it was carried.
  for (const int written : {9, 10}) {
    *static_cast<int*>(from.find(L"Changed")->value.writable().data) = written;
    EXPECT_LT(to.find(L"Changed")->value->as_int(), written);
    from.carry_changes_to(to);
    EXPECT_EQ(to.find(L"Changed")->value->as_int(), written);
  }
  EXPECT_EQ(to.find(L"Kept")->value->as_int(), 1);
}

TEST(Option_Table, RenderersShareOptionsOfSharedScopeAlone) {
  const Session first;
  first.renderer().current_option_table.add(KT_Option(L"Of First", KT_Option_Enum::local, 5));
  const Session second({.source = &first.renderer()});
  EXPECT_EQ(&second.option(L"Mask Cache"), &first.option(L"Mask Cache"));
  EXPECT_EQ(second.renderer().current_option_table.find(L"Of First"), nullptr);
}

TEST(Renderer, IsEstablishedWithinWhatItDeclares) {
  const Session session({.variant = support::Variant::rgb_z});
  for (const auto& [asked, given] : {std::pair{32, 16}, {0, 0}}) {
    session.options().set_buffer_depth(asked);
    session.renderer().establish_all();
    EXPECT_EQ(session.options().buffer_depth(), given);
  }
}

TEST(Renderer, CreatesFrameBuffersOrLeavesNone) {
  const Session session;
  session.renderer().set_standard_actions(false);
  KT_Shared_Image image;
  const auto create = [&](int width, int height, KT_Image_Format format) {
    session.actions().call<KT_Action::Create_Frame_Buffer>(width, height, &format, &image);
  };
  create(5, 3, KT_Image_Format::depth);
  EXPECT_EQ(image->row_bytes, 12);
  for (const auto& [width, height] : {std::pair{0, 3}, {3, -1}, {INT32_MAX, 1}}) {
    create(5, 5, KT_Image_Format::rgb32);
    create(width, height, KT_Image_Format::rgb32);
    EXPECT_FALSE(image);
  }
  const long before = heap::live();
  for (int granted = 0; granted < 2; ++granted) {
    const heap::Exhausted exhausted(granted, heap::Refusal::by_null);
    create(5, 5, KT_Image_Format::rgb32);
    EXPECT_TRUE(!image && heap::live() == before) << granted;
  }
}

TEST(Span_Rectangle, IsAClippedStripWithoutDepthOrEdges) {
  const Session session;
  support::Recorded_Calls::record<KT_Action::Draw_2DI_Polytriangle>(session.renderer());
  KT_Rendition rendition = KD_Default_Rendition({0, 99, 0, 49});
  rendition.set_advanced_options({KT_Advanced_Options::edge_bit | KT_Advanced_Options::alpha_bit},
                                 false);
  const std::uint32_t id = rendition->id;

  KD_Span_DC_Rectangle(&session.renderer(), rendition, 100, 120, 10, 20);  // outside
  KD_Span_DC_Rectangle(&session.renderer(), rendition, -5, 20, 10, 60);
  const auto calls = support::Recorded_Calls::take();
  ASSERT_EQ(calls.size(), 1U);
  const KT_Rendition_Data& given = *calls[0].rendition;
  EXPECT_EQ(given.display_context->hard_clip, (KT_Int_Rectangle{0, 20, 10, 49}));
  EXPECT_EQ(given.display_context->depth_enabled, 0);
  EXPECT_EQ(given.misc_attributes->advanced_options.bits, KT_Advanced_Options::alpha_bit);
  ASSERT_EQ(calls[0].points.size(), 4U);
  EXPECT_TRUE(calls[0].points[0].x == 0 && calls[0].points[0].y == 10);
  EXPECT_TRUE(calls[0].points[3].x == 21 && calls[0].points[3].y == 50);
  EXPECT_EQ(rendition->id, id);
}

// A renderer that has nothing but the general routines: each comes to an end and is reported.
TEST(Standard_Routines, CountAndNameWhatNoActionDraws) {
  const Session session;
  KT_Renderer_Data& renderer = session.renderer();
  renderer.set_standard_actions(true);
  KT_Rendition rendition = KD_Default_Rendition({0, 99, 0, 99});
  KT_Rendition wide = rendition;
  wide.edit(&KT_Rendition_Data::line_attributes).line_weight = 3;
  const KT_DCI_Point points[3] = {{1, 1, 0}, {20, 1, 0}, {9, 30, 0}};
  const KT_RGB32 colors[3] = {};
  KD_Reset_Undrawn_Count();
  testing::internal::CaptureStderr();
  for (int n = 0; n < 2; ++n) {
    KD_Standard_Draw_2DI_Polyline(&renderer, rendition, 2, points);
    KD_Standard_Draw_2DI_Polyline(&renderer, wide, 2, points);
    KD_Standard_Draw_DCI_Polygon(&renderer, rendition, 3, points, nullptr);
    KD_Standard_Draw_DCI_Gouraud_Polytriangle(&renderer, rendition, 3, points, colors);
    KD_Standard_Draw_2DI_Polymarker(&renderer, rendition, 1, points);
    KD_Standard_Draw_DCI_RGB32_Image(&renderer, rendition, points, points, 4, colors, 0, nullptr);
    KD_Standard_Draw_2DI_Textured_Polytriangle(&renderer, rendition, 3, points, colors, nullptr, 0,
                                               nullptr, nullptr);
  }
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(KD_Undrawn_Count(), 14U);
  // Each routine is named once.
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 6) << said;
  KD_Reset_Undrawn_Count();
}

}  // namespace
