// Options turned back into a command line.
#pragma once

#include <string>
#include <vector>

#include "apps/commands/options.h"

namespace kv {

// The words of kvdraw for these options, without the program's and the pictures' names; what is as
// usual is left out. The limits of loading are left out.
std::vector<std::string> command_words(const Options& options);

// The words as a shell takes them.
std::string shell_line(const std::vector<std::string>& words);

}  // namespace kv
