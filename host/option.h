// Named options: how a host application and a renderer talk about settings.
#pragma once

#include "host/counted.h"

/// A wide string with the framework's life time rules.
class KORVEL_EXPORT KT_String {
 public:
  KT_String(const wchar_t* text);
  KT_String(const KT_String&);
  KT_String& operator=(const KT_String&) = delete;
  ~KT_String();

  const wchar_t* text() const { return text_; }
  bool equals(const KT_String& other) const;

 private:
  wchar_t* text_;
};

/// Value record of an option. `data` points to its storage: a byte for a bool, an int, three
/// ints for a triple, a word for a pointer.
class KORVEL_EXPORT KT_Option_Value_Data : public KT_Counted {
 public:
  void* data = nullptr;

  KT_Option_Value_Data();
  KT_Option_Value_Data(const KT_Option_Value_Data&);
  ~KT_Option_Value_Data() override;
  KT_Option_Value_Data* clone() const override;

  /// The value as one of the four kinds; the caller has to know which.
  bool as_bool() const { return *static_cast<const std::uint8_t*>(data) != 0; }
  std::int32_t as_int() const { return *static_cast<const std::int32_t*>(data); }
  const std::int32_t* as_ints() const { return static_cast<const std::int32_t*>(data); }
  void*& pointer() const { return *static_cast<void**>(data); }

 private:
  friend class KT_Option_Value;
  alignas(8) std::byte storage_[16] = {};
  KT_Handle<KT_Counted> held_;  // keeps the counted object alive that `data` points to
};

class KORVEL_EXPORT KT_Option_Value : public KT_Handle<KT_Option_Value_Data> {
 public:
  explicit KT_Option_Value(bool value);
  explicit KT_Option_Value(std::int32_t value);
  KT_Option_Value(std::int32_t first, std::int32_t second, std::int32_t third);
  /// A plain pointer; what it points to is not owned.
  explicit KT_Option_Value(const void* value);
  explicit KT_Option_Value(std::nullptr_t) : KT_Option_Value(static_cast<const void*>(nullptr)) {}
  /// A pointer to a counted object (may be null); the value holds a reference on it.
  explicit KT_Option_Value(const KT_Counted* value);
};

struct KT_Option_Enum {
  enum Scope : std::int32_t {
    local = 0,  ///< each renderer has its own
    shared = 1  ///< a renderer built from another shares the option with it
  };
};

class KORVEL_EXPORT KT_Option {
 public:
  KT_String name;
  KT_Option_Enum::Scope scope;
  KT_Option_Value value;
  /// Set by `set`, cleared when `update_current_options` has carried the value over.
  bool changed = false;
  /// Id of the value's record when it was last carried over; `writable()` gives it another.
  std::uint32_t carried_id;

  KT_Option(const KT_String& name, KT_Option_Enum::Scope scope, bool value);
  KT_Option(const KT_String& name, KT_Option_Enum::Scope scope, std::int32_t value);
  KT_Option(const KT_String& name, KT_Option_Enum::Scope scope, std::int32_t first,
            std::int32_t second, std::int32_t third);
  KT_Option(const KT_String& name, KT_Option_Enum::Scope scope, const void* value);

  /// Replaces the value by a further reference on `value`'s record.
  void set(const KT_Option_Value& value);
};

class KORVEL_EXPORT KT_Option_Table {
 public:
  KT_Option_Table();
  KT_Option_Table(const KT_Option_Table&) = delete;
  KT_Option_Table& operator=(const KT_Option_Table&) = delete;
  ~KT_Option_Table();

  /// Adds a copy of `option`, in place of one of the same name; the table owns it, and the
  /// pointer stays good as long as the table.
  KT_Option* add(const KT_Option& option);
  /// The option of that name, or null.
  KT_Option* find(const KT_String& name) const;

  /// Enters the shared options of `source` here, the same objects.
  void share_from(const KT_Option_Table& source);
  /// Carries the options changed here since the last time over to those of the same name.
  void carry_changes_to(KT_Option_Table& target);

 private:
  struct Body;
  Body* body_;
};
