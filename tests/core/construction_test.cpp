// Making a renderer: its options, and that a failure halfway leaves nothing behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/session.h"

namespace {

using namespace support;

enum Option_Kind { boolean, integer, triple, pointer };
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
KT_Option::KT_Option(const KT_String& n, KT_Option_Enum::Scope s, bool v)
    : name(n), scope(s), value(v) {
  note(*this, boolean);
}
KT_Option::KT_Option(const KT_String& n, KT_Option_Enum::Scope s, std::int32_t v)
    : name(n), scope(s), value(v) {
  note(*this, integer);
}
KT_Option::KT_Option(const KT_String& n, KT_Option_Enum::Scope s, std::int32_t a, std::int32_t b,
                     std::int32_t c)
    : name(n), scope(s), value(a, b, c) {
  note(*this, triple);
}
KT_Option::KT_Option(const KT_String& n, KT_Option_Enum::Scope s, const void* v)
    : name(n), scope(s), value(v) {
  note(*this, pointer);
}

namespace {

struct Row {
  const wchar_t* name;
  Option_Kind kind;
  int value = 0;
  int scope = 0;
};
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

bool has_default(const KT_Option_Table& table, const Row& row) {
  const KT_Option_Value_Data& value = *table.find(row.name)->value;
  if (row.kind == boolean) return value.as_bool() == (row.value != 0);
  if (row.kind == integer) return value.as_int() == row.value;
  if (row.kind == pointer) return value.pointer() == nullptr;
  return std::count(value.as_ints(), value.as_ints() + 3, row.value) == 3;
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
    EXPECT_TRUE(has_default(renderer->renderer_option_table, row)) << row.name;
    // The setters are installed in this table alone.
    const bool setter = std::wstring(row.name).starts_with(L"ZBuffer");
    EXPECT_EQ(has_default(renderer->current_option_table, row), !setter) << row.name;
  }
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
