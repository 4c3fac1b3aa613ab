// Frame images: rows are padded to four bytes, and a size that cannot be had leaves a null handle.
#include "stand_in/frame_buffer.h"

#include <limits>
#include <new>

namespace stand_in {
namespace {

std::int64_t pixel_bytes(KT_Image_Format format) {
  switch (format) {
    case KT_Image_Format::mapped:
      return 1;
    case KT_Image_Format::rgb32:
      return 4;
    case KT_Image_Format::depth:
      return 2;
    default:
      return 0;
  }
}

}  // namespace

void create_frame_buffer(void*, int width, int height, const KT_Image_Format* format,
                         KT_Shared_Image* image) {
  // The old depth image goes first, so that two large ones need not fit at once. The old colour
  // image stays until the new one takes its place in the renderer's option.
  image->release();
  const std::int64_t pixel = pixel_bytes(*format);
  if (width <= 0 || height <= 0 || pixel == 0) return;
  const std::int64_t row_bytes = (width * pixel + 3) / 4 * 4;
  if (row_bytes > std::numeric_limits<std::int32_t>::max()) return;
  try {
    *image = KT_Shared_Image(width, height, *format, static_cast<std::int32_t>(row_bytes), nullptr,
                             false);
  } catch (const std::bad_alloc&) {
    // No room: the null handle says so.
  }
}

void present_to_no_window(void*, const KT_DCI_Point*, const KT_DCI_Point*, const KT_Shared_Image*,
                          int, int) {}

}  // namespace stand_in
