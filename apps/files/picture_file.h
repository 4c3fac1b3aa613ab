// The file a picture goes into: complete or not there at all.
#pragma once

#include <functional>
#include <string>

#include "apps/files/picture.h"
#include "apps/files/png_writer.h"

namespace kv {

// Writes beside the target under a temporary name and renames at the end, so that an earlier
// picture stays as it is until the new one is complete. A target that is no regular file (a pipe,
// a device) is written directly. Throws a Failure of Exit_Code::output.
void write_picture_file(const std::string& path, const Picture& picture);

// The same for a picture that is never in memory as a whole: `write_rows` hands over all its rows,
// the top row first. It may fail by throwing; then nothing is left behind.
void write_picture_file(const std::string& path, const Size& size, const Png_Notes& notes,
                        const std::function<void(Png_Writer&)>& write_rows);

// While a picture is written, the signals by which a user ends a program are held back. Called
// between its parts, this gives way to one: it throws, and once all is tidied up the signal works.
void stop_if_asked();

}  // namespace kv
