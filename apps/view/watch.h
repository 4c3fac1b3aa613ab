// Notices that a file has been written anew.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace kv {

class File_Watch {
 public:
  explicit File_Watch(const std::string& path);

  // Whether the file is another than the one last reported. A file that still changes, or is away
  // for a moment, is not reported before it has stayed the same from one call to the next.
  bool changed();

 private:
  // Device, file, size and time of the last writing.
  using Stamp = std::tuple<std::uint64_t, std::uint64_t, std::int64_t, std::int64_t, std::int64_t>;

  Stamp stamp() const;

  std::string path_;
  Stamp told_, last_;
};

}  // namespace kv
