// The renderer module that a program uses when `--module` is not given.
#pragma once

#include <string>

namespace kv {

// The first that exists of the places known at build time; they are meant from the folder of the
// running program. When none exists, the first place, for the message to name.
std::string default_module();

}  // namespace kv
