// Making a renderer: its options, and that a failure halfway leaves nothing behind.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

enum class Option_Kind { boolean, integer, triple, pointer };
struct Made {
  std::wstring name;
  Option_Kind kind;
  int scope;
  bool operator==(const Made&) const = default;
};
std::vector<Made>* made_options = nullptr;

void note(const KT_Option& option, Option_Kind kind) {
  if (made_options) made_options->push_back({option.name.text(), kind, option.scope});
}

}  // namespace

// These stand in front of the framework's, to learn the kind that an option is made with.
KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope, bool its_value)
    : name(its_name), scope(its_scope), value(its_value) {
  note(*this, Option_Kind::boolean);
}
KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope,
                     std::int32_t its_value)
    : name(its_name), scope(its_scope), value(its_value) {
  note(*this, Option_Kind::integer);
}
KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope, std::int32_t first,
                     std::int32_t second, std::int32_t third)
    : name(its_name), scope(its_scope), value(first, second, third) {
  note(*this, Option_Kind::triple);
}
KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope,
                     const void* its_value)
    : name(its_name), scope(its_scope), value(its_value) {
  note(*this, Option_Kind::pointer);
}

namespace {

struct Row {
  const wchar_t* name;
  Option_Kind kind;
  int value = 0;
  int scope = 0;
};

using enum Option_Kind;
constexpr Row rows[] = {
    {L"Margin", integer},
    {L"Color Buffer", pointer},
    {L"Depth Buffer", pointer},
    {L"Try MMX", boolean, 1},
    {L"Use Mask", boolean},
    {L"Clip Phase", boolean},
    {L"Enable Tiling", boolean},
    {L"Merge Control Background Color", triple, 255},
    {L"Force Merge Control On", boolean},
    {L"ZBuffer Write", pointer},
    {L"ZBuffer Test", pointer},
    {L"Mask Cache", pointer, 0, 1},
    {L"Supports Advanced Draftmark Rendering", boolean, 1},
    {L"Supports Antialiased Lines", boolean},
    {L"Supports Gooch Shader", boolean},
    {L"Supports Shadow Mapping Shader", boolean},
    {L"Shadow Mapping Quality", integer},
    {L"Max Active Lights", integer, 2147483647},
    {L"No PVN Image Support", boolean, 1},
};
static_assert(std::size(rows) == 19);

class Construction : public testing::Test {
 protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(module.load(TEST_MODULE, error)) << error;
  }
  KT_Renderer_Module module;
};

void expect_default(const KT_Option_Table& table, const Row& row) {
  const KT_Option* option = table.find(KT_String(row.name));
  ASSERT_NE(option, nullptr);
  EXPECT_EQ(option->scope, row.scope);
  const KT_Option_Value_Data& value = *option->value;
  if (row.kind == boolean) {
    EXPECT_EQ(value.as_bool(), row.value != 0);
  }
  if (row.kind == integer) {
    EXPECT_EQ(value.as_int(), row.value);
  }
  if (row.kind == pointer) {
    EXPECT_EQ(value.pointer(), nullptr);
  }
  for (int i = 0; row.kind == triple && i < 3; ++i) {
    EXPECT_EQ(value.as_ints()[i], row.value);
  }
}

TEST_F(Construction, MakesNineteenOptionsInTwoTables) {
  std::vector<Made> made, expected;
  for (int table = 0; table < 2; ++table) {
    for (const Row& row : rows) expected.push_back({row.name, row.kind, row.scope});
  }
  made_options = &made;
  const auto renderer = module.make_renderer(nullptr);
  EXPECT_EQ(made, expected);

  // A renderer built from another finds the shared option and makes no other.
  std::erase_if(expected, [](const Made& option) { return option.scope == 1; });
  made.clear();
  const auto second = module.make_renderer(renderer.get());
  made_options = nullptr;
  EXPECT_EQ(made, expected);

  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.name, row.name + std::wcslen(row.name)));
    expect_default(renderer->renderer_option_table, row);
    // The setters are installed in this table alone.
    const bool setter = std::wstring(row.name).starts_with(L"ZBuffer");
    if (!setter) expect_default(renderer->current_option_table, row);
    const KT_Option* current = renderer->option_table().find(KT_String(row.name));
    if (setter) {
      EXPECT_NE(current->value->pointer(), nullptr);
    }
  }
}

TEST_F(Construction, StartsFromTheStatedState) {
  const auto handle = module.make_renderer(nullptr);
  const auto& renderer = static_cast<const Software_Z_Buffer&>(*handle);
  EXPECT_EQ(renderer.declared_options.buffer_depth(), 16);
  EXPECT_TRUE(renderer.declared_options.backing_store());
  EXPECT_TRUE(renderer.declared_options.supports_complex_clip());
  EXPECT_FALSE(renderer.color_image || renderer.depth_image || renderer.mask_cache);
  EXPECT_EQ(renderer.zbuffer_write, 1);
  EXPECT_EQ(renderer.zbuffer_test, 2);
  EXPECT_EQ(renderer.merge_background_index, 255);
  EXPECT_EQ(renderer.merge_background_color, (KT_RGB32{0, 0, 0, 253}));
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{1, 0, 0, 253}));
  EXPECT_EQ(handle->clone(), nullptr);
  const wchar_t* const order[] = {L"Margin",
                                  L"Color Buffer",
                                  L"Depth Buffer",
                                  L"Mask Cache",
                                  L"Try MMX",
                                  L"Use Mask",
                                  L"Clip Phase",
                                  L"Enable Tiling",
                                  L"Merge Control Background Color",
                                  L"Force Merge Control On",
                                  L"ZBuffer Write",
                                  L"ZBuffer Test"};
  for (std::size_t i = 0; i < std::size(order); ++i) {
    EXPECT_EQ(renderer.renderer_options[i], renderer.renderer_option_table.find(order[i]));
    EXPECT_EQ(renderer.current_option_set[i], renderer.current_option_table.find(order[i]));
  }
}

TEST_F(Construction, ARefusedAllocationGivesNullAndLeavesNothing) {
  const auto source = module.make_renderer(nullptr);
  const KT_Option& shared = *source->option_table().find(L"Mask Cache");
  for (const heap::Refusal how : {heap::Refusal::by_null, heap::Refusal::by_exception}) {
    int granted = 0;
    for (bool made = false; !made; ++granted) {
      const heap::Blocks before = heap::live();
      {
        KT_Handle<KT_Renderer_Data> renderer;
        {
          const heap::Exhausted none_left(granted, how);
          renderer = module.make_renderer(source.get());
        }
        made = static_cast<bool>(renderer);
      }
      ASSERT_EQ(heap::live(), before) << "with " << granted << " allocations granted";
      ASSERT_EQ(shared.value->reference_count, 1U);
    }
    EXPECT_GT(granted, 40);  // two tables of options at the least
  }
}

TEST(Options, SettersActWithoutAnotherEstablish) {
  Session session({.variant = Variant::rgb_z});
  const Strip strip = strip_of({{0, 0, 9}, {9, 0, 9}, {0, 7, 9}});
  session.set_depth_test(5);
  EXPECT_EQ(session.renderer().zbuffer_test, 5);
  draw(session, Layer::int_inside, Kind::flat, strip);
  EXPECT_FALSE(session.color->touched(1, 1));
  session.set_depth_test(2);
  session.set_depth_write(0);
  draw(session, Layer::int_inside, Kind::flat, strip);
  EXPECT_TRUE(session.color->touched(1, 1));
  EXPECT_FALSE(session.depth->touched(1, 1));
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
