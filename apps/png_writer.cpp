#include "apps/png_writer.h"

#include <png.h>

#include <stdexcept>
#include <string>

namespace kv {

void write_png(std::FILE* stream, const Picture& picture) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGB;
  const int row_stride = 3 * picture.width;
  if (!png_image_write_to_stdio(&image, stream, 0, picture.pixels.data(), row_stride, nullptr))
    throw std::runtime_error(std::string(image.message));
}

}  // namespace kv
