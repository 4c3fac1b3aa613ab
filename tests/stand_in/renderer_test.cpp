// Renderers of the framework's side: option tables, options in force, frame buffers, and what is
// counted where no action draws.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/application.h"
#include "tests/stand_in/plain_renderer.h"
#include "tests/support/heap.h"

namespace {

KT_Option numbered(const wchar_t* name, std::int32_t value) {
  return {name, KT_Option_Enum::local, value};
}

TEST(Option_Table, FindsByNameAndReplacesWithoutLosingPointers) {
  KT_Option_Table table;
  KT_Option* const first = table.add(numbered(L"Margin", 3));
  table.add(numbered(L"Use Mask", 1));
  EXPECT_EQ(table.find(L"Margin"), first);
  EXPECT_EQ(table.find(L"margin"), nullptr);
  KT_Option* const second = table.add(numbered(L"Margin", 4));
  EXPECT_EQ(table.find(L"Margin"), second);
  EXPECT_EQ(first->value->as_int(), 3);
}

TEST(Option_Table, CarriesOnlyWhatChangedAndOnce) {
  KT_Option_Table from, to;
  for (const wchar_t* name : {L"Changed", L"Kept"}) {
    from.add(numbered(name, 0));
    to.add(numbered(name, 1));
  }
  from.find(L"Changed")->set(KT_Option_Value(7));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 7);
  EXPECT_EQ(to.find(L"Kept")->value->as_int(), 1);
  to.find(L"Changed")->set(KT_Option_Value(8));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 8);
}

TEST(Option_Table, RenderersShareOptionsOfSharedScope) {
  KT_Handle<Plain_Renderer> first(new Plain_Renderer(nullptr));
  first->renderer_option_table.add(KT_Option(L"Mask Cache", KT_Option_Enum::shared, nullptr));
  first->current_option_table.add(KT_Option(L"Mask Cache", KT_Option_Enum::shared, nullptr));
  first->current_option_table.add(KT_Option(L"Margin", KT_Option_Enum::local, 5));

  const KT_Handle<Plain_Renderer> second(new Plain_Renderer(first.get()));
  EXPECT_EQ(second->current_option_table.find(L"Margin"), nullptr);
  EXPECT_EQ(second->current_option_table.find(L"Mask Cache"),
            first->current_option_table.find(L"Mask Cache"));

  int object = 0;
  first->renderer_option_table.find(L"Mask Cache")->set(KT_Option_Value(&object));
  first->update_current_options();
  first.release();  // what is shared outlives its first table
  EXPECT_EQ(second->option_table().find(L"Mask Cache")->value->pointer(), &object);
}

using Renderer = KT_Handle<Plain_Renderer>;

TEST(Renderer, TakesTheSettingsInForceFromItsSource) {
  const Renderer owner(new Plain_Renderer(nullptr));
  owner->current_options.set_window({3, 4}, {50, 60});
  const Renderer source(new Plain_Renderer(nullptr));
  source->options_owner = owner.get();
  source->declared_options.set_buffer_depth(16);

  const Renderer made(new Plain_Renderer(source.get()));
  EXPECT_EQ(made->options().window_size(), (KT_Int_XY{50, 60}));
  EXPECT_EQ(made->declared_options.buffer_depth(), 16);
  EXPECT_EQ(made->options_owner, made.get());
}

TEST(Renderer, IsEstablishedWithinWhatItDeclares) {
  const Renderer renderer(new Plain_Renderer(nullptr));
  renderer->declared_options.set_buffer_depth(16);
  renderer->declared_options.set_supports_complex_clip(true);
  renderer->current_options.set_buffer_depth(32);
  renderer->establish_all();
  EXPECT_EQ(renderer->established, 1);
  EXPECT_EQ(renderer->options().buffer_depth(), 16);
  EXPECT_TRUE(renderer->options().supports_complex_clip());

  renderer->current_options.set_buffer_depth(0);
  renderer->establish_all();
  EXPECT_EQ(renderer->options().buffer_depth(), 0);
}

TEST(Renderer, CreatesFrameBuffersOrLeavesNone) {
  const Renderer renderer(new Plain_Renderer(nullptr));
  renderer->set_standard_actions(false);
  KT_Shared_Image image;
  const auto create = [&](int width, int height, KT_Image_Format format) {
    renderer->actions.call<KT_Action::Create_Frame_Buffer>(width, height, &format, &image);
  };
  for (const auto& [format, bytes] : {std::pair{KT_Image_Format::mapped, 8},
                                      {KT_Image_Format::rgb32, 20},
                                      {KT_Image_Format::depth, 12}}) {
    create(5, 3, format);
    ASSERT_TRUE(image);
    EXPECT_TRUE(image->row_bytes == bytes && image->format == format && image->height == 3);
  }
  for (const auto& [width, height] : {std::pair{0, 3}, {3, -1}, {INT32_MAX, 1}}) {
    create(5, 5, KT_Image_Format::rgb32);
    create(width, height, KT_Image_Format::rgb32);
    EXPECT_FALSE(image);
  }
  create(5, 5, KT_Image_Format::renderer_own);
  EXPECT_FALSE(image);

  const heap::Exhausted exhausted(1, heap::Refusal::by_null);
  create(5, 5, KT_Image_Format::rgb32);
  EXPECT_FALSE(image);
}

/// What arrived at the triangle action.
struct Received {
  std::vector<KT_DCI_Point> points;
  KT_Rendition rendition;
};

TEST(Span_Rectangle, IsAClippedStripWithoutDepthOrEdges) {
  const Renderer renderer(new Plain_Renderer(nullptr));
  static Received received;
  renderer->actions.bind<KT_Action::Draw_2DI_Polytriangle>(
      renderer.get(),
      [](KT_Renderer_Data*, const KT_Rendition& rendition, int count, const KT_DCI_Point* points) {
        received = {{points, points + count}, rendition};
      });
  KT_Rendition rendition = KD_Default_Rendition({0, 99, 0, 49});
  rendition.set_advanced_options({KT_Advanced_Options::edge_bit | KT_Advanced_Options::alpha_bit},
                                 false);
  const std::uint32_t id = rendition->id;

  KD_Span_DC_Rectangle(renderer.get(), rendition, -5, 20, 10, 60);
  const KT_Rendition_Data& given = *received.rendition;
  EXPECT_EQ(given.display_context->hard_clip, (KT_Int_Rectangle{0, 20, 10, 49}));
  EXPECT_EQ(given.display_context->depth_enabled, 0);
  EXPECT_EQ(given.misc_attributes->advanced_options.bits, KT_Advanced_Options::alpha_bit);
  ASSERT_EQ(received.points.size(), 4U);
  EXPECT_EQ(received.points[0], (KT_DCI_Point{0, 10, 0}));
  EXPECT_EQ(received.points[3], (KT_DCI_Point{21, 50, 0}));
  EXPECT_EQ(rendition->id, id);
  EXPECT_EQ(rendition->display_context->depth_enabled, 1);

  received = {};
  KD_Span_DC_Rectangle(renderer.get(), rendition, 100, 120, 10, 20);
  EXPECT_TRUE(received.points.empty());
}

// A renderer that has nothing but the general routines: each comes to an end and is reported.
TEST(Standard_Routines, CountAndNameWhatNoActionDraws) {
  const Renderer renderer(new Plain_Renderer(nullptr));
  renderer->set_standard_actions(true);
  KT_Rendition rendition = KD_Default_Rendition({0, 99, 0, 99});
  KT_Rendition wide = rendition;
  wide.edit(&KT_Rendition_Data::line_attributes).line_weight = 3;
  const KT_DCI_Point points[3] = {{1, 1, 0}, {20, 1, 0}, {9, 30, 0}};
  const KT_RGB32 colors[3] = {};
  KD_Reset_Undrawn_Count();
  testing::internal::CaptureStderr();
  for (int n = 0; n < 2; ++n) {
    KD_Standard_Draw_2DI_Polyline(renderer.get(), rendition, 2, points);
    KD_Standard_Draw_2DI_Polyline(renderer.get(), wide, 2, points);
    KD_Standard_Draw_DCI_Polygon(renderer.get(), rendition, 3, points, nullptr);
    KD_Standard_Draw_DCI_Gouraud_Polytriangle(renderer.get(), rendition, 3, points, colors);
    KD_Standard_Draw_2DI_Polymarker(renderer.get(), rendition, 1, points);
    KD_Standard_Draw_DCI_RGB32_Image(renderer.get(), rendition, points, points, 4, colors, 0,
                                     nullptr);
    KD_Standard_Draw_2DI_Textured_Polytriangle(renderer.get(), rendition, 3, points, colors,
                                               nullptr, 0, nullptr, nullptr);
  }
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(KD_Undrawn_Count(), 14U);
  // Each routine is named once.
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 6) << said;
  for (const char* name : {"KD_Standard_Draw_2DI_Polyline ", "KD_Standard_Draw_2D_Polytriangle ",
                           "KD_Standard_Draw_DCI_RGB32_Image "}) {
    EXPECT_NE(said.find(name), std::string::npos) << said;
  }
  KD_Reset_Undrawn_Count();
  EXPECT_EQ(KD_Undrawn_Count(), 0U);
}

}  // namespace
