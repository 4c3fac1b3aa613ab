#include "tests/differential/model_pixels.h"

#include <algorithm>
#include <stdexcept>

namespace model {

Plane::Plane(const KT_Shared_Image& image)
    : bytes(image->scan_lines[0],
            image->scan_lines[0] + std::ptrdiff_t{image->row_bytes} * image->height),
      width(image->width),
      height(image->height),
      row_bytes(image->row_bytes),
      address(reinterpret_cast<std::uintptr_t>(image->scan_lines[0])) {}

void Plane::offset_fault() {
  throw std::out_of_range("the model left the image");
}

void State::set_merge_key(const int (&key)[3]) {
  const auto low = [](int value) { return static_cast<std::uint8_t>(value); };
  merge_background = {low(key[2]), low(key[1]), low(key[0]), 255};
  merge_substitute = merge_background;
  merge_substitute.blue = low(merge_background.blue == 0 ? 1 : merge_background.blue - 1);
  merge_background_index = low(palette.closest_match(merge_background, false));
  merge_substitute_index = merge_background_index;
  KT_RGB32 c = palette->entries[merge_background_index].color;
  c.alpha = 255;
  std::uint8_t* const channels[3] = {&c.red, &c.green, &c.blue};
  int steps[3];
  for (int k = 0; k < 3; ++k) steps[k] = *channels[k] > 250 ? -5 : 5;
  for (int count = 0; merge_substitute_index == merge_background_index && count < 512; count += 5) {
    for (int k = 0; k < 3; ++k) {
      if (*channels[k] > 250) steps[k] = -5;
      if (*channels[k] < 5) steps[k] = 5;
      *channels[k] = low(*channels[k] + steps[k]);
    }
    merge_substitute_index = low(palette.closest_match(c, false));
  }
}

namespace {
std::int32_t step_of(std::int32_t d, std::int32_t n, int bits) {
  const auto shifted = [d](int by) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(d) << by);
  };
  switch (n) {
    case 0:
      return d;
    case 1:
      return shifted(bits);
    case 2:
      return shifted(bits - 1);
    case 4:
      return shifted(bits - 2);
    case 8:
      return shifted(bits - 3);
    default:
      return shifted(bits) / n;
  }
}
}  // namespace

std::int32_t line_step(std::int32_t d, std::int32_t n) {
  return step_of(d, n, 16);
}
std::int32_t depth_step(std::int32_t d, std::int32_t n) {
  return step_of(d, n, 15);
}

std::uint32_t channel_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms) {
  if (short_forms && n <= 2) return i == 0 ? l : (l + r) >> 1;
  const std::uint32_t a = l >> 16, b = r >> 16;
  const int step = line_step(static_cast<int>(b - a), n);
  return (a << 16 | 0x8000) + static_cast<std::uint32_t>(i) * static_cast<std::uint32_t>(step);
}

std::int32_t scaled_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms) {
  if (short_forms && n <= 2) return static_cast<int>(i == 0 ? l >> 8 : (l >> 9) + (r >> 9));
  const std::uint32_t a = l >> 16, b = r >> 16;
  const int step = line_step(static_cast<int>(b - a), n) >> 8;
  return static_cast<int>((a << 16 | 0x8000) >> 8) + i * step;
}

std::uint16_t depth_on_span(std::uint32_t l, std::uint32_t r, int n, int i, bool short_forms) {
  const auto whole = [](std::uint32_t value) { return static_cast<std::uint16_t>(value >> 15); };
  if (short_forms && n <= 2) return whole(i == 0 ? l : (r >> 1) + (l >> 1));
  const int step = depth_step(whole(r) - whole(l), n);
  return whole(whole(l) * 32768u + 16384u +
               static_cast<std::uint32_t>(i) * static_cast<std::uint32_t>(step));
}

bool depth_passes(unsigned test, std::uint16_t z, std::uint16_t stored) {
  return test == 1 ? z < stored : test == 5 ? z > stored : z <= stored;
}

std::uint32_t merge_rgb(const State& state, std::uint32_t pixel, std::uint32_t color) {
  if (pixel != state.merge_background.word() && pixel == color) return pixel;
  const std::uint32_t both = pixel == state.merge_background.word() ? color : pixel & color;
  const std::uint32_t result = both | 0xFF000000;
  return result == state.merge_background.word() ? state.merge_substitute.word() : result;
}

std::uint8_t merge_mapped(const State& state, std::uint8_t pixel, std::uint8_t index) {
  if (pixel == state.merge_background_index)
    return index == state.merge_background_index ? state.merge_substitute_index : index;
  if (pixel == index) return pixel;
  const KT_Palette_Entry* entries = state.palette->entries;
  const std::uint32_t both = entries[pixel].color.word() & entries[index].color.word();
  return static_cast<std::uint8_t>(
      state.palette.closest_match(KT_RGB32::from_word(both | 0xFF000000), false));
}

KT_RGB32 blend(KT_RGB32 pixel, KT_RGB32 source, bool keep_alpha) {
  const auto mix = [a = source.alpha](int s, int p) {
    return static_cast<std::uint8_t>((s * a + p * (255 - a)) / 255);
  };
  return {mix(source.blue, pixel.blue), mix(source.green, pixel.green), mix(source.red, pixel.red),
          keep_alpha ? pixel.alpha : std::uint8_t{255}};
}

int threshold(const State& state, int x, int y) {
  const Plane& p = state.color;
  const std::uintptr_t row =
      static_cast<std::uintptr_t>(p.height - 1 - y) * static_cast<std::uintptr_t>(p.row_bytes);
  const std::uintptr_t column = (p.address + row + static_cast<std::uintptr_t>(x)) & 7;
  return SHARED.dither_table[static_cast<std::uintptr_t>(y & 7) * 8 + column];
}

std::uint8_t dithered_index(const KT_Color_Cube& cube, const int (&rgb)[3], int threshold) {
  return static_cast<std::uint8_t>(
      cube.base_index + cube.red_stride * ((rgb[0] + threshold) >> 16) +
      cube.green_stride * ((rgb[1] + threshold) >> 16) + ((rgb[2] + threshold) >> 16));
}

std::uint8_t ordered_index(const KT_Color_Cube& cube, const int (&rgb)[3], int threshold) {
  int index = dithered_index(cube, rgb, 0);
  const int strides[3] = {cube.red_stride, cube.green_stride, cube.blue_stride};
  int order[3] = {0, 1, 2};
  const auto fraction = [&](int k) { return rgb[k] & 0xFFFF; };
  std::stable_sort(order, order + 3, [&](int a, int b) { return fraction(a) > fraction(b); });
  for (int k = 0; k < 3 && 65535 - fraction(order[k]) <= threshold; ++k) index += strides[order[k]];
  return static_cast<std::uint8_t>(index);
}

}  // namespace model
