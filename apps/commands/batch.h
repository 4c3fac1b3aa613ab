// Several models and frames: which picture goes into which file.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace kv {

// A picture's name with {model}, the model's name without folder and ending, and {n}, the picture's
// number from 1 on, as long as the last one's.
class Picture_Names {
 public:
  Picture_Names(std::string pattern, std::size_t picture_count);

  std::string name(const std::string& model_path, std::size_t number) const;

 private:
  std::string pattern_;
  std::size_t digits_;
};

// Throws a Failure of Exit_Code::usage when two pictures would have one name.
void check_names(const std::string& pattern, const std::vector<std::string>& models,
                 std::size_t frames);

// A model from standard input in a file of its own, with the ending of the format that its first
// bytes show, for as long as this lives. Throws a Failure of Exit_Code::input; more than
// `most_bytes` are refused.
class Standard_Input {
 public:
  explicit Standard_Input(std::size_t most_bytes);
  Standard_Input(const Standard_Input&) = delete;
  Standard_Input& operator=(const Standard_Input&) = delete;
  ~Standard_Input();

  const std::string& path() const { return path_; }

 private:
  std::string folder_;
  std::string path_;
};

}  // namespace kv
