// The names of several pictures, and models from standard input: these are kept in a temporary
// file, because loading happens in another process and needs a name with an ending.
#include "apps/commands/batch.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "apps/common/errors.h"

namespace kv {
namespace {

void replace_all(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

[[noreturn]] void fail(const std::string& what) {
  throw Failure(Exit_Code::input, "standard input", what);
}

std::string all_of_standard_input(std::size_t most_bytes) {
  std::string text;
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = read(STDIN_FILENO, buffer, sizeof buffer);
    if (got == 0) return text;
    if (got < 0) {
      if (errno == EINTR) continue;
      fail(system_words(errno));
    }
    text.append(buffer, static_cast<std::size_t>(got));
    if (text.size() > most_bytes) fail("larger than --load-memory allows");
  }
}

// OBJ begins with whatever its writer likes.
const char* ending_of(const std::string& model) {
  if (model.starts_with("glTF")) return ".glb";
  if (model.starts_with("ply")) return ".ply";
  const std::size_t first = model.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && model[first] == '{') return ".gltf";
  // A binary STL has 80 bytes of anything, its count of triangles and 50 bytes for each.
  if (model.size() >= 84) {
    std::size_t count = 0;
    for (std::size_t i = 4; i-- > 0;)
      count = count << 8 | static_cast<unsigned char>(model[80 + i]);
    if (model.size() == 84 + 50 * count) return ".stl";
  }
  return model.starts_with("solid") ? ".stl" : ".obj";
}

}  // namespace

Picture_Names::Picture_Names(std::string pattern, std::size_t picture_count)
    : pattern_(std::move(pattern)), digits_(std::to_string(picture_count).size()) {}

std::string Picture_Names::name(const std::string& model_path, std::size_t number) const {
  if (pattern_ == "-") return "/dev/stdout";
  std::string digits = std::to_string(number);
  digits.insert(0, digits_ - std::min(digits_, digits.size()), '0');
  const std::string model =
      model_path == "-" ? "stdin" : std::filesystem::path(model_path).stem().string();
  // The number first: a model's name may have braces of its own.
  std::string name = pattern_;
  replace_all(name, "{n}", digits);
  replace_all(name, "{model}", model);
  return name;
}

void check_names(const std::string& pattern, const std::vector<std::string>& models,
                 std::size_t frames) {
  const Picture_Names names(pattern, models.size() * frames);
  std::set<std::string> seen;
  std::size_t number = 0;
  for (const std::string& model : models) {
    for (std::size_t frame = 0; frame < frames; ++frame) {
      const std::string name = names.name(model, ++number);
      if (!seen.insert(name).second)
        throw Failure(
            Exit_Code::usage, pattern, "more than one picture would go into " + name,
            "put {model} or {n} into the name, for the model's name or the picture's number");
    }
  }
}

Standard_Input::Standard_Input(std::size_t most_bytes) {
  const std::string model = all_of_standard_input(most_bytes);
  if (model.empty()) fail("empty");
  std::string name = (std::filesystem::temp_directory_path() / "kvdraw.XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) fail("no temporary folder: " + system_words(errno));
  folder_ = name;
  path_ = (std::filesystem::path(folder_) / "stdin").string() + ending_of(model);
  std::ofstream file(path_, std::ios::binary);
  file.write(model.data(), static_cast<std::streamsize>(model.size()));
  file.close();
  if (!file) {
    std::filesystem::remove_all(folder_);
    fail("there is no room for it in the temporary folder");
  }
}

Standard_Input::~Standard_Input() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace kv
