// Meshes as they come from files, made ready to be drawn.
#include "apps/load/mesh_repair.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/apps/shapes.h"

namespace {

using namespace kv;

TEST(Mesh_Repair, keeps_edges_sharp_and_makes_round_surfaces_smooth) {
  Mesh box = shapes::box({}, {1, 2, 3}).meshes[0], sphere = shapes::sphere(24);
  repair_mesh(box);
  EXPECT_EQ(box.vertices.size(), 24u);  // each corner once for each of its three sides
  for (const Vertex& v : box.vertices) {
    const Vec3 n = widen(v.normal);
    EXPECT_EQ(std::abs(n.x) + std::abs(n.y) + std::abs(n.z), 1);
    EXPECT_GT(dot(n, widen(v.position)), 0) << "points inward";
  }
  repair_mesh(sphere);
  EXPECT_LT(sphere.vertices.size(), 24u * 48 + 60);
  for (const Vertex& v : sphere.vertices) EXPECT_GT(dot(widen(v.normal), widen(v.position)), 0.99);
  for (Vertex& v : sphere.vertices) v.normal = {0, 1, 0};
  repair_mesh(sphere);
  for (const Vertex& v : sphere.vertices) EXPECT_EQ(v.normal.y, 1) << "the model's own is kept";
}

// Of any number of corners, also when it is no multiple of three.
TEST(Mesh_Repair, keeps_polygons_whole) {
  Mesh box = shapes::box({}, {1, 2, 3}).meshes[0];
  box.indices = {0, 2, 3, 1, 4, 5, 7, 6, 0, 1, 5, 4, 2, 6,
                 7, 3, 0, 4, 6, 2, 1, 3, 7, 5, 0, 1, 0, 1};
  box.face_sizes.assign(7, 4);
  Mesh quad = box;
  quad.indices.resize(4);
  quad.face_sizes = {4};
  repair_mesh(box);
  repair_mesh(quad);
  EXPECT_EQ(box.face_sizes, std::vector<std::uint32_t>(6, 4)) << "the flat one goes";
  EXPECT_EQ(box.vertices.size(), 24u);
  EXPECT_EQ(quad.vertices.size(), 4u);
  for (const Vertex& v : quad.vertices) EXPECT_EQ(v.normal.z, -1);
}

TEST(Mesh_Repair, joins_a_soup_of_triangles_even_across_signed_zeros) {
  Mesh box = shapes::box({0.5, 0.5, 0.5}, {1, 1, 1}).meshes[0], soup;
  for (std::size_t i = 0; i < box.indices.size(); ++i) {
    Vertex v = box.vertices[box.indices[i]];
    if (v.position.y == 0 && i % 2) v.position.y = -0.0f;
    soup.vertices.push_back(v);
    soup.indices.push_back(static_cast<std::uint32_t>(i));
  }
  repair_mesh(soup);
  EXPECT_EQ(soup.vertices.size(), 24u);
}

TEST(Mesh_Repair, drops_what_has_no_area_and_what_is_not_used) {
  Mesh mesh = shapes::box({}, {1, 1, 1}).meshes[0];
  mesh.indices.insert(mesh.indices.end(), {0, 0, 1, 2, 2, 2});
  mesh.vertices.push_back({});
  repair_mesh(mesh);
  EXPECT_EQ(mesh.indices.size(), 36u);
  EXPECT_EQ(mesh.vertices.size(), 24u);
}

}  // namespace
