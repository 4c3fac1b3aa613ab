// Two conventions use the 16 bits after each facet for five bits a channel. With "COLOR=" and four
// bytes in the header, the colour of the object, red is lowest and bit 15 stands for the object's
// colour. Without it blue is lowest, and bit 15 says that there is a colour.
#include "apps/load/stl_colors.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

namespace kv {
namespace {

constexpr std::size_t header_size = 80, facet_size = 50;
using Header = std::array<char, header_size + 4>;

std::uint32_t byte_at(const char* bytes, std::size_t i) {
  return static_cast<unsigned char>(bytes[i]);
}

std::optional<Color> object_color(const Header& header) {
  constexpr std::string_view key = "COLOR=";
  const std::size_t found = std::string_view(header.data(), header_size).find(key);
  if (found == std::string_view::npos || found + key.size() + 4 > header_size) return std::nullopt;
  const auto channel = [&](std::size_t i) {
    return static_cast<float>(byte_at(header.data(), found + key.size() + i)) / 255;
  };
  // Some writers leave the opacity empty.
  const float opacity = channel(3);
  return Color{channel(0), channel(1), channel(2), opacity > 0 ? opacity : 1};
}

float five_bits(std::uint32_t word, int from) {
  return static_cast<float>(word >> from & 31) / 31;
}

Color color_of(std::uint32_t word, const std::optional<Color>& object) {
  constexpr std::uint32_t marked = 0x8000;
  if (object)
    return word & marked
               ? *object
               : Color{five_bits(word, 0), five_bits(word, 5), five_bits(word, 10), object->alpha};
  // Marked and nothing else stands for the object's colour in files of the other convention.
  if (!(word & marked) || word == marked) return {};
  return {five_bits(word, 10), five_bits(word, 5), five_bits(word, 0)};
}

}  // namespace

std::vector<Color> read_stl_colors(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  Header header{};
  if (!file.read(header.data(), header.size())) return {};
  std::uint32_t count = 0;
  for (std::size_t i = 4; i-- > 0;) count = count << 8 | byte_at(header.data(), header_size + i);
  std::error_code error;
  if (std::filesystem::file_size(path, error) < header.size() + facet_size * std::size_t{count} ||
      error)
    return {};
  std::vector<std::uint32_t> words;
  std::array<char, facet_size> facet{};
  while (words.size() < count && file.read(facet.data(), facet.size()))
    words.push_back(byte_at(facet.data(), 48) | byte_at(facet.data(), 49) << 8);
  if (words.size() < count) return {};
  const std::optional<Color> object = object_color(header);
  // Words that are all 0 were not written as colours.
  const bool empty = std::all_of(words.begin(), words.end(), [](auto word) { return word == 0; });
  std::vector<Color> colors;
  colors.reserve(count);
  for (const std::uint32_t word : words)
    colors.push_back(empty ? object.value_or(Color{}) : color_of(word, object));
  return colors;
}

}  // namespace kv
