// Strings, option values and options.
#include "host/option.h"

#include <cstring>
#include <cwchar>

KT_String::KT_String(const wchar_t* text) {
  const std::size_t size = std::wcslen(text) + 1;
  text_ = new wchar_t[size];
  std::wmemcpy(text_, text, size);
}

KT_String::KT_String(const KT_String& source) : KT_String(source.text_) {}

KT_String::~KT_String() {
  delete[] text_;
}

bool KT_String::equals(const KT_String& other) const {
  return std::wcscmp(text_, other.text_) == 0;
}

KT_Option_Value_Data::KT_Option_Value_Data() : data(storage_) {}

// The copy's `data` must not go on pointing into the source.
KT_Option_Value_Data::KT_Option_Value_Data(const KT_Option_Value_Data& source)
    : KT_Counted(source), data(storage_), held_(source.held_) {
  std::memcpy(storage_, source.storage_, sizeof storage_);
}

KT_Option_Value_Data::~KT_Option_Value_Data() = default;

KT_Option_Value_Data* KT_Option_Value_Data::clone() const {
  return new KT_Option_Value_Data(*this);
}

KT_Option_Value::KT_Option_Value(bool value) : KT_Handle(new KT_Option_Value_Data) {
  *static_cast<std::uint8_t*>(get()->data) = value ? 1 : 0;
}

KT_Option_Value::KT_Option_Value(std::int32_t value) : KT_Handle(new KT_Option_Value_Data) {
  *static_cast<std::int32_t*>(get()->data) = value;
}

KT_Option_Value::KT_Option_Value(std::int32_t first, std::int32_t second, std::int32_t third)
    : KT_Handle(new KT_Option_Value_Data) {
  auto* const words = static_cast<std::int32_t*>(get()->data);
  words[0] = first;
  words[1] = second;
  words[2] = third;
}

KT_Option_Value::KT_Option_Value(const void* value) : KT_Handle(new KT_Option_Value_Data) {
  get()->pointer() = const_cast<void*>(value);
}

KT_Option_Value::KT_Option_Value(const KT_Counted* value) : KT_Handle(new KT_Option_Value_Data) {
  auto* const held = const_cast<KT_Counted*>(value);
  get()->pointer() = held;
  get()->held_.reset(held);
}

KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope, bool its_value)
    : name(its_name), scope(its_scope), value(its_value), carried_id(value->id) {}

KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope,
                     std::int32_t its_value)
    : name(its_name), scope(its_scope), value(its_value), carried_id(value->id) {}

KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope, std::int32_t first,
                     std::int32_t second, std::int32_t third)
    : name(its_name), scope(its_scope), value(first, second, third), carried_id(value->id) {}

KT_Option::KT_Option(const KT_String& its_name, KT_Option_Enum::Scope its_scope,
                     const void* its_value)
    : name(its_name), scope(its_scope), value(its_value), carried_id(value->id) {}

void KT_Option::set(const KT_Option_Value& its_value) {
  value = its_value;
  changed = true;
}
