#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>

#include "apps/load/mesh_repair.h"
#include "apps/scene/device_geometry.h"
#include "tests/apps/shapes.h"

namespace {

using namespace kv;
using Triangle = std::array<std::uint32_t, 3>;

// From its smallest corner on, so that equal triangles of equal winding compare equal.
Triangle normal_form(Triangle t) {
  std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
  return t;
}

std::map<Triangle, int> triangles_of(const Mesh& mesh) {
  std::map<Triangle, int> triangles;
  for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    ++triangles[normal_form({mesh.indices[i], mesh.indices[i + 1], mesh.indices[i + 2]})];
  return triangles;
}

std::map<Triangle, int> triangles_of(const Strip_Set& set) {
  std::map<Triangle, int> triangles;
  for (std::size_t s = 0; s < set.count(); ++s) {
    const auto strip = set.strip(s);
    for (std::size_t t = 0; t + 2 < strip.size(); ++t) {
      const Corners c = strip_triangle(t);
      ++triangles[normal_form({strip[c.a], strip[c.b], strip[c.c]})];
    }
  }
  return triangles;
}

TEST(Strips, hold_every_triangle_once_with_its_winding) {
  std::vector<Mesh> meshes = {shapes::sphere(40), shapes::box({}, {1, 1, 1}).meshes[0], Mesh{}};
  Mesh soup;  // triangles that share corners at random
  soup.vertices.resize(50);
  std::mt19937 random(3);
  while (soup.indices.size() < 3 * 900) {
    const auto a = static_cast<std::uint32_t>(random() % 50);
    soup.indices.insert(soup.indices.end(),
                        {a, (a + 1 + static_cast<std::uint32_t>(random() % 20)) % 50,
                         (a + 21 + static_cast<std::uint32_t>(random() % 20)) % 50});
  }
  meshes.push_back(soup);
  for (const Mesh& mesh : meshes) {
    const Strip_Set set = make_strips(mesh);
    EXPECT_EQ(triangles_of(set), triangles_of(mesh));
    for (std::size_t s = 0; s < set.count(); ++s) {
      EXPECT_GE(set.strip(s).size(), 3u);
      EXPECT_LE(set.strip(s).size(), longest_strip);
    }
  }
  EXPECT_LT(make_strips(shapes::sphere(40)).count(), shapes::sphere(40).indices.size() / 3 / 10);
}

Scene scene_of(Mesh mesh) {
  repair_mesh(mesh);
  return make_scene({{Material{{1, 0, 0, 1}}}, {std::move(mesh)}});
}

std::size_t triangle_count(const Device_Geometry& geometry) {
  std::size_t count = 0;
  for (const Device_Strip& strip : geometry.strips()) count += strip.point_count - 2;
  return count;
}

class Geometry : public testing::TestWithParam<Mode> {};

TEST_P(Geometry, is_complete_on_the_device_and_red) {
  const Scene scene = scene_of(shapes::sphere(16));
  const View view({}, 200, 100, scene.model);
  const Device_Geometry geometry = device_geometry(scene, view, GetParam());
  EXPECT_EQ(triangle_count(geometry), kv::triangle_count(scene.model));
  bool front_seen = false;
  for (const Device_Strip& strip : geometry.strips()) {
    EXPECT_FALSE(front_seen && strip.faces_away) << "a back is drawn after a front";
    front_seen = front_seen || !strip.faces_away;
    for (const KT_Point& p : geometry.points(strip)) {
      EXPECT_TRUE(p.x >= 0 && p.x <= 200 && p.y >= 0 && p.y <= 100) << p.x << " " << p.y;
    }
    for (const KT_RGB32& c : geometry.colors(strip)) {
      EXPECT_GT(c.red, c.green + 20);
      EXPECT_EQ(c.alpha, 255);
    }
  }
}

TEST_P(Geometry, sorts_without_losing_triangles_or_colours) {
  const Scene scene = scene_of(shapes::sphere(8));
  const View view({}, 200, 100, scene.model);
  const Device_Geometry geometry = device_geometry(scene, view, GetParam());
  const Device_Geometry sorted = back_to_front(geometry);
  // Each corner with its colour, or the triangle's first corner with the triangle's colour.
  const auto account = [](const Device_Geometry& g) {
    std::map<std::array<float, 4>, int> seen;
    for (const Device_Strip& strip : g.strips()) {
      const auto points = g.points(strip);
      for (std::size_t t = 0; t + 2 < points.size(); ++t) {
        const std::size_t colored = g.mode() == Mode::flat ? 1 : 3;
        const float x_sum = points[t].x + points[t + 1].x + points[t + 2].x;
        for (std::size_t c = 0; c < colored; ++c) {
          const float tag = g.mode() == Mode::flat ? x_sum : points[t + c].x;
          ++seen[{std::round(tag * 64), 0, 0, static_cast<float>(g.colors(strip)[t + c].red)}];
        }
      }
    }
    return seen;
  };
  EXPECT_EQ(account(sorted), account(geometry));
  float last = 1e9f;
  for (const Device_Strip& strip : sorted.strips()) {
    const auto p = sorted.points(strip);
    const float depth = p[0].z + p[1].z + p[2].z;
    EXPECT_LE(depth, last + 0.1f);
    last = depth;
  }
}

// From inside, the near plane cuts; what remains still has one colour a triangle or a point.
TEST_P(Geometry, is_cut_before_the_eye) {
  const Scene scene = scene_of(shapes::sphere(6));
  Camera_Options camera;
  camera.distance = 0.45;  // just inside
  const View view(camera, 200, 100, scene.model);
  const Device_Geometry geometry = device_geometry(scene, view, GetParam());
  EXPECT_GT(triangle_count(geometry), 0u);
  EXPECT_LT(triangle_count(geometry), kv::triangle_count(scene.model) + 40);
  for (const Device_Strip& strip : geometry.strips())
    for (const KT_Point& p : geometry.points(strip)) {
      EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
      EXPECT_LT(std::abs(p.x), 1e6f);
      EXPECT_TRUE(p.z >= 0 && p.z <= 65535);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, Geometry, testing::Values(Mode::shaded, Mode::flat));

}  // namespace
