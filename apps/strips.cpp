#include "apps/strips.h"

#include <meshoptimizer.h>

#include <algorithm>

namespace kv {
namespace {

// Adds one strip, in pieces that share two points.
void add_strip(Strip_Set& set, std::span<const std::uint32_t> strip) {
  while (strip.size() >= 3) {
    const auto piece = strip.first(std::min(strip.size(), longest_strip));
    set.indices.insert(set.indices.end(), piece.begin(), piece.end());
    set.first.push_back(static_cast<std::uint32_t>(set.indices.size()));
    if (piece.size() == strip.size()) return;
    strip = strip.subspan(piece.size() - 2);
  }
}

}  // namespace

Strip_Set make_strips(const Mesh& mesh) {
  static_assert(longest_strip % 2 == 0);
  constexpr std::uint32_t restart = ~std::uint32_t{0};
  const std::size_t index_count = mesh.indices.size();
  Strip_Set set;
  if (index_count == 0) return set;
  std::vector<std::uint32_t> ordered(index_count);
  meshopt_optimizeVertexCacheStrip(ordered.data(), mesh.indices.data(), index_count,
                                   mesh.vertices.size());
  std::vector<std::uint32_t> chain(meshopt_stripifyBound(index_count));
  chain.resize(meshopt_stripify(chain.data(), ordered.data(), index_count, mesh.vertices.size(),
                                restart));
  for (auto start = chain.begin(); start != chain.end();) {
    const auto end = std::find(start, chain.end(), restart);
    add_strip(set, std::span(start, end));
    start = end == chain.end() ? end : end + 1;
  }
  return set;
}

}  // namespace kv
