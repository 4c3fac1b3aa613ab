#include "apps/load/mesh_repair.h"

#include <gtest/gtest.h>

#include "tests/apps/shapes.h"

namespace {

using namespace kv;

TEST(Mesh_Repair, edges_stay_sharp_and_round_surfaces_become_smooth) {
  Mesh box = shapes::box({}, {1, 2, 3}).meshes[0];
  repair_mesh(box);
  EXPECT_EQ(box.vertices.size(), 24u);  // each corner once for each of its three sides
  for (const Vertex& v : box.vertices) {
    const Vec3 n = widen(v.normal);
    EXPECT_EQ(std::abs(n.x) + std::abs(n.y) + std::abs(n.z), 1);
    EXPECT_GT(dot(n, widen(v.position)), 0) << "points inward";
  }
  Mesh sphere = shapes::sphere(24);
  repair_mesh(sphere);
  EXPECT_LT(sphere.vertices.size(), 24u * 48 + 60);
  for (const Vertex& v : sphere.vertices) EXPECT_GT(dot(widen(v.normal), widen(v.position)), 0.99);
}

TEST(Mesh_Repair, polygons_stay_whole) {
  Mesh box = shapes::box({}, {1, 2, 3}).meshes[0];
  box.indices = {0, 2, 3, 1, 4, 5, 7, 6, 0, 1, 5, 4, 2, 6,
                 7, 3, 0, 4, 6, 2, 1, 3, 7, 5, 0, 1, 0, 1};
  box.face_sizes.assign(7, 4);
  repair_mesh(box);
  EXPECT_EQ(box.face_sizes, std::vector<std::uint32_t>(6, 4)) << "the flat one goes";
  EXPECT_EQ(box.vertices.size(), 24u);
  for (const Vertex& v : box.vertices) EXPECT_GT(dot(widen(v.normal), widen(v.position)), 0);
}

// A count of corners that is no multiple of three.
TEST(Mesh_Repair, one_quadrilateral_is_a_mesh) {
  Mesh quad;
  for (const Vec3f place : {Vec3f{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}})
    quad.vertices.push_back({place, {}, {}});
  quad.indices = {0, 1, 2, 3};
  quad.face_sizes = {4};
  repair_mesh(quad);
  EXPECT_EQ(quad.vertices.size(), 4u);
  EXPECT_EQ(quad.vertices[quad.indices[2]].position.y, 1);
  for (const Vertex& v : quad.vertices) EXPECT_EQ(v.normal.z, 1);
}

TEST(Mesh_Repair, joins_a_soup_of_triangles_even_across_signed_zeros) {
  Mesh soup = shapes::sphere(24), sphere = shapes::sphere(24);
  std::vector<Vertex> corners;
  for (const std::uint32_t index : soup.indices) {
    Vertex v = soup.vertices[index];
    if (v.position.y == 0 && corners.size() % 2) v.position.y = -0.0f;
    corners.push_back(v);
  }
  soup.vertices = corners;
  for (std::size_t i = 0; i < soup.indices.size(); ++i)
    soup.indices[i] = static_cast<std::uint32_t>(i);
  repair_mesh(soup);
  repair_mesh(sphere);
  EXPECT_EQ(soup.vertices.size(), sphere.vertices.size());
}

TEST(Mesh_Repair, drops_what_has_no_area_and_what_is_not_used) {
  Mesh mesh = shapes::box({}, {1, 1, 1}).meshes[0];
  mesh.indices.insert(mesh.indices.end(), {0, 0, 1, 2, 2, 2});
  mesh.vertices.push_back({});
  repair_mesh(mesh);
  EXPECT_EQ(mesh.indices.size(), 36u);
  EXPECT_EQ(mesh.vertices.size(), 24u);
  Mesh empty;
  empty.vertices.resize(5);
  empty.indices = {1, 1, 1};
  repair_mesh(empty);
  EXPECT_TRUE(empty.indices.empty());
}

TEST(Mesh_Repair, keeps_the_normals_of_the_model) {
  Mesh mesh = shapes::sphere(6);
  for (Vertex& v : mesh.vertices) v.normal = {0, 1, 0};
  mesh.has_normals = true;
  repair_mesh(mesh);
  for (const Vertex& v : mesh.vertices) EXPECT_EQ(v.normal.y, 1);
}

// A hub where very many triangles meet must not take the time of their number squared.
TEST(Mesh_Repair, a_hub_of_many_triangles_is_quick) {
  Mesh fan;
  const std::uint32_t spokes = 300'000;
  fan.vertices.push_back({{0, 0, 1}, {}, {}});
  for (std::uint32_t i = 0; i < spokes; ++i) {
    const double angle = 6.283 * i / spokes;
    fan.vertices.push_back({narrow({std::cos(angle), std::sin(angle), 0}), {}, {}});
    if (i > 0) fan.indices.insert(fan.indices.end(), {0, i, i + 1});
  }
  repair_mesh(fan);
  EXPECT_TRUE(fan.has_normals);
}

}  // namespace
