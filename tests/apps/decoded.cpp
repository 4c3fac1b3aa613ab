// Pictures by libpng, apart from the reader and writer of the programs.
#include "tests/apps/decoded.h"

#include <png.h>

#include <algorithm>
#include <stdexcept>

Decoded decode(const std::string& path) {
  Decoded picture;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str()))
    throw std::runtime_error(path + ": " + image.message);
  image.format = PNG_FORMAT_RGB;
  picture.width = image.width;
  picture.height = image.height;
  picture.bytes.resize(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, picture.bytes.data(), 0, nullptr))
    throw std::runtime_error(path + ": " + image.message);
  return picture;
}

char hue(const std::array<int, 3>& color) {
  const int most = *std::max_element(color.begin(), color.end());
  if (most < 40) return 'k';
  std::string strong;
  for (std::size_t i = 0; i < 3; ++i) {
    if (color[i] > most * 7 / 10)
      strong += "rgb"[i];
    else if (color[i] > most * 4 / 10)
      return '?';
  }
  if (strong.size() == 1) return strong[0];
  return strong == "rgb" ? 'w' : strong == "rb" ? 'm' : '?';
}

std::string png_of(const std::string& letters, std::uint32_t width, std::uint32_t cell) {
  const auto height = static_cast<std::uint32_t>(letters.size()) / width;
  std::vector<std::uint8_t> bytes;
  for (std::uint32_t y = 0; y < height * cell; ++y)
    for (std::uint32_t x = 0; x < width * cell; ++x) {
      const char c = letters[y / cell * width + x / cell];
      const auto channel = [c](const char* shown) {
        return static_cast<std::uint8_t>(std::string(shown).find(c) == std::string::npos ? 0 : 255);
      };
      bytes.insert(bytes.end(), {channel("rmw"), channel("gw"), channel("bmw"), channel("rgbmwk")});
    }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width * cell;
  image.height = height * cell;
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, bytes.data(), 0, nullptr);
  std::string file(size, '\0');
  if (!png_image_write_to_memory(&image, file.data(), &size, 0, bytes.data(), 0, nullptr))
    throw std::runtime_error(image.message);
  file.resize(size);
  return file;
}
