// Strips of a mesh, and a scene as strips on the device.
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
  Mesh soup;  // triangles that share corners at random
  soup.vertices.resize(50);
  std::mt19937 random(3);
  const auto up_to_20 = [&] { return static_cast<std::uint32_t>(random() % 20); };
  for (std::uint32_t i = 0; i < 900; ++i)
    soup.indices.insert(soup.indices.end(),
                        {i % 50, (i + 1 + up_to_20()) % 50, (i + 21 + up_to_20()) % 50});
  const std::vector<Mesh> meshes = {shapes::sphere(40), soup, Mesh{}};
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

class Geometry : public testing::TestWithParam<Mode> {};

TEST_P(Geometry, is_complete_on_the_device_and_red) {
  const Scene scene = scene_of(shapes::sphere(16));
  const View view({}, 200, 100, scene.model);
  const Device_Geometry geometry = device_geometry(scene, view, GetParam());
  std::size_t triangles = 0;
  bool front_seen = false;
  for (const Device_Strip& strip : geometry.strips()) {
    triangles += strip.point_count - 2;
    EXPECT_FALSE(front_seen && strip.faces_away) << "a back is drawn after a front";
    front_seen = front_seen || !strip.faces_away;
    for (const KT_Point& p : geometry.points(strip))
      EXPECT_TRUE(p.x >= 0 && p.x <= 200 && p.y >= 0 && p.y <= 100) << p.x << " " << p.y;
    for (const KT_RGB32& c : geometry.colors(strip))
      EXPECT_TRUE(c.red > c.green + 20 && c.alpha == 255);
  }
  EXPECT_EQ(triangles, triangle_count(scene.model));
}

INSTANTIATE_TEST_SUITE_P(Modes, Geometry, testing::Values(Mode::shaded, Mode::flat));

}  // namespace
