// The options as a table: name, kind and value of each, and the slot of those that the renderer
// reads again. The order of the rows is the order of creation.
#include "module/core/options.h"

namespace zbuffer {
namespace {

using Slot = Software_Z_Buffer::Option_Slot;

enum class Kind { boolean, integer, triple, pointer };

struct Row {
  const wchar_t* name;
  Kind kind;
  std::int32_t value;                   // of a triple: each of the three
  Slot slot = Slot::option_slot_count;  // none: the option is only advertised
};

// In the order of creation. "Mask Cache" comes after the others that have a slot and is the one
// shared option: when the table already has it from another renderer, that one serves.
constexpr Row rows[] = {
    {L"Margin", Kind::integer, 0, Slot::margin},
    {L"Color Buffer", Kind::pointer, 0, Slot::color_buffer},
    {L"Depth Buffer", Kind::pointer, 0, Slot::depth_buffer},
    {L"Try MMX", Kind::boolean, 1, Slot::try_mmx},
    {L"Use Mask", Kind::boolean, 0, Slot::use_mask},
    {L"Clip Phase", Kind::boolean, 0, Slot::clip_phase},
    {L"Enable Tiling", Kind::boolean, 0, Slot::enable_tiling},
    {L"Merge Control Background Color", Kind::triple, 255, Slot::merge_control_background_color},
    {L"Force Merge Control On", Kind::boolean, 0, Slot::force_merge_control_on},
    {L"ZBuffer Write", Kind::pointer, 0, Slot::zbuffer_write_option},
    {L"ZBuffer Test", Kind::pointer, 0, Slot::zbuffer_test_option},
    {L"Mask Cache", Kind::pointer, 0, Slot::mask_cache_option},
    {L"Supports Advanced Draftmark Rendering", Kind::boolean, 1},
    {L"Supports Antialiased Lines", Kind::boolean, 0},
    {L"Supports Gooch Shader", Kind::boolean, 0},
    {L"Supports Shadow Mapping Shader", Kind::boolean, 0},
    {L"Shadow Mapping Quality", Kind::integer, 0},
    {L"Max Active Lights", Kind::integer, 2147483647},
    {L"No PVN Image Support", Kind::boolean, 1},
};

KT_Option option_of(const Row& row, const KT_String& name, KT_Option_Enum::Scope scope) {
  switch (row.kind) {
    case Kind::boolean:
      return KT_Option(name, scope, row.value != 0);
    case Kind::integer:
      return KT_Option(name, scope, row.value);
    case Kind::triple:
      return KT_Option(name, scope, row.value, row.value, row.value);
    case Kind::pointer:
      break;
  }
  return KT_Option(name, scope, static_cast<const void*>(nullptr));
}

KT_Option* make_option(KT_Option_Table& table, const Row& row) {
  const KT_String name(row.name);
  if (row.slot != Slot::mask_cache_option) {
    return table.add(option_of(row, name, KT_Option_Enum::local));
  }
  KT_Option* shared = table.find(name);
  return shared ? shared : table.add(option_of(row, name, KT_Option_Enum::shared));
}

template <class Setter>
void install(KT_Option_Table& table, const wchar_t* name, Setter* setter) {
  KT_Option* option = table.find(KT_String(name));
  option->value.writable().pointer() = reinterpret_cast<void*>(setter);
}

}  // namespace

Software_Z_Buffer::Option_Set make_options(KT_Option_Table& table) {
  Software_Z_Buffer::Option_Set set{};
  for (const Row& row : rows) {
    KT_Option* option = make_option(table, row);
    if (row.slot != Slot::option_slot_count) set[row.slot] = option;
  }
  return set;
}

void install_depth_setters(KT_Option_Table& table) {
  install(table, L"ZBuffer Write", &set_zbuffer_write);
  install(table, L"ZBuffer Test", &set_zbuffer_test);
}

void set_zbuffer_write(KT_Renderer_Data* renderer, std::uint8_t write) {
  renderer_of(renderer).zbuffer_write = write;
}

void set_zbuffer_test(KT_Renderer_Data* renderer, const unsigned* mode) {
  renderer_of(renderer).zbuffer_test = static_cast<std::int32_t>(*mode);
}

}  // namespace zbuffer
