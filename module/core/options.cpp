// The options as a table: name, kind and value of each, and the slot of those that the renderer
// reads again. The order of the rows is the order of creation.
#include "module/core/options.h"

#include <type_traits>

namespace zbuffer {
namespace {

using Slot = Software_Z_Buffer::Option_Slot;
using Name = KT_Z_Buffer_Option;

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
    {Name::margin, Kind::integer, 0, Slot::margin},
    {Name::color_buffer, Kind::pointer, 0, Slot::color_buffer},
    {Name::depth_buffer, Kind::pointer, 0, Slot::depth_buffer},
    {Name::try_mmx, Kind::boolean, 1, Slot::try_mmx},
    {Name::use_mask, Kind::boolean, 0, Slot::use_mask},
    {Name::clip_phase, Kind::boolean, 0, Slot::clip_phase},
    {Name::enable_tiling, Kind::boolean, 0, Slot::enable_tiling},
    {Name::merge_background, Kind::triple, 255, Slot::merge_control_background_color},
    {Name::force_merge, Kind::boolean, 0, Slot::force_merge_control_on},
    {Name::zbuffer_write, Kind::pointer, 0, Slot::zbuffer_write_option},
    {Name::zbuffer_test, Kind::pointer, 0, Slot::zbuffer_test_option},
    {Name::mask_cache, Kind::pointer, 0, Slot::mask_cache_option},
    {Name::draftmark, Kind::boolean, 1},
    {Name::antialiased_lines, Kind::boolean, 0},
    {Name::gooch_shader, Kind::boolean, 0},
    {Name::shadow_shader, Kind::boolean, 0},
    {Name::shadow_quality, Kind::integer, 0},
    {Name::max_active_lights, Kind::integer, 2147483647},
    {Name::no_pvn_images, Kind::boolean, 1},
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
void install(KT_Option_Table& table, const wchar_t* name, std::type_identity_t<Setter>* setter) {
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
  install<KT_Set_Z_Buffer_Write>(table, Name::zbuffer_write, &set_zbuffer_write);
  install<KT_Set_Z_Buffer_Test>(table, Name::zbuffer_test, &set_zbuffer_test);
}

void set_zbuffer_write(KT_Renderer_Data* renderer, std::uint8_t write) {
  renderer_of(renderer).zbuffer_write = write;
}

void set_zbuffer_test(KT_Renderer_Data* renderer, const unsigned* mode) {
  renderer_of(renderer).zbuffer_test = static_cast<std::int32_t>(*mode);
}

}  // namespace zbuffer
