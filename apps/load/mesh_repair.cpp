#include "apps/load/mesh_repair.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

namespace kv {
namespace {

void drop_flat_faces(Mesh& mesh) {
  std::vector<std::uint32_t> indices, sizes;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    if (length(area_vector(mesh, face)) == 0) return;
    indices.insert(indices.end(), face.begin(), face.end());
    if (mesh.has_polygons()) sizes.push_back(static_cast<std::uint32_t>(face.size()));
  });
  mesh.indices = std::move(indices);
  mesh.face_sizes = std::move(sizes);
}

// Gives each corner of a face a vertex of its own, the indices counting up.
void separate_corners(Mesh& mesh) {
  std::vector<Vertex> corners(mesh.indices.size());
  for (std::size_t i = 0; i < corners.size(); ++i) {
    corners[i] = mesh.vertices[mesh.indices[i]];
    mesh.indices[i] = static_cast<std::uint32_t>(i);
  }
  mesh.vertices = std::move(corners);
}

// The library knows lists of triangles; corners of other faces are told to it as a plain list of
// vertices, which separate corners are.
struct Corner_List {
  const std::uint32_t* indices;
  std::size_t count;
};

Corner_List corner_list(const Mesh& mesh) {
  return {mesh.has_polygons() ? nullptr : mesh.indices.data(), mesh.indices.size()};
}

// Positions are compared by their bits, in which -0 is not 0.
void unify_zeros(Mesh& mesh) {
  for (Vertex& vertex : mesh.vertices) {
    const Vec3f p = vertex.position;
    vertex.position = {p.x + 0.0f, p.y + 0.0f, p.z + 0.0f};
    vertex.place = {vertex.place.s + 0.0f, vertex.place.t + 0.0f};
  }
}

// Which faces meet in each place, places being vertices with the same position.
struct Meeting {
  std::vector<std::uint32_t> place_of_vertex;  // of those in use
  std::vector<std::uint32_t> first;            // by place, and one more
  std::vector<std::uint32_t> faces;            // sorted by place
};

Meeting meeting_of(const Mesh& mesh) {
  Meeting meeting;
  const std::size_t vertices = mesh.vertices.size();
  meeting.place_of_vertex.resize(vertices);
  const meshopt_Stream positions{&mesh.vertices[0].position, sizeof(Vec3f), sizeof(Vertex)};
  const Corner_List corners = corner_list(mesh);
  const std::size_t places = meshopt_generateVertexRemapMulti(
      meeting.place_of_vertex.data(), corners.indices, corners.count, vertices, &positions, 1);
  meeting.first.assign(places + 1, 0);
  for (const std::uint32_t vertex : mesh.indices)
    ++meeting.first[meeting.place_of_vertex[vertex] + 1];
  for (std::size_t p = 0; p < places; ++p) meeting.first[p + 1] += meeting.first[p];
  meeting.faces.resize(mesh.indices.size());
  std::vector<std::uint32_t> next(meeting.first.begin(), meeting.first.end() - 1);
  std::uint32_t number = 0;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    for (const std::uint32_t vertex : face)
      meeting.faces[next[meeting.place_of_vertex[vertex]]++] = number;
    ++number;
  });
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
  std::vector<Vec3> facets, directions;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    facets.push_back(area_vector(mesh, face));
    directions.push_back(normalized(facets.back()));
  });
  const Meeting meeting = meeting_of(mesh);
  std::vector<Vec3f> normals;
  normals.reserve(mesh.indices.size());
  std::size_t own = 0;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    for (const std::uint32_t vertex : face) {
      const std::uint32_t place = meeting.place_of_vertex[vertex];
      const std::span<const std::uint32_t> around(meeting.faces.data() + meeting.first[place],
                                                  meeting.first[place + 1] - meeting.first[place]);
      normals.push_back(narrow(corner_normal(facets, directions, around, own)));
    }
    ++own;
  });
  separate_corners(mesh);
  for (std::size_t i = 0; i < normals.size(); ++i) mesh.vertices[i].normal = normals[i];
  mesh.has_normals = true;
}

// Equal vertices become one, which is what lets triangles form strips; unused ones go.
void join_vertices(Mesh& mesh) {
  static_assert(sizeof(Vertex) == 12 * sizeof(float), "compared by bytes, so without gaps");
  std::vector<std::uint32_t> remap(mesh.vertices.size());
  const Corner_List corners = corner_list(mesh);
  const std::size_t distinct =
      meshopt_generateVertexRemap(remap.data(), corners.indices, corners.count,
                                  mesh.vertices.data(), mesh.vertices.size(), sizeof(Vertex));
  std::vector<Vertex> joined(distinct);
  meshopt_remapVertexBuffer(joined.data(), mesh.vertices.data(), mesh.vertices.size(),
                            sizeof(Vertex), remap.data());
  for (std::uint32_t& index : mesh.indices) index = remap[index];
  mesh.vertices = std::move(joined);
}

}  // namespace

void repair_mesh(Mesh& mesh) {
  unify_zeros(mesh);
  drop_flat_faces(mesh);
  if (mesh.indices.empty()) {
    mesh.vertices.clear();
    return;
  }
  if (mesh.has_polygons()) separate_corners(mesh);
  if (!mesh.has_normals) make_normals(mesh);
  join_vertices(mesh);
}

}  // namespace kv
