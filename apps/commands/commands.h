// What kvdraw does beside drawing a model: `kvdraw COMMAND ...`.
#pragma once

#include <optional>
#include <string>

namespace kv {

// Runs the command that the first argument names and returns the exit code; nothing when it names
// none. Throws a Failure.
std::optional<int> run_command(int argc, char** argv);

// The commands as the end of a help text.
std::string commands_help();

// Each takes the arguments from its own name on.
int join_command(int argc, char** argv);
int compare_command(int argc, char** argv);
int gallery_command(int argc, char** argv);

}  // namespace kv
