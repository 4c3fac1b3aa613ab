// The keys of the viewer: one table for what they do and for the help that lists them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "apps/commands/options.h"

namespace kv {

// Requests of a key to the viewer. Most keys only change the options of the picture.
enum class Key_Task { change, reset, spin, help, readout, screenshot, reload, quit };

struct Key {
  std::string_view name;   // without regard to case
  std::string_view words;  // what it does, for the help; empty: part of the row before
  Key_Task task = Key_Task::change;
  void (*change)(Options&) = nullptr;
};

std::span<const Key> all_keys();

// Null when the key has no meaning.
const Key* find_key(std::string_view name);

// The options as kvdraw would accept them: without what the variant does not draw.
Options drawable(const Options& options);

}  // namespace kv
