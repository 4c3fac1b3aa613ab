// Faces are joined where they meet in a place, in sets that point to their first face.
#include "apps/load/flat_regions.h"

#include <cmath>
#include <numbers>
#include <numeric>

namespace kv {
namespace {

constexpr double flat_degrees = 0.5;
// Around a hub of many faces not every pair is compared.
constexpr std::size_t most_around = 64;

class Sets {
 public:
  explicit Sets(std::size_t count) : parent_(count) {
    std::iota(parent_.begin(), parent_.end(), 0u);
  }

  std::uint32_t find(std::uint32_t item) {
    while (parent_[item] != item) item = parent_[item] = parent_[parent_[item]];
    return item;
  }
  void join(std::uint32_t a, std::uint32_t b) { parent_[find(a)] = find(b); }

 private:
  std::vector<std::uint32_t> parent_;
};

}  // namespace

std::vector<double> region_areas(std::span<const Vec3> facets, std::span<const Vec3> directions,
                                 std::span<const std::uint32_t> first,
                                 std::span<const std::uint32_t> faces) {
  static const double least_cosine = std::cos(flat_degrees * std::numbers::pi / 180);
  const auto face_total = static_cast<std::uint32_t>(facets.size());
  Sets regions(facets.size());
  for (std::size_t place = 0; place + 1 < first.size(); ++place) {
    const auto around = faces.subspan(first[place], first[place + 1] - first[place]);
    if (around.size() > most_around) continue;
    for (std::size_t i = 0; i < around.size(); ++i)
      for (std::size_t k = i + 1; k < around.size(); ++k)
        if (dot(directions[around[i]], directions[around[k]]) >= least_cosine)
          regions.join(around[i], around[k]);
  }
  std::vector<double> sums(facets.size(), 0.0), areas(facets.size());
  for (std::uint32_t face = 0; face < face_total; ++face)
    sums[regions.find(face)] += length(facets[face]);
  for (std::uint32_t face = 0; face < face_total; ++face) areas[face] = sums[regions.find(face)];
  return areas;
}

}  // namespace kv
