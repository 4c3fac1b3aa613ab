// Names in model files may be those of another machine: with its drives, its case and its percent
// signs. What is found is always a file that Model_Folder lets be read.
#include "apps/load/texture_files.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <system_error>

namespace kv {
namespace {

namespace fs = std::filesystem;

bool same_letters(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

// The entry of a place below the model's folder that has this name in whatever case; of several the
// first by name, so that the choice does not depend on the order in the folder.
template <class Accepts>
fs::path find_entry(const Model_Folder& folder, const fs::path& place, const std::string& name,
                    Accepts accepts) {
  fs::path first;
  std::error_code error;
  for (fs::directory_iterator entry(folder.path() / place, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path path = place / entry->path().filename();
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

// The file as it is written, or else the one of its base name.
Reference find_written(const Model_Folder& folder, const std::string& name) {
  const Reference written = folder.resolve(name);
  const std::string base = fs::path(name).filename().string();
  if (written.readable() || base.empty()) return written;
  const auto is_readable = [&](const fs::path& path) { return folder.resolve(path).readable(); };
  const auto is_folder = [&](const fs::path& path) {
    std::error_code error;
    return fs::is_directory(folder.path() / path, error);
  };
  fs::path found = find_entry(folder, {}, base, is_readable);
  if (found.empty())
    if (const fs::path below = find_entry(folder, {}, "textures", is_folder); !below.empty())
      found = find_entry(folder, below, base, is_readable);
  return found.empty() ? written : folder.resolve(found);
}

}  // namespace

Reference find_texture(const Model_Folder& folder, const std::string& name) {
  std::string slashed = name;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  const Reference found = find_written(folder, slashed);
  if (found.readable()) return found;
  const Reference plain = find_written(folder, without_percents(slashed));
  return plain.state == Reference::State::missing ? found : plain;
}

}  // namespace kv
