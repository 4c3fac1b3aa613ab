// Vertices are sorted by their distance from the middle one of each axis; the bulk ends before a
// leap in these distances.
#include "apps/scene/bulk.h"

#include <algorithm>
#include <vector>

namespace kv {
namespace {

constexpr double leap = 1000;

// The middle value of each axis, by a part of the vertices where there are many.
Vec3 middle_of(const std::vector<Vec3f>& positions) {
  constexpr std::size_t enough = 10000;
  const std::size_t step = positions.size() / enough + 1;
  const auto middle = [&](float Vec3f::*axis) {
    std::vector<float> values;
    for (std::size_t i = 0; i < positions.size(); i += step) values.push_back(positions[i].*axis);
    const auto half = values.begin() + std::ssize(values) / 2;
    std::nth_element(values.begin(), half, values.end());
    return *half;
  };
  return widen(Vec3f{middle(&Vec3f::x), middle(&Vec3f::y), middle(&Vec3f::z)});
}

}  // namespace

Found_Bulk bulk_of(const Model& model) {
  constexpr std::size_t fewest = 5;
  std::vector<Vec3f> positions;
  for_each_position(model, [&](Vec3f position) { positions.push_back(position); });
  Found_Bulk found{{}, positions.size()};
  if (positions.size() < fewest) return found;
  const Vec3 middle = middle_of(positions);
  std::vector<double> distances;
  distances.reserve(positions.size());
  for (const Vec3f& position : positions) distances.push_back(length(widen(position) - middle));
  const auto most = distances.begin() + (std::ssize(distances) - 1) * 3 / 4;
  std::nth_element(distances.begin(), most, distances.end());
  if (*std::max_element(most, distances.end()) <= leap * *most) return found;
  std::sort(most, distances.end());
  const auto last = std::adjacent_find(
      most, distances.end(), [](double near, double far) { return near > 0 && far > leap * near; });
  if (last == distances.end()) return found;
  found.bulk = {middle, *last};
  found.left_out = static_cast<std::size_t>(distances.end() - last) - 1;
  return found;
}

}  // namespace kv
