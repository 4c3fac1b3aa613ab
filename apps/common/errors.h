// Failures that are reported to the user in one line, and the exit code of each.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kv {

enum class Exit_Code { done = 0, input = 1, usage = 2, module = 3, output = 4 };

class Failure : public std::runtime_error {
 public:
  // `file` may be empty when no file is concerned, `hint` when there is nothing to advise.
  Failure(Exit_Code code, std::string file, const std::string& what, std::string hint = {});

  Exit_Code code() const { return code_; }
  const std::string& file() const { return file_; }
  const std::string& hint() const { return hint_; }

 private:
  Exit_Code code_;
  std::string file_;
  std::string hint_;
};

// "kvdraw: FILE: error: what; hint", always a single line without a line end.
std::string message_of(const Failure& failure, const std::string& program = "kvdraw");

// Text of foreign origin made fit for a message: one line of printable characters, not too long.
std::string one_line(std::string_view text);

// The system's words for an errno value.
std::string system_words(int error_number);

}  // namespace kv
