// Reference model, pixels. Coordinates are those of the frame buffer: y up, row 0 at the highest
// address; nothing outside an image is ever read or written.
#include "tests/differential/model_pixels.h"

#include <algorithm>
#include <numeric>

namespace model {
namespace {

std::uint8_t low(int value) {
  return static_cast<std::uint8_t>(value);
}

int step_of(int d, int n, int fraction_bits) {
  if (n == 0) return d;
  const bool power = n == 1 || n == 2 || n == 4 || n == 8;
  const int whole_bits = n == 8 ? 3 : n / 2;
  return power ? static_cast<int>(bits(d) << (fraction_bits - whole_bits))
               : static_cast<int>(bits(d) << fraction_bits) / n;
}

}  // namespace

Plane::Plane(const KT_Shared_Image& image)
    : bytes(image->scan_lines[0],
            image->scan_lines[0] + std::ptrdiff_t{image->row_bytes} * image->height),
      width(image->width),
      height(image->height),
      row_bytes(image->row_bytes),
      address(reinterpret_cast<std::uintptr_t>(image->scan_lines[0])) {}

void State::set_merge_key(const int (&key)[3]) {
  merge_substitute = merge_background = {low(key[2]), low(key[1]), low(key[0]), 255};
  merge_substitute.blue = low(merge_background.blue == 0 ? 1 : merge_background.blue - 1);
  merge_background_index = low(palette.closest_match(merge_background, false));
  merge_substitute_index = merge_background_index;
  // The substitute index is that of the first colour on the way up and down that has another.
  KT_RGB32 c = palette->entries[merge_background_index].color;
  c.alpha = 255;
  std::uint8_t* const channels[3] = {&c.red, &c.green, &c.blue};
  int steps[3] = {5, 5, 5};
  for (int tries = 0; merge_substitute_index == merge_background_index && tries < 103; ++tries) {
    for (int k = 0; k < 3; ++k) {
      if (*channels[k] > 250) steps[k] = -5;
      if (*channels[k] < 5) steps[k] = 5;
      *channels[k] = low(*channels[k] + steps[k]);
    }
    merge_substitute_index = low(palette.closest_match(c, false));
  }
}

bool State::merge_on(const KT_Rendition_Data& rendition) const {
  return force_merge || rendition.misc_attributes->drawing_mode == 20;
}

Face_Pattern::Face_Pattern(const KT_Rendition_Data& rendition)
    : origin(rendition.misc_attributes->pattern_origin),
      opaque((rendition.misc_attributes->pattern_options & 1) != 0),
      inverted((rendition.misc_attributes->pattern_options & 2) != 0) {
  const int face = rendition.face_attributes->face_pattern;
  solid = face == 64 && !inverted;
  empty = !opaque && face == (inverted ? 64 : 0);
  if (face == 74) pattern = *rendition.face_attributes->user_pattern;
  if (face < 74) pattern.pattern_bits = KORVEL.face_pattern_table[face];
}

bool Face_Pattern::bit(int x, int y) const {
  const auto wrapped = [](int value, int size) { return (value % size + size) % size; };
  const int px = wrapped(x - origin.x, pattern.pattern_width);
  const int py = wrapped(y - origin.y, pattern.pattern_height);
  const int byte = pattern.pattern_bits[py * pattern.pattern_row_bytes + px / 8];
  return ((byte >> (px % 8) & 1) != 0) != inverted;
}

int line_step(int d, int n) {
  return step_of(d, n, 16);
}
int depth_step(int d, int n) {
  return step_of(d, n, 15);
}

std::uint32_t on_span(std::uint32_t left, std::uint32_t right, int n, int i, bool short_forms,
                      int dropped) {
  if (short_forms && n <= 2) {
    if (i == 0) return left >> dropped;
    return dropped == 0 ? (left + right) >> 1 : (left >> (dropped + 1)) + (right >> (dropped + 1));
  }
  const int step = line_step(static_cast<int>((right >> 16) - (left >> 16)), n) >> dropped;
  return (((left & 0xFFFF0000) + 0x8000) >> dropped) + bits(product(i, step));
}

std::uint16_t depth_on_span(std::uint32_t left, std::uint32_t right, int n, int i,
                            bool short_forms) {
  const auto whole = [](std::uint32_t value) { return static_cast<std::uint16_t>(value >> 15); };
  if (short_forms && n <= 2) return whole(i == 0 ? left : (right >> 1) + (left >> 1));
  return whole(whole(left) * 32768u + 16384u +
               bits(product(i, depth_step(whole(right) - whole(left), n))));
}

KT_RGB32 merge_rgb(const State& state, KT_RGB32 pixel, KT_RGB32 color) {
  const bool bare = pixel == state.merge_background;
  if (!bare && pixel == color) return pixel;
  KT_RGB32 result = bare ? color : KT_RGB32::from_word(pixel.word() & color.word());
  result.alpha = 255;
  return result == state.merge_background ? state.merge_substitute : result;
}

std::uint8_t merge_mapped(const State& state, std::uint8_t pixel, std::uint8_t index) {
  if (pixel == state.merge_background_index)
    return index == state.merge_background_index ? state.merge_substitute_index : index;
  if (pixel == index) return pixel;
  const KT_Palette_Entry* entries = state.palette->entries;
  KT_RGB32 both = KT_RGB32::from_word(entries[pixel].color.word() & entries[index].color.word());
  both.alpha = 255;
  return low(state.palette.closest_match(both, false));
}

KT_RGB32 blend(KT_RGB32 pixel, KT_RGB32 source, bool keep_alpha) {
  const auto mix = [a = source.alpha](int s, int p) { return low((s * a + p * (255 - a)) / 255); };
  return {mix(source.blue, pixel.blue), mix(source.green, pixel.green), mix(source.red, pixel.red),
          keep_alpha ? pixel.alpha : std::uint8_t{255}};
}

KT_RGB32 blend_by(int weight, KT_RGB32 pixel, KT_RGB32 source) {
  const auto mix = [weight](int s, int p) { return low(p + (((s - p) * weight) >> 16)); };
  return {mix(source.blue, pixel.blue), mix(source.green, pixel.green), mix(source.red, pixel.red),
          255};
}

Cube_Position cube_position(const State& state, KT_RGB32 c) {
  const KT_Color_Cube& cube = state.cube;
  return {c.red * cube.red_scale << 8, c.green * cube.green_scale << 8,
          c.blue * cube.blue_scale << 8};
}

int threshold(const State& state, int x, int y) {
  const Plane& p = state.color;
  const auto address = p.address + static_cast<std::uintptr_t>(p.row(y) + x);
  return SHARED.dither_table[static_cast<std::size_t>(y & 7) * 8 + (address & 7)];
}

std::uint8_t dithered(const State& state, const Cube_Position& at, int x, int y) {
  const int d = threshold(state, x, y);
  const KT_Color_Cube& cube = state.cube;
  return low(cube.base_index + cube.red_stride * ((at.rgb[0] + d) >> 16) +
             cube.green_stride * ((at.rgb[1] + d) >> 16) + ((at.rgb[2] + d) >> 16));
}

std::uint8_t ordered(const State& state, const Cube_Position& at, int x, int y) {
  const KT_Color_Cube& cube = state.cube;
  const int strides[3] = {cube.red_stride, cube.green_stride, cube.blue_stride};
  int index = cube.base_index + cube.red_stride * (at.rgb[0] >> 16) +
              cube.green_stride * (at.rgb[1] >> 16) + (at.rgb[2] >> 16);
  // Each channel whose fraction reaches the threshold takes one more step of its stride.
  for (int k = 0; k < 3; ++k)
    if (65535 - (at.rgb[k] & 0xFFFF) <= threshold(state, x, y)) index += strides[k];
  return low(index);
}

void draw_dot(State& state, Variant v, const KT_Rendition_Data& rendition,
              const KT_DCI_Point& point, const KT_RGB32* color) {
  const int x = point.x - state.origin.x, y = point.y - state.origin.y;
  if (!rendition.display_context->depth_enabled) v = without_depth(v);
  const bool merges = !has_depth(v) && state.merge_on(rendition);
  if (has_depth(v)) {
    auto& stored = state.depth.at<std::uint16_t>(x, y);
    if (!depth_passes(v == mapped_z ? 2 : state.zbuffer_test, point.z, stored)) return;
    if (v == mapped_z || state.zbuffer_write) stored = static_cast<std::uint16_t>(point.z);
  } else if (state.hidden(x, y)) {
    return;
  }
  if (is_mapped(v)) {
    auto& pixel = state.color.at<std::uint8_t>(x, y);
    const std::uint8_t index = color ? dithered(state, cube_position(state, *color), x, y)
                                     : low(static_cast<int>(rendition.material->color_index));
    pixel = merges && !color ? merge_mapped(state, pixel, index) : index;
    return;
  }
  auto& pixel = state.color.at<KT_RGB32>(x, y);
  const KT_RGB32 source = color ? *color : rendition.material->color;
  pixel = merges         ? merge_rgb(state, pixel, source)
          : has_alpha(v) ? blend_by(weight_of(source.alpha) * 256, pixel, source)
                         : source;
}

}  // namespace model
