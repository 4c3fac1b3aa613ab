// The file a picture goes into: complete or not there at all.
#pragma once

#include <string>

#include "apps/picture.h"

namespace kv {

// Writes beside the target under a temporary name and renames at the end, so that an earlier
// picture stays as it is until the new one is complete. A target that is no regular file (a pipe,
// a device) is written directly. Throws a Failure of Exit_Code::output.
void write_picture_file(const std::string& path, const Picture& picture);

}  // namespace kv
