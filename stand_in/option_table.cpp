// Tables of options, which may have options in common.
#include <memory>
#include <utility>
#include <vector>

#include "host/option.h"

/// Options are owned in common by the tables that hold them. A table is small and is read only
/// when a renderer is configured, so that it is searched from end to end.
struct KT_Option_Table::Body {
  std::vector<std::shared_ptr<KT_Option>> options;
  // Options that others took the place of: pointers to them stay good.
  std::vector<std::shared_ptr<KT_Option>> replaced;

  std::shared_ptr<KT_Option>* entry(const KT_String& name) {
    for (auto& option : options) {
      if (option->name.equals(name)) return &option;
    }
    return nullptr;
  }

  void enter(std::shared_ptr<KT_Option> option) {
    std::shared_ptr<KT_Option>* const present = entry(option->name);
    if (present == nullptr) {
      options.push_back(std::move(option));
    } else if (*present != option) {
      replaced.push_back(*present);
      *present = std::move(option);
    }
  }
};

KT_Option_Table::KT_Option_Table() : body_(new Body) {}

KT_Option_Table::~KT_Option_Table() {
  delete body_;
}

KT_Option* KT_Option_Table::add(const KT_Option& option) {
  auto added = std::make_shared<KT_Option>(option);
  KT_Option* const result = added.get();
  body_->enter(std::move(added));
  return result;
}

KT_Option* KT_Option_Table::find(const KT_String& name) const {
  std::shared_ptr<KT_Option>* const entry = body_->entry(name);
  return entry != nullptr ? entry->get() : nullptr;
}

void KT_Option_Table::share_from(const KT_Option_Table& source) {
  for (const auto& option : source.body_->options) {
    if (option->scope == KT_Option_Enum::shared) body_->enter(option);
  }
}

void KT_Option_Table::carry_changes_to(KT_Option_Table& target) {
  for (const auto& option : body_->options) {
    if (!option->changed && option->value->id == option->carried_id) continue;
    KT_Option* const counterpart = target.find(option->name);
    // A change without a counterpart waits until there is one.
    if (counterpart == nullptr) continue;
    counterpart->value = option->value;
    option->changed = false;
    option->carried_id = option->value->id;
  }
}
