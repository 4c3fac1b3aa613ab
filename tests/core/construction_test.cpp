// Making a renderer: its options, and that a failure halfway leaves nothing behind.
#include <gtest/gtest.h>

#include <map>

#include "tests/support/session.h"

namespace {

using namespace support;

class Construction : public testing::Test {
 protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(module.load(TEST_MODULE, error)) << error;
  }
  KT_Renderer_Module module;
};

TEST_F(Construction, OptionsHaveTheirDefaultsInBothTables) {
  const auto renderer = module.make_renderer(nullptr);
  for (const KT_Option_Table* table :
       {&renderer->renderer_option_table, &renderer->current_option_table}) {
    const auto value = [&](const wchar_t* name) -> const KT_Option_Value_Data& {
      return *table->find(name)->value;
    };
    EXPECT_TRUE(value(L"Try MMX").as_bool());
    EXPECT_EQ(value(L"Max Active Lights").as_int(), INT32_MAX);
    EXPECT_EQ(value(L"Merge Control Background Color").as_ints()[2], 255);
    EXPECT_EQ(value(L"Mask Cache").pointer(), nullptr);
    EXPECT_EQ(table->find(L"Mask Cache")->scope, KT_Option_Enum::shared);
    // The setters are installed in the current table alone.
    const bool current = table == &renderer->current_option_table;
    EXPECT_EQ(value(L"ZBuffer Test").pointer() != nullptr, current);
    EXPECT_EQ(value(L"ZBuffer Write").pointer() != nullptr, current);
  }
  const KT_Renderer_Options& declared = renderer->declared_options;
  EXPECT_EQ(declared.buffer_depth(), 16);
  EXPECT_TRUE(declared.backing_store() && declared.supports_complex_clip());
  EXPECT_EQ(renderer->clone(), nullptr);
}

// The general routines that a renderer leaves bound, and no other.
TEST_F(Construction, BindsGeneralRoutinesToTexturesAndMarkersAlone) {
  const auto renderer = module.make_renderer(nullptr);
  std::map<KT_Action, void (*)()> bound;
#define IS_BOUND(name, signature) \
  bound[KT_Action::name] = reinterpret_cast<void (*)()>(&KD_Standard_##name);
  KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(IS_BOUND)
  IS_BOUND(Draw_2DI_Polymarker, )
  for (int i = 0; i < static_cast<int>(KT_Action::Create_Frame_Buffer); ++i) {
    const KT_Action_Record& record = renderer->actions.records[i];
    const auto general = bound.find(static_cast<KT_Action>(i));
    ASSERT_EQ(record.valid, general != bound.end()) << "action " << i;
    EXPECT_TRUE(!record.valid || record.function == general->second) << "action " << i;
  }
}

TEST_F(Construction, DeclaresWhatItOffersAndBindsNothingItself) {
  const auto renderer = module.make_renderer(nullptr);
  const KT_Renderer_Options& declared = renderer->declared_options;
  EXPECT_EQ(declared.buffer_depth(), 16);
  EXPECT_TRUE(declared.backing_store() && declared.supports_complex_clip());
  EXPECT_EQ(renderer->clone(), nullptr);
  EXPECT_EQ(renderer->actions[KT_Action::Draw_2D_Polytriangle].valid, 0U);
  EXPECT_EQ(renderer->actions[KT_Action::Draw_2D_Textured_Polytriangle].valid, 1U);
}

TEST_F(Construction, ARefusedAllocationGivesNullAndLeavesNothing) {
  const auto source = module.make_renderer(nullptr);
  const KT_Option& shared = *source->option_table().find(L"Mask Cache");
  for (const heap::Refusal how : {heap::Refusal::by_null, heap::Refusal::by_exception}) {
    const long before = heap::live();
    int granted = 0;
    for (bool made = false; !made; ++granted) {
      KT_Handle<KT_Renderer_Data> renderer;
      {
        const heap::Exhausted none_left(granted, how);
        renderer = module.make_renderer(source.get());
      }
      made = static_cast<bool>(renderer);
      renderer.release();
      ASSERT_EQ(heap::live(), before) << "with " << granted << " allocations granted";
      ASSERT_EQ(shared.value->reference_count, 1U);
    }
    EXPECT_GT(granted, 40);  // two tables of options at the least
  }
}

TEST(Options, RenderersBuiltFromOneAnotherShareTheMaskCache) {
  Session first({.use_mask = true});
  Session second({.use_mask = true, .source = &first.renderer()});
  const Software_Z_Buffer& one = first.renderer();
  ASSERT_TRUE(one.mask_cache);
  EXPECT_EQ(one.mask_cache, second.renderer().mask_cache);
  EXPECT_EQ(&first.option(L"Mask Cache"), &second.option(L"Mask Cache"));

  first.display().complex_clip = contour({{0, 0, 0}, {9, 0, 0}, {0, 7, 0}});
  draw(first, Layer::int_any, Kind::flat, strip_of({{0, 0, 0}, {9, 0, 0}, {0, 7, 0}}));
  EXPECT_EQ(second.renderer().mask_cache->count, 1);
  second.establish();  // empties the cache of both
  EXPECT_EQ(one.mask_cache->count, 0);
  EXPECT_EQ(one.mask_cache->head, nullptr);

  // Without the mask a renderer lets go of the cache; the shared option holds it for others.
  second.option(L"Use Mask").set(KT_Option_Value(false));
  second.establish();
  EXPECT_FALSE(second.renderer().mask_cache);
  EXPECT_EQ(second.option(L"Mask Cache").value->pointer(), one.mask_cache.get());
}

}  // namespace
