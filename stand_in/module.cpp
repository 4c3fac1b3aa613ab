// Loading of renderer modules.
#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "host/application.h"

namespace {

std::string failure(const std::string& path, const std::string& what) {
  return "cannot load renderer module '" + path + "': " + what;
}

std::string last_loader_message() {
  const char* const message = dlerror();
  return message != nullptr ? message : "no reason given";
}

}  // namespace

KT_Renderer_Module::~KT_Renderer_Module() {
  unload();
}

bool KT_Renderer_Module::load(const std::string& path, std::string& error) {
  unload();
  std::error_code status;
  if (!std::filesystem::exists(path, status)) {
    error = failure(path, "no such file");
    return false;
  }
  // A path without a directory would be looked for along the library path instead.
  const std::string file = std::filesystem::absolute(path).string();
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    error = failure(path, "not a loadable module (" + last_loader_message() + ")");
    return false;
  }
  void* const entry = dlsym(library, "KD_Renderer");
  if (entry == nullptr) {
    dlclose(library);
    error = failure(path, "it has no export KD_Renderer");
    return false;
  }
  library_ = library;
  factory_ = reinterpret_cast<KT_Renderer_Data* (*)(const KT_Renderer_Data*)>(entry);
  return true;
}

void KT_Renderer_Module::unload() {
  factory_ = nullptr;
  if (library_ != nullptr) dlclose(std::exchange(library_, nullptr));
}

KT_Handle<KT_Renderer_Data> KT_Renderer_Module::make_renderer(
    const KT_Renderer_Data* source) const {
  return KT_Handle<KT_Renderer_Data>(factory_(source));
}
