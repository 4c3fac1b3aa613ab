// Looks for the module from the folder of the running program, so that an installed tree may be
// moved.
#include "apps/draw/default_module.h"

#include <filesystem>
#include <sstream>
#include <system_error>

namespace kv {

std::string default_module() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  std::istringstream places(KV_MODULE_PLACES);
  std::string first;
  for (std::string place; std::getline(places, place, ':');) {
    const std::string module = (program.parent_path() / place).lexically_normal().string();
    if (std::filesystem::exists(module, error)) return module;
    if (first.empty()) first = module;
  }
  return first;
}

}  // namespace kv
