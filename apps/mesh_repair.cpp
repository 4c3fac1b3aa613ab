#include "apps/mesh_repair.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

namespace kv {
namespace {

Vec3 position_of(const Mesh& mesh, std::size_t corner) {
  return widen(mesh.vertices[mesh.indices[corner]].position);
}

// Twice the area long, on the side from which the triangle runs counter-clockwise.
Vec3 facet_vector(const Mesh& mesh, std::size_t triangle) {
  const Vec3 a = position_of(mesh, 3 * triangle);
  return cross(position_of(mesh, 3 * triangle + 1) - a, position_of(mesh, 3 * triangle + 2) - a);
}

void drop_flat_triangles(Mesh& mesh) {
  std::size_t kept = 0;
  for (std::size_t t = 0; t < mesh.indices.size() / 3; ++t) {
    if (length(facet_vector(mesh, t)) == 0) continue;
    std::copy_n(mesh.indices.begin() + static_cast<std::ptrdiff_t>(3 * t), 3,
                mesh.indices.begin() + static_cast<std::ptrdiff_t>(3 * kept));
    ++kept;
  }
  mesh.indices.resize(3 * kept);
}

// Positions are compared by their bits, in which -0 is not 0.
void unify_zeros(Mesh& mesh) {
  for (Vertex& vertex : mesh.vertices) {
    const Vec3f p = vertex.position;
    vertex.position = {p.x + 0.0f, p.y + 0.0f, p.z + 0.0f};
  }
}

// Which triangles meet in each place, places being vertices with the same position.
struct Meeting {
  std::vector<std::uint32_t> place_of_vertex;  // of those in use
  std::vector<std::uint32_t> first;            // by place, and one more
  std::vector<std::uint32_t> triangles;        // sorted by place
};

Meeting meeting_of(const Mesh& mesh) {
  Meeting meeting;
  const std::size_t vertices = mesh.vertices.size();
  meeting.place_of_vertex.resize(vertices);
  const meshopt_Stream positions{&mesh.vertices[0].position, sizeof(Vec3f), sizeof(Vertex)};
  const std::size_t places =
      meshopt_generateVertexRemapMulti(meeting.place_of_vertex.data(), mesh.indices.data(),
                                       mesh.indices.size(), vertices, &positions, 1);
  meeting.first.assign(places + 1, 0);
  for (const std::uint32_t vertex : mesh.indices)
    ++meeting.first[meeting.place_of_vertex[vertex] + 1];
  for (std::size_t p = 0; p < places; ++p) meeting.first[p + 1] += meeting.first[p];
  meeting.triangles.resize(mesh.indices.size());
  std::vector<std::uint32_t> next(meeting.first.begin(), meeting.first.end() - 1);
  for (std::size_t corner = 0; corner < mesh.indices.size(); ++corner) {
    const std::uint32_t place = meeting.place_of_vertex[mesh.indices[corner]];
    meeting.triangles[next[place]++] = static_cast<std::uint32_t>(corner / 3);
  }
  return meeting;
}

// The mean of the facets around a corner that are not beyond an edge, larger ones counting more.
Vec3 corner_normal(const std::vector<Vec3>& facets, const std::vector<Vec3>& directions,
                   std::span<const std::uint32_t> around, std::size_t own) {
  // Comparing each facet with each takes too long at a hub of many thousands, where it matters
  // little as well: there the facet stands for itself.
  constexpr std::size_t hub = 1000;
  if (around.size() > hub) return directions[own];
  static const double least_cosine = std::cos(crease_degrees * std::numbers::pi / 180);
  Vec3 sum;
  for (const std::uint32_t other : around)
    if (dot(directions[own], directions[other]) >= least_cosine) sum = sum + facets[other];
  return normalized(sum);
}

void make_normals(Mesh& mesh) {
  const std::size_t triangles = mesh.indices.size() / 3;
  std::vector<Vec3> facets(triangles), directions(triangles);
  for (std::size_t t = 0; t < triangles; ++t) {
    facets[t] = facet_vector(mesh, t);
    directions[t] = normalized(facets[t]);
  }
  const Meeting meeting = meeting_of(mesh);
  std::vector<Vertex> corners(mesh.indices.size());
  for (std::size_t corner = 0; corner < corners.size(); ++corner) {
    const std::uint32_t vertex = mesh.indices[corner];
    const std::uint32_t place = meeting.place_of_vertex[vertex];
    const std::span<const std::uint32_t> around(meeting.triangles.data() + meeting.first[place],
                                                meeting.first[place + 1] - meeting.first[place]);
    corners[corner] = mesh.vertices[vertex];
    corners[corner].normal = narrow(corner_normal(facets, directions, around, corner / 3));
  }
  mesh.vertices = std::move(corners);
  for (std::size_t i = 0; i < mesh.indices.size(); ++i)
    mesh.indices[i] = static_cast<std::uint32_t>(i);
  mesh.has_normals = true;
}

// Equal vertices become one, which is what lets triangles form strips; unused ones go.
void join_vertices(Mesh& mesh) {
  std::vector<std::uint32_t> remap(mesh.vertices.size());
  const std::size_t distinct =
      meshopt_generateVertexRemap(remap.data(), mesh.indices.data(), mesh.indices.size(),
                                  mesh.vertices.data(), mesh.vertices.size(), sizeof(Vertex));
  std::vector<Vertex> joined(distinct);
  meshopt_remapVertexBuffer(joined.data(), mesh.vertices.data(), mesh.vertices.size(),
                            sizeof(Vertex), remap.data());
  meshopt_remapIndexBuffer(mesh.indices.data(), mesh.indices.data(), mesh.indices.size(),
                           remap.data());
  mesh.vertices = std::move(joined);
}

}  // namespace

void repair_mesh(Mesh& mesh) {
  unify_zeros(mesh);
  drop_flat_triangles(mesh);
  if (mesh.indices.empty()) {
    mesh.vertices.clear();
    return;
  }
  if (!mesh.has_normals) make_normals(mesh);
  join_vertices(mesh);
}

}  // namespace kv
