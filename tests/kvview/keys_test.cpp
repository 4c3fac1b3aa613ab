// Keys change options, and the options become a command line that kvdraw understands.
#include "apps/view/keys.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "apps/commands/command_words.h"
#include "apps/commands/options.h"

namespace {

using namespace kv;

std::vector<std::string> read_back(const Options& options) {
  std::vector<std::string> words = command_words(options);
  words.insert(words.begin(), {"kvdraw", "model.obj", "-o", "out.png"});
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  const auto parsed = parse_options(static_cast<int>(arguments.size()), arguments.data(), "module");
  return command_words(parsed.value());
}

TEST(Keys, have_one_meaning_each_and_change_the_picture) {
  Options options;
  options.drawing.opacity = 0.5;  // so that no value is at its end
  options.drawing.lines.width = 3;
  std::set<std::string_view> names;
  std::set<std::vector<std::string>> pictures = {command_words(options)};
  for (const Key& key : all_keys()) {
    EXPECT_TRUE(names.insert(key.name).second) << key.name;
    EXPECT_EQ(find_key(key.name), &key);
    if (key.task != Key_Task::change || key.name == "=") continue;
    Options changed = options;
    if (key.name == "1") changed.drawing.style = Style::flat;
    if (key.name == "F2") changed.variant = Variant::rgb;
    key.change(changed);
    const bool back = key.name == "1" || key.name == "F2";
    EXPECT_EQ(pictures.insert(command_words(changed)).second, !back) << key.name;
  }
  EXPECT_EQ(find_key("f3"), find_key("F3"));
  EXPECT_EQ(find_key("F"), nullptr);
}

// Whatever the user did: kvdraw takes the words and understands them the same way.
TEST(Command_Words, stand_for_every_state_that_keys_lead_to) {
  std::mt19937 random(7);
  Options options;
  options.background = {0.2f, 0.4f, 1, 1};
  for (int i = 0; i < 1000; ++i) {
    const Key& key = all_keys()[random() % all_keys().size()];
    if (key.task == Key_Task::change) key.change(options);
    ASSERT_EQ(read_back(drawable(options)), command_words(drawable(options))) << key.name;
  }
}

TEST(Command_Words, survive_the_shell) {
  EXPECT_EQ(shell_line({"kvdraw", "a b.obj", "it's", "", "#0000ff"}),
            R"(kvdraw 'a b.obj' 'it'\''s' '' '#0000ff')");
}

}  // namespace
