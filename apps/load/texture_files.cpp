#include "apps/load/texture_files.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <system_error>

namespace kv {
namespace {

namespace fs = std::filesystem;

bool is_file(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool same_letters(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

// The first by name, so that the choice does not depend on the order of a folder.
template <class Accepts>
fs::path first_entry(const fs::path& folder, const std::string& name, Accepts accepts) {
  fs::path first;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path& path = entry->path();
    if (!same_letters(path.filename().string(), name) || !accepts(path)) continue;
    if (first.empty() || path < first) first = path;
  }
  return first;
}

// "%20" and the like, as names are written in glTF.
std::string without_percents(const std::string& name) {
  std::string plain;
  for (std::size_t i = 0; i < name.size(); ++i) {
    unsigned code = 0;
    const char* const digits = name.data() + i + 1;
    if (name[i] == '%' && i + 2 < name.size() &&
        std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
      plain += static_cast<char>(code);
      i += 2;
    } else {
      plain += name[i];
    }
  }
  return plain;
}

fs::path find_written(const fs::path& folder, const std::string& name) {
  if (is_file(folder / name)) return folder / name;
  const std::string base = fs::path(name).filename().string();
  if (base.empty()) return {};
  if (const fs::path found = first_entry(folder, base, is_file); !found.empty()) return found;
  const auto is_folder = [](const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
  };
  const fs::path below = first_entry(folder, "textures", is_folder);
  return below.empty() ? below : first_entry(below, base, is_file);
}

}  // namespace

fs::path find_texture(const fs::path& folder, const std::string& name) {
  const fs::path here = folder.empty() ? fs::path(".") : folder;
  std::string slashed = name;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  const fs::path found = find_written(here, slashed);
  return found.empty() ? find_written(here, without_percents(slashed)) : found;
}

}  // namespace kv
