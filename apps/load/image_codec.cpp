// Decoding by stb_image, of three formats only: each one more is one more decoder for damaged
// files.
#include "apps/load/image_codec.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_TGA
#define STBI_NO_STDIO
#define STBI_MAX_DIMENSIONS 16384
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace kv {
namespace {

static_assert(STBI_MAX_DIMENSIONS == largest_image_side);
static_assert(sizeof(Texel) == 4);

template <std::size_t size>
bool begins_with(std::span<const std::byte> bytes, const std::array<unsigned char, size>& mark) {
  return bytes.size() >= size && std::memcmp(bytes.data(), mark.data(), size) == 0;
}

bool has_known_mark(std::span<const std::byte> bytes) {
  constexpr std::array<unsigned char, 4> png = {0x89, 'P', 'N', 'G'};
  constexpr std::array<unsigned char, 2> jpeg = {0xff, 0xd8};
  return begins_with(bytes, png) || begins_with(bytes, jpeg);
}

// In the decoder's words, if it has any.
std::string reason() {
  const char* const words = stbi_failure_reason();
  return words && *words ? std::string(" (") + words + ")" : std::string();
}

}  // namespace

bool is_named_tga(const std::string& name) {
  std::string lower = name;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower.ends_with(".tga");
}

Image decode_image(std::span<const std::byte> bytes, bool may_be_tga) {
  if (!may_be_tga && !has_known_mark(bytes)) throw std::runtime_error("is no PNG, JPEG or TGA");
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw std::runtime_error("is too large");
  int width = 0, height = 0, channels = 0;
  const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
      stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                            static_cast<int>(bytes.size()), &width, &height, &channels, 4),
      &stbi_image_free);
  if (!pixels) throw std::runtime_error("is damaged or too large" + reason());
  Image image(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
  std::memcpy(image.texels.data(), pixels.get(), image.texels.size() * sizeof(Texel));
  return image;
}

}  // namespace kv
