// Texts of options to values. What is not wholly understood is refused.
#include "apps/common/option_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace kv {
namespace {

std::optional<std::uint32_t> number_in(std::string_view text, int base) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<int> side_in(std::string_view text) {
  const std::optional<std::uint32_t> value = number_in(text, 10);
  if (!value || *value < 1 || *value > largest_picture_side) return std::nullopt;
  return static_cast<int>(*value);
}

Color color_of(std::uint32_t rgb) {
  const auto part = [rgb](int shift) { return static_cast<float>(rgb >> shift & 255) / 255; };
  return {part(16), part(8), part(0), 1};
}

std::optional<double> real_in(std::string_view text, double limit) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !(std::abs(value) <= limit)) return std::nullopt;
  return value;
}

constexpr std::pair<std::string_view, std::uint32_t> named_colors[] = {
    {"white", 0xffffff}, {"black", 0x000000}, {"gray", 0x808080}, {"grey", 0x808080},
    {"red", 0xff0000},   {"green", 0x008000}, {"blue", 0x0000ff},
};

}  // namespace

std::optional<Size> find_size(const std::string& text) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos) return std::nullopt;
  const auto width = side_in(std::string_view(text).substr(0, cross));
  const auto height = side_in(std::string_view(text).substr(cross + 1));
  if (!width || !height) return std::nullopt;
  return Size{*width, *height};
}

Size parse_size(const std::string& text) {
  if (const auto size = find_size(text)) return *size;
  throw std::invalid_argument("'" + text + "' is no size; write WIDTHxHEIGHT, each from 1 to " +
                              std::to_string(largest_picture_side));
}

Color parse_color(const std::string& text) {
  for (const auto& [name, rgb] : named_colors)
    if (text == name) return color_of(rgb);
  if (text.size() == 7 && text[0] == '#')
    if (const auto rgb = number_in(std::string_view(text).substr(1), 16)) return color_of(*rgb);
  throw std::invalid_argument("'" + text +
                              "' is no colour; write #RRGGBB or white, black, gray, "
                              "red, green, blue");
}

Pair parse_pair(const std::string& text, double limit) {
  const std::string_view all = text;
  const std::size_t comma = all.find(',');
  if (comma != std::string_view::npos) {
    const auto first = real_in(all.substr(0, comma), limit);
    const auto second = real_in(all.substr(comma + 1), limit);
    if (first && second) return {*first, *second};
  }
  throw std::invalid_argument("'" + text + "' is no pair X,Y of numbers up to " +
                              std::to_string(static_cast<int>(limit)));
}

std::string text_of(const Size& size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::string text_of(const Color& color) {
  const auto byte = [](float part) {
    return static_cast<unsigned>(std::lround(std::clamp(part, 0.0f, 1.0f) * 255));
  };
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(color.red) & 255, byte(color.green) & 255,
                byte(color.blue) & 255);
  return text;
}

}  // namespace kv
