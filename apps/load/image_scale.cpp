// Images in other sizes, by a linear filter: enlarged, texels run into each other; reduced, each
// pixel is the mean of all texels that it covers, weighted by their alpha.
//
// Backgrounds are scaled in blocks at fixed places of the whole picture. What a pixel becomes
// depends on its block alone, so that a picture may be made in parts.
#include "apps/load/image_scale.h"

#include <algorithm>
#include <cmath>
#include <new>

// The library asserts that weights add up to about 1 before it normalizes them, which those of a
// linear filter need not.
#define STBIR_ASSERT(condition) static_cast<void>(0)
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image_resize.h>
#pragma GCC diagnostic pop

namespace kv {
namespace {

constexpr int block_side = 64;

// Pixel p covers the texels from p * texels_a_pixel + start to (p + 1) * texels_a_pixel + start.
struct Axis {
  double texels_a_pixel, start;
  int size;  // texels
};

// A run of pixels along an axis.
struct Run {
  int first, count;
  Axis axis;

  double start() const { return first * axis.texels_a_pixel + axis.start; }
  double end() const { return (first + count) * axis.texels_a_pixel + axis.start; }
  // The texels that the filter reads, and one more.
  double reach() const { return std::max(axis.texels_a_pixel, 1.0) + 1; }
  int first_texel() const {
    return std::clamp(static_cast<int>(std::floor(start() - reach())), 0, axis.size - 1);
  }
  int texel_count() const {
    const int last = static_cast<int>(std::ceil(end() + reach()));
    return std::clamp(last - first_texel(), 1, axis.size - first_texel());
  }
  float scale() const { return static_cast<float>(1 / axis.texels_a_pixel); }
  // From the first texel on, in pixels.
  float offset() const {
    return static_cast<float>((start() - first_texel()) / axis.texels_a_pixel);
  }
};

Image scaled(const Image& image, const Run& across, const Run& down) {
  constexpr int channels = 4, alpha = 3, no_flags = 0;
  const int row_bytes = static_cast<int>(image.width * sizeof(Texel));
  const Texel& first = image.at(static_cast<std::uint32_t>(across.first_texel()),
                                static_cast<std::uint32_t>(down.first_texel()));
  Image result(static_cast<std::uint32_t>(across.count), static_cast<std::uint32_t>(down.count));
  const int done = stbir_resize_subpixel(
      &first, across.texel_count(), down.texel_count(), row_bytes, result.texels.data(),
      across.count, down.count, 0, STBIR_TYPE_UINT8, channels, alpha, no_flags, STBIR_EDGE_CLAMP,
      STBIR_EDGE_CLAMP, STBIR_FILTER_TRIANGLE, STBIR_FILTER_TRIANGLE, STBIR_COLORSPACE_LINEAR,
      nullptr, across.scale(), down.scale(), across.offset(), down.offset());
  if (done == 0) throw std::bad_alloc();
  return result;
}

// Puts a block's top left pixel at (left, top) of the result; what falls beside it is cut.
void copy_block(const Image& block, int left, int top, Image& result) {
  const int from = std::max(left, 0);
  const int to = std::min(left + static_cast<int>(block.width), static_cast<int>(result.width));
  const int end = std::min(top + static_cast<int>(block.height), static_cast<int>(result.height));
  for (int y = std::max(top, 0); y < end; ++y)
    std::copy_n(
        &block.at(static_cast<std::uint32_t>(from - left), static_cast<std::uint32_t>(y - top)),
        to - from, result.texels.begin() + std::ptrdiff_t{y} * result.width + from);
}

Run whole(std::uint32_t size, std::uint32_t pixels) {
  return {
      0, static_cast<int>(pixels), {static_cast<double>(size) / pixels, 0, static_cast<int>(size)}};
}

}  // namespace

Image resized(const Image& image, std::uint32_t width, std::uint32_t height) {
  if (image.width == width && image.height == height) return image;
  return scaled(image, whole(image.width, width), whole(image.height, height));
}

Image in_blocks(const Image& image, std::uint32_t width, std::uint32_t height) {
  Image result(width, height);
  for (std::uint32_t y = 0; y < height; ++y)
    for (std::uint32_t x = 0; x < width; ++x)
      result.texels[std::size_t{y} * width + x] =
          image.at(x / (width / image.width), y / (height / image.height));
  return result;
}

Image covering(const Image& image, const Size& frame, const KT_Int_Rectangle& part) {
  const double texels_a_pixel = std::min(static_cast<double>(image.width) / frame.width,
                                         static_cast<double>(image.height) / frame.height);
  const Axis across{texels_a_pixel, (image.width - frame.width * texels_a_pixel) / 2,
                    static_cast<int>(image.width)};
  const Axis down{texels_a_pixel, (image.height - frame.height * texels_a_pixel) / 2,
                  static_cast<int>(image.height)};
  const int top = frame.height - 1 - part.top, bottom = frame.height - 1 - part.bottom;
  Image result(static_cast<std::uint32_t>(part.right - part.left + 1),
               static_cast<std::uint32_t>(part.top - part.bottom + 1));
  for (int y = top - top % block_side; y <= bottom; y += block_side)
    for (int x = part.left - part.left % block_side; x <= part.right; x += block_side) {
      const int width = std::min(block_side, frame.width - x);
      const int height = std::min(block_side, frame.height - y);
      const Image block = scaled(image, {x, width, across}, {y, height, down});
      copy_block(block, x - part.left, y - top, result);
    }
  return result;
}

Image flattened(Image image, Texel paper) {
  for (Texel& texel : image.texels) {
    const auto mix = [&](std::uint8_t over, std::uint8_t under) {
      return static_cast<std::uint8_t>((over * texel.alpha + under * (255 - texel.alpha) + 127) /
                                       255);
    };
    texel = {mix(texel.red, paper.red), mix(texel.green, paper.green), mix(texel.blue, paper.blue),
             255};
  }
  return image;
}

}  // namespace kv
