// Words for options: the values of the table of options, where they are not the usual
// ones.
#include "apps/commands/command_words.h"

#include <map>

#include "apps/commands/option_table.h"

namespace kv {
namespace {

struct Told {
  std::string value;
  bool is_flag;
};

// The values of all options of a picture, by the options' names.
std::map<std::string, Told> told_by(Options options) {
  CLI::App app;
  add_picture_options(app, options);
  std::map<std::string, Told> told;
  for (const CLI::Option* option : app.get_options())
    told[option->get_name()] = {option->get_default_str(), option->get_expected_max() == 0};
  return told;
}

}  // namespace

std::vector<std::string> command_words(const Options& options) {
  static const std::map<std::string, Told> usual = told_by({});
  std::vector<std::string> words;
  for (const auto& [name, told] : told_by(options)) {
    if (name != "--size" && told.value == usual.at(name).value) continue;
    words.push_back(name);
    if (!told.is_flag) words.push_back(told.value);
  }
  return words;
}

std::string shell_line(const std::vector<std::string>& words) {
  constexpr auto plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_=+,./:@%";
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
      line += word;
      continue;
    }
    line += '\'';
    for (const char c : word) line += c == '\'' ? std::string("'\\''") : std::string(1, c);
    line += '\'';
  }
  return line;
}

}  // namespace kv
