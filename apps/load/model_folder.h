// Which files a model file may name: regular ones in its own folder and below.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace kv {

struct Close_File {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close_File>;

// A name in a model file as it was resolved.
struct Reference {
  enum class State { readable, missing, outside, not_regular };

  State state = State::missing;
  std::filesystem::path path{};  // the real one, of a readable file

  bool readable() const { return state == State::readable; }
};

// Why a reference is not read, in words that follow its name.
std::string words_of(Reference::State state);

// The one place that decides: material files, buffers and textures are all resolved and opened
// here. A sandbox of the loader process has to let through no more than the model file and
// `path()`.
class Model_Folder {
 public:
  explicit Model_Folder(const std::filesystem::path& model);

  // The real path of the folder.
  const std::filesystem::path& path() const { return path_; }

  // `name` as seen from the folder. Absolute names are outside, and so is what a symbolic link
  // leads out to.
  Reference resolve(const std::filesystem::path& name) const;

  // Null when the file cannot be read or is no longer what was resolved. Never waits for a writer.
  File open(const Reference& reference) const;

 private:
  std::filesystem::path path_;
};

}  // namespace kv
