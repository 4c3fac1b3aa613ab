// References are compared by their real paths, so that neither ".." nor a symbolic link leads out
// of the folder. What is opened is the real path, without following a link that took its place
// since.
#include "apps/load/model_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace kv {
namespace {

namespace fs = std::filesystem;

bool is_below(const fs::path& path, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
         folder.end();
}

bool is_regular(int file) {
  struct stat status {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

std::string words_of(Reference::State state) {
  switch (state) {
    case Reference::State::readable:
      return "can be read";
    case Reference::State::missing:
      return "is not found beside the model";
    case Reference::State::outside:
      return "lies outside the model's folder and is not read";
    case Reference::State::not_regular:
      return "is not a regular file and is not read";
  }
  return {};
}

Model_Folder::Model_Folder(const fs::path& model) {
  const fs::path folder = model.parent_path();
  path_ = fs::canonical(folder.empty() ? fs::path(".") : folder);
}

Reference Model_Folder::resolve(const fs::path& name) const {
  using State = Reference::State;
  if (name.is_absolute()) return {State::outside};
  std::error_code error;
  // Of a file that does not exist, the part that does; its name is judged all the same.
  const fs::path real = fs::weakly_canonical(path_ / name, error);
  if (error) return {State::missing};
  if (!is_below(real, path_)) return {State::outside};
  const fs::file_status status = fs::status(real, error);
  if (!fs::exists(status)) return {State::missing};
  if (!fs::is_regular_file(status)) return {State::not_regular};
  return {State::readable, real};
}

File Model_Folder::open(const Reference& reference) const {
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK;
  if (!reference.readable()) return nullptr;
  const int file = ::open(reference.path.c_str(), flags);
  if (file < 0) return nullptr;
  File stream(is_regular(file) ? fdopen(file, "rb") : nullptr);
  if (!stream) close(file);
  return stream;
}

}  // namespace kv
