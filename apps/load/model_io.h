// The files of the import library: it opens the model and what Model_Folder lets it read.
#pragma once

#include <assimp/IOSystem.hpp>
#include <string>
#include <vector>

#include "apps/load/model_folder.h"

namespace kv {

class Model_IO : public Assimp::IOSystem {
 public:
  // `warnings` receives one line for each reference that is refused.
  Model_IO(std::string model_path, const Model_Folder& folder, std::vector<std::string>& warnings);

  bool Exists(const char* name) const override;
  char getOsSeparator() const override { return '/'; }
  Assimp::IOStream* Open(const char* name, const char* mode) override;
  void Close(Assimp::IOStream* stream) override;

 private:
  std::string as_written(const std::string& name) const;
  void warn(const std::string& name, Reference::State state);

  std::string model_path_;
  std::string prefix_;  // of the library's names: the model's folder as the user wrote it
  const Model_Folder& folder_;
  std::vector<std::string>& warnings_;
};

}  // namespace kv
