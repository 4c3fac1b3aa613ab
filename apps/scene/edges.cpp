// Edges are found by place, not by vertex: vertices of one place may differ in normal or colour.
#include "apps/scene/edges.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <tuple>

namespace kv {
namespace {

// For each vertex the first one at the same place.
std::vector<std::uint32_t> places_of(const Mesh& mesh) {
  const auto key = [&](std::uint32_t i) {
    const Vec3f p = mesh.vertices[i].position;
    return std::tuple(p.x, p.y, p.z);
  };
  std::vector<std::uint32_t> order(mesh.vertices.size()), places(mesh.vertices.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool again = i > 0 && key(order[i]) == key(order[i - 1]);
    places[order[i]] = again ? places[order[i - 1]] : order[i];
  }
  return places;
}

// One side of a face, by the places of its ends, the smaller first.
struct Side {
  std::uint32_t low, high;
  Edge edge;
  Vec3 normal;
};

std::vector<Side> sides_of(const Mesh& mesh) {
  const std::vector<std::uint32_t> places = places_of(mesh);
  std::vector<Side> sides;
  sides.reserve(mesh.indices.size());
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    const Vec3 normal = normalized(area_vector(mesh, face));
    for (std::size_t i = 0; i < face.size(); ++i) {
      const Edge edge{face[i], face[(i + 1) % face.size()]};
      const auto [low, high] = std::minmax(places[edge.a], places[edge.b]);
      if (low != high) sides.push_back({low, high, edge, normal});
    }
  });
  std::stable_sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
    return std::tie(a.low, a.high) < std::tie(b.low, b.high);
  });
  return sides;
}

bool is_feature(const Side* first, const Side* last) {
  if (last - first != 2) return true;
  static const double flat = std::cos(feature_degrees * std::numbers::pi / 180);
  return std::abs(dot(first[0].normal, first[1].normal)) < flat;
}

// Neighbours may run round in opposite ways.
Bend bend_of(const Side& first, const Side& second) {
  const Vec3 other = dot(first.normal, second.normal) < 0 ? -second.normal : second.normal;
  return {first.edge, narrow(first.normal), narrow(other)};
}

}  // namespace

Edges edges_of(const Mesh& mesh, Edge_Choice choice) {
  const std::vector<Side> sides = sides_of(mesh);
  Edges edges;
  for (const Side *first = sides.data(), *end = first + sides.size(); first != end;) {
    const Side* last = first;
    while (last != end && last->low == first->low && last->high == first->high) ++last;
    if (choice == Edge_Choice::all || is_feature(first, last))
      edges.shown.push_back(first->edge);
    else
      edges.bends.push_back(bend_of(first[0], first[1]));
    first = last;
  }
  return edges;
}

}  // namespace kv
