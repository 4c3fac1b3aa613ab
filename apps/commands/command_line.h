// How the commands take their arguments.
#pragma once

#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>

#include "apps/common/errors.h"

namespace kv {

// False when only help was requested, which is then printed. Throws a Failure of
// Exit_Code::usage, also for a std::invalid_argument of a value.
inline bool parse_command_line(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    return false;
  } catch (const CLI::ParseError& error) {
    throw Failure(Exit_Code::usage, {}, error.what(), "see " + app.get_name() + " --help");
  } catch (const std::invalid_argument& error) {
    throw Failure(Exit_Code::usage, {}, error.what(), "see " + app.get_name() + " --help");
  }
}

}  // namespace kv
