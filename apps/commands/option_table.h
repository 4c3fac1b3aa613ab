// The options that say what a picture shows: one table for parsing, for the help and for the way
// back from options to words.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <string>

#include "apps/commands/option_words.h"
#include "apps/commands/options.h"

namespace kv {

// The shortest text without an exponent that is read as the same number.
std::string text_of(double value);

// Adds options to one group of the help. The default text of an option is that of the value it
// would set, as it is when the option is added.
class Option_Group {
 public:
  explicit Option_Group(CLI::App& app, std::string name = "Options")
      : app_(app), name_(std::move(name)) {}

  // From `low` to `high`. `Number` may be an optional one.
  template <class Number, class Limit>
  CLI::Option* number(const std::string& name, Number& target, Limit low, Limit high,
                      const std::string& type, const std::string& help) {
    const auto text = [&target] { return number_text(target); };
    const std::string range = text_of(double(low)) + ".." + text_of(double(high));
    return described(app_.add_option(name, target, help), text)
        ->check(is_number)
        ->check(CLI::Range(low, high, range))
        ->type_name(type);
  }

  template <class Value>
  CLI::Option* choice(const std::string& name, Value& target,
                      const std::map<std::string, Value>& words, const std::string& help) {
    const auto take = [&](const std::string& word) { target = words.at(word); };
    const auto text = [&] { return words::word_for(words, target); };
    std::string list;
    for (const auto& [word, value] : words) list += (list.empty() ? "" : "|") + word;
    return described(app_.add_option_function<std::string>(name, take, help), text)
        ->check(CLI::IsMember(words).description({}))
        ->type_name(list);
  }

  // `take` throws std::invalid_argument with words for the user.
  CLI::Option* parsed(const std::string& name, const std::function<void(const std::string&)>& take,
                      const std::function<std::string()>& text, const std::string& type,
                      const std::string& help) {
    return described(app_.add_option_function<std::string>(name, take, help), text)
        ->type_name(type);
  }

  // Sets `target` to `value`.
  CLI::Option* flag(const std::string& name, bool& target, const std::string& help,
                    bool value = true) {
    const auto text = [&target, value] { return target == value ? "set" : ""; };
    return described(app_.add_flag_callback(
                         name, [&target, value] { target = value; }, help),
                     text);
  }

 private:
  static const CLI::Validator is_number;

  template <class Number>
  static std::string number_text(const Number& value) {
    return text_of(static_cast<double>(value));
  }
  template <class Number>
  static std::string number_text(const std::optional<Number>& value) {
    return value ? number_text(*value) : std::string();
  }
  CLI::Option* described(CLI::Option* option, const std::function<std::string()>& text) const {
    return option->default_function(text)->capture_default_str()->group(name_);
  }

  CLI::App& app_;
  std::string name_;
};

// All but the names of files and of the module, the limits of loading and the tiles.
void add_picture_options(CLI::App& app, Options& options);

}  // namespace kv
