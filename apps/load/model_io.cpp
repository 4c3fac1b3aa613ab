// The library joins the folder of the model's path and what the file says into one name. Here the
// folder is taken off again, so that a reference is judged as it is in the file.
#include "apps/load/model_io.h"

#include <assimp/DefaultIOStream.h>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

class Stream : public Assimp::DefaultIOStream {
 public:
  Stream(File file, const std::string& path) : DefaultIOStream(file.release(), path) {}
};

}  // namespace

Model_IO::Model_IO(std::string model_path, const Model_Folder& folder,
                   std::vector<std::string>& warnings)
    : model_path_(std::move(model_path)),
      prefix_(model_path_.substr(0, model_path_.find_last_of('/') + 1)),
      folder_(folder),
      warnings_(warnings) {}

std::string Model_IO::as_written(const std::string& name) const {
  return name.starts_with(prefix_) ? name.substr(prefix_.size()) : name;
}

bool Model_IO::Exists(const char* name) const {
  return name == model_path_ || folder_.resolve(as_written(name)).readable();
}

Assimp::IOStream* Model_IO::Open(const char* name, const char* mode) {
  if (*mode != 'r') return nullptr;
  if (name == model_path_) {
    File file(std::fopen(name, "rbe"));
    return file ? new Stream(std::move(file), name) : nullptr;
  }
  const std::string written = as_written(name);
  const Reference reference = folder_.resolve(written);
  File file = folder_.open(reference);
  if (!file) warn(written, reference.state);
  return file ? new Stream(std::move(file), reference.path.string()) : nullptr;
}

void Model_IO::Close(Assimp::IOStream* stream) {
  delete stream;
}

// A missing file is reported by the importer, which may look in another place.
void Model_IO::warn(const std::string& name, Reference::State state) {
  if (state != Reference::State::outside && state != Reference::State::not_regular) return;
  const std::string warning = "file '" + name + "' " + words_of(state);
  if (std::find(warnings_.begin(), warnings_.end(), warning) == warnings_.end())
    warnings_.push_back(warning);
}

}  // namespace kv
