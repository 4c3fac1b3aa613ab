// Writes pictures as PNG, row by row.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "apps/common/option_text.h"

namespace kv {

// Text entries of a picture, by their keys.
using Png_Notes = std::map<std::string, std::string>;

// All members throw std::runtime_error with the system's or the library's words. What the stream
// still buffers is the caller's to flush and check.
class Png_Writer {
 public:
  Png_Writer(std::FILE* stream, const Size& size, const Png_Notes& notes = {});
  ~Png_Writer();

  // Three bytes a pixel: red, green, blue; the top row first.
  void row(const std::uint8_t* pixels);
  void finish();

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

}  // namespace kv
