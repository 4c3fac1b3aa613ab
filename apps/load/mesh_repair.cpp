// Meshes as files have them become meshes that can be drawn: no face without an area, a normal at
// each vertex, equal vertices joined.
//
// The mesh library works on lists of triangles, or on vertices without indices. Meshes with
// polygons are therefore given separate corners first: then the vertices are the corners, in order.
#include "apps/load/mesh_repair.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

#include "apps/load/flat_regions.h"

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

struct Remap {
  std::vector<std::uint32_t> of_vertex;  // the same number for equal items
  std::size_t count = 0;                 // distinct items
};

// Numbers the items of the vertices in use, one a vertex, so that equal bytes have equal numbers.
template <class Item>
Remap remap_of(const Mesh& mesh, const std::vector<Item>& items) {
  Remap remap;
  remap.of_vertex.resize(items.size());
  const std::uint32_t* const triangles = mesh.has_polygons() ? nullptr : mesh.indices.data();
  remap.count = meshopt_generateVertexRemap(remap.of_vertex.data(), triangles, mesh.indices.size(),
                                            items.data(), items.size(), sizeof(Item));
  return remap;
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
  Remap places;
  std::vector<std::uint32_t> first;  // by place, and one more
  std::vector<std::uint32_t> faces;  // sorted by place
};

Meeting meeting_of(const Mesh& mesh) {
  std::vector<Vec3f> positions;
  positions.reserve(mesh.vertices.size());
  for (const Vertex& vertex : mesh.vertices) positions.push_back(vertex.position);
  Meeting meeting{remap_of(mesh, positions), {}, {}};
  const std::size_t places = meeting.places.count;
  meeting.first.assign(places + 1, 0);
  for (const std::uint32_t vertex : mesh.indices)
    ++meeting.first[meeting.places.of_vertex[vertex] + 1];
  for (std::size_t p = 0; p < places; ++p) meeting.first[p + 1] += meeting.first[p];
  meeting.faces.resize(mesh.indices.size());
  std::vector<std::uint32_t> next(meeting.first.begin(), meeting.first.end() - 1);
  std::uint32_t number = 0;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    for (const std::uint32_t vertex : face)
      meeting.faces[next[meeting.places.of_vertex[vertex]]++] = number;
    ++number;
  });
  return meeting;
}

// The faces of a mesh for its normals.
struct Facets {
  std::vector<Vec3> areas, directions;  // area vectors, and these of unit length
  std::vector<double> regions;          // the area of the flat region that each is part of
};

// The mean of the facets around a corner that are not beyond an edge, larger ones counting more. A
// flat region much larger than another keeps its normal up to its border, so that it looks flat.
Vec3 corner_normal(const Facets& facets, std::span<const std::uint32_t> around, std::size_t own) {
  const std::vector<Vec3>& directions = facets.directions;
  // Comparing each facet with each takes too long at a hub of many thousands, where it matters
  // little as well: there the facet's own normal is used.
  constexpr std::size_t hub = 1000;
  if (around.size() > hub) return directions[own];
  static const double least_cosine = std::cos(crease_degrees * std::numbers::pi / 180);
  constexpr double much_larger = 8;
  Vec3 sum, of_regions;
  double least = HUGE_VAL, most = 0;
  for (const std::uint32_t other : around) {
    if (dot(directions[own], directions[other]) < least_cosine) continue;
    const double region = facets.regions[other];
    sum = sum + facets.areas[other];
    of_regions = of_regions + directions[other] * region;
    least = std::min(least, region);
    most = std::max(most, region);
  }
  return normalized(most > much_larger * least ? of_regions : sum);
}

void make_normals(Mesh& mesh) {
  Facets facets;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    facets.areas.push_back(area_vector(mesh, face));
    facets.directions.push_back(normalized(facets.areas.back()));
  });
  const Meeting meeting = meeting_of(mesh);
  facets.regions = region_areas(facets.areas, facets.directions, meeting.first, meeting.faces);
  std::vector<Vec3f> normals;
  normals.reserve(mesh.indices.size());
  std::size_t own = 0;
  for_each_face(mesh, [&](std::span<const std::uint32_t> face) {
    for (const std::uint32_t vertex : face) {
      const std::uint32_t place = meeting.places.of_vertex[vertex];
      const std::span<const std::uint32_t> around(meeting.faces.data() + meeting.first[place],
                                                  meeting.first[place + 1] - meeting.first[place]);
      normals.push_back(narrow(corner_normal(facets, around, own)));
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
  const Remap remap = remap_of(mesh, mesh.vertices);
  std::vector<Vertex> joined(remap.count);
  meshopt_remapVertexBuffer(joined.data(), mesh.vertices.data(), mesh.vertices.size(),
                            sizeof(Vertex), remap.of_vertex.data());
  for (std::uint32_t& index : mesh.indices) index = remap.of_vertex[index];
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
