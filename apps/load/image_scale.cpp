// A linear filter, along rows first and then along columns: enlarged, texels run into each other;
// reduced, each pixel is the mean of all texels that it covers. What a pixel becomes depends on its
// place in the whole picture alone, so that pictures can be made in parts.
#include "apps/load/image_scale.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

namespace kv {
namespace {

// Pixel p covers the texels from p * scale + shift to (p + 1) * scale + shift.
struct Axis {
  double scale, shift;
  std::int64_t size;  // texels
};

struct Weights {
  std::int64_t first = 0;
  std::vector<float> of_texel;
};

Weights weights_at(const Axis& axis, std::int64_t pixel) {
  const double middle = (static_cast<double>(pixel) + 0.5) * axis.scale + axis.shift - 0.5;
  const double radius = std::max(axis.scale, 1.0);
  const auto clamped = [&](double texel) {
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(texel), 0, axis.size - 1);
  };
  Weights weights{clamped(std::ceil(middle - radius)), {}};
  const std::int64_t last = clamped(std::floor(middle + radius));
  double sum = 0;
  for (std::int64_t texel = weights.first; texel <= last; ++texel) {
    const double weight = std::max(0.0, 1 - std::abs(static_cast<double>(texel) - middle) / radius);
    sum += weight;
    weights.of_texel.push_back(static_cast<float>(weight));
  }
  // Beside the image there is the texel of its border alone.
  if (sum <= 0) weights.of_texel.assign(1, static_cast<float>(sum = 1));
  for (float& weight : weights.of_texel) weight = static_cast<float>(weight / sum);
  return weights;
}

// Colours are weighted by their alpha: what cannot be seen has no colour.
struct Sum {
  float red = 0, green = 0, blue = 0, alpha = 0;

  void add(const Sum& other, float weight) {
    red += weight * other.red;
    green += weight * other.green;
    blue += weight * other.blue;
    alpha += weight * other.alpha;
  }
  static Sum of(const Texel& texel) {
    const float alpha = texel.alpha;
    return {texel.red * alpha, texel.green * alpha, texel.blue * alpha, alpha};
  }
  Texel texel() const {
    const auto byte = [](float value) {
      return static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
    };
    if (alpha <= 0) return {0, 0, 0, 0};
    return {byte(red / alpha), byte(green / alpha), byte(blue / alpha), byte(alpha)};
  }
};

// A part of a scaled picture, its left top pixel at (x, y).
struct Window {
  std::int64_t x, y;
  std::uint32_t width, height;
};

Image scaled(const Image& image, const Axis& across, const Axis& down, const Window& window) {
  std::vector<Weights> columns;
  for (std::uint32_t x = 0; x < window.width; ++x)
    columns.push_back(weights_at(across, window.x + x));
  std::map<std::int64_t, std::vector<Sum>> rows;  // of texels, already filtered along
  const auto row_at = [&](std::int64_t line) -> const std::vector<Sum>& {
    std::vector<Sum>& row = rows[line];
    if (!row.empty()) return row;
    row.resize(window.width);
    for (std::uint32_t x = 0; x < window.width; ++x)
      for (std::size_t i = 0; i < columns[x].of_texel.size(); ++i)
        row[x].add(Sum::of(image.at(
                       static_cast<std::uint32_t>(columns[x].first) + static_cast<std::uint32_t>(i),
                       static_cast<std::uint32_t>(line))),
                   columns[x].of_texel[i]);
    return row;
  };
  Image result(window.width, window.height);
  std::vector<Sum> sums;
  for (std::uint32_t y = 0; y < window.height; ++y) {
    const Weights lines = weights_at(down, window.y + y);
    rows.erase(rows.begin(), rows.lower_bound(lines.first));
    sums.assign(window.width, {});
    for (std::size_t i = 0; i < lines.of_texel.size(); ++i) {
      const std::vector<Sum>& row = row_at(lines.first + static_cast<std::int64_t>(i));
      for (std::uint32_t x = 0; x < window.width; ++x) sums[x].add(row[x], lines.of_texel[i]);
    }
    for (std::uint32_t x = 0; x < window.width; ++x)
      result.texels[std::size_t{y} * window.width + x] = sums[x].texel();
  }
  return result;
}

}  // namespace

Image resized(const Image& image, std::uint32_t width, std::uint32_t height) {
  if (image.width == width && image.height == height) return image;
  return scaled(image, {static_cast<double>(image.width) / width, 0, image.width},
                {static_cast<double>(image.height) / height, 0, image.height},
                {0, 0, width, height});
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
  const double scale = std::min(static_cast<double>(image.width) / frame.width,
                                static_cast<double>(image.height) / frame.height);
  const Axis across{scale, (image.width - frame.width * scale) / 2, image.width};
  const Axis down{scale, (image.height - frame.height * scale) / 2, image.height};
  return scaled(image, across, down,
                {part.left, frame.height - 1 - part.top,
                 static_cast<std::uint32_t>(part.right - part.left + 1),
                 static_cast<std::uint32_t>(part.top - part.bottom + 1)});
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
