// Strips by the mesh library, cut into pieces that a module draws without an allocation.
#include "apps/scene/strips.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>

namespace kv {
namespace {

using Chain = std::span<const std::uint32_t>;

constexpr std::size_t most_triangles = longest_strip - 2;

// Chains turn around by triangles that have a corner twice.
bool is_turn(Chain chain, std::size_t t) {
  return chain[t] == chain[t + 1] || chain[t + 1] == chain[t + 2] || chain[t] == chain[t + 2];
}

void add_strip(Strip_Set& set, Chain strip) {
  set.indices.insert(set.indices.end(), strip.begin(), strip.end());
  set.first.push_back(static_cast<std::uint32_t>(set.indices.size()));
}

// Adds a chain in strips that share two points, without its turns: these would be drawn as lines.
void add_chain(Strip_Set& set, Chain chain) {
  const std::size_t triangles = chain.size() < 3 ? 0 : chain.size() - 2;
  for (std::size_t t = 0; t < triangles;) {
    if (is_turn(chain, t)) {
      ++t;
    } else if (t % 2 == 1) {
      // Strips begin with the winding of an even triangle: this one goes alone.
      add_strip(set, std::array{chain[t + 1], chain[t], chain[t + 2]});
      ++t;
    } else {
      std::size_t end = t + 1;
      while (end < triangles && end - t < most_triangles && !is_turn(chain, end)) ++end;
      add_strip(set, chain.subspan(t, end - t + 2));
      t = end;
    }
  }
}

}  // namespace

Strip_Set make_strips(const Mesh& mesh) {
  static_assert(longest_strip % 2 == 0);
  constexpr std::uint32_t restart = ~std::uint32_t{0};
  const std::size_t index_count = mesh.indices.size();
  Strip_Set set;
  if (index_count == 0 || mesh.has_polygons()) return set;
  std::vector<std::uint32_t> ordered(index_count);
  meshopt_optimizeVertexCacheStrip(ordered.data(), mesh.indices.data(), index_count,
                                   mesh.vertices.size());
  std::vector<std::uint32_t> chain(meshopt_stripifyBound(index_count));
  chain.resize(
      meshopt_stripify(chain.data(), ordered.data(), index_count, mesh.vertices.size(), restart));
  for (auto start = chain.begin(); start != chain.end();) {
    const auto end = std::find(start, chain.end(), restart);
    add_chain(set, Chain(start, end));
    start = end == chain.end() ? end : end + 1;
  }
  return set;
}

}  // namespace kv
