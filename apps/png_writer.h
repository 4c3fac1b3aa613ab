// Writes pictures as PNG.
#pragma once

#include <cstdio>

#include "apps/picture.h"

namespace kv {

// Throws std::runtime_error with the library's words. What the stream still buffers is the
// caller's to flush and check.
void write_png(std::FILE* stream, const Picture& picture);

}  // namespace kv
