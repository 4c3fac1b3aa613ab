// Reads pictures in PNG, row by row. The file may be damaged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "apps/common/option_text.h"

namespace kv {

enum class Png_Pixels { rgb = 3, rgba = 4 };  // bytes a pixel

// All members throw std::runtime_error with the system's or the library's words. Other depths and
// colours than expected are converted.
class Png_Reader {
 public:
  Png_Reader(const std::string& path, Png_Pixels pixels);
  ~Png_Reader();

  Size size() const;
  std::size_t row_bytes() const;
  // The text entry of this key; empty when there is none.
  std::string note(const std::string& key) const;

  // The next row, the top row first. An interlaced picture is held in memory as a whole.
  void row(std::uint8_t* pixels);

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

}  // namespace kv
