// The table of commands; `kvdraw` itself draws models when its first argument names none of them.
#include "apps/commands/commands.h"

#include <string_view>

namespace kv {
namespace {

struct Command {
  std::string_view name;
  int (*run)(int argc, char** argv);
  std::string_view help;
};

constexpr Command commands[] = {
    {"join", join_command, "put tiles of --tile-index together"},
    {"compare", compare_command, "tell where two pictures differ"},
    {"gallery", gallery_command, "draw every primitive in every way, as contact sheets"},
};

}  // namespace

std::optional<int> run_command(int argc, char** argv) {
  if (argc < 2) return std::nullopt;
  for (const Command& command : commands)
    if (command.name == argv[1]) return command.run(argc - 1, argv + 1);
  return std::nullopt;
}

std::string commands_help() {
  std::string text = "Other commands, each with a --help of its own:\n";
  for (const Command& command : commands) {
    std::string line = "  kvdraw " + std::string(command.name);
    line.resize(18, ' ');
    text += line + std::string(command.help) + "\n";
  }
  return text + "A model of such a name is written with its folder, as in ./join.\n";
}

}  // namespace kv
