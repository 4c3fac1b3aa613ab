// Messages are one line each, whatever a file or the system put into them.
#include "apps/common/errors.h"

#include <system_error>
#include <utility>

namespace kv {

Failure::Failure(Exit_Code code, std::string file, const std::string& what, std::string hint)
    : std::runtime_error(what), code_(code), file_(std::move(file)), hint_(std::move(hint)) {}

std::string message_of(const Failure& failure, const std::string& program) {
  std::string message = program + ": ";
  if (!failure.file().empty()) message += one_line(failure.file()) + ": ";
  message += "error: " + one_line(failure.what());
  if (!failure.hint().empty()) message += "; " + one_line(failure.hint());
  return message;
}

std::string one_line(std::string_view text) {
  constexpr std::size_t longest = 400;
  std::string line;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    const bool blank = code <= ' ' || code == 0x7f;
    if (blank && (line.empty() || line.back() == ' ')) continue;
    if (line.size() >= longest) {
      line += "...";
      break;
    }
    line += blank ? ' ' : c;
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

std::string system_words(int error_number) {
  return std::generic_category().message(error_number);
}

}  // namespace kv
