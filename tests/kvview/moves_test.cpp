#include "apps/view/moves.h"

#include <gtest/gtest.h>

#include <cmath>

#include "apps/scene/camera.h"
#include "tests/apps/shapes.h"

namespace {

using namespace kv;

constexpr Size window{300, 200};
constexpr Vec3f corner{0.5f, -0.3f, 0.2f};

KT_Point place_of(Vec3f point, const Camera_Options& camera) {
  static const Model model = shapes::box({0, 0, 0}, {2, 1, 1});
  const View view(camera, window.width, window.height, model);
  return view.to_device(view.to_eye(point));
}

class Camera_Move : public testing::TestWithParam<bool> {
 protected:
  Camera_Move() {
    camera_.framing = Framing::steady;
    camera_.orthographic = GetParam();
  }
  Camera_Options camera_;
};

INSTANTIATE_TEST_SUITE_P(Projections, Camera_Move, testing::Bool());

TEST_P(Camera_Move, picture_follows_the_mouse) {
  const KT_Point before = place_of(corner, camera_);
  pan(camera_, {37, -21}, window);
  const KT_Point after = place_of(corner, camera_);
  EXPECT_NEAR(after.x - before.x, 37, 0.01);
  EXPECT_NEAR(after.y - before.y, 21, 0.01);
  EXPECT_EQ(after.z, before.z);
}

TEST_P(Camera_Move, zoom_keeps_what_is_under_the_mouse) {
  pan(camera_, {20, 10}, window);
  const KT_Point before = place_of(corner, camera_);
  const Window_Point mouse{static_cast<int>(before.x), window.height - static_cast<int>(before.y)};
  for (const double steps : {6.0, -9.0, 1.5}) zoom_at(camera_, steps, mouse, window);
  const KT_Point after = place_of(corner, camera_);
  EXPECT_NEAR(after.x, before.x, 1);
  EXPECT_NEAR(after.y, before.y, 1);
  EXPECT_NEAR(camera_.zoom, std::exp2(-1.5 / 6), 1e-5);
  // A point to the right of it has come nearer by the zoom.
  const Vec3f other{0.9f, -0.3f, 0.2f};
  Camera_Options at_first = camera_;
  at_first.zoom = 1;
  const float reach = place_of(other, at_first).x - place_of(corner, at_first).x;
  EXPECT_NEAR(place_of(other, camera_).x - after.x, reach * camera_.zoom, 0.01);
}

TEST_P(Camera_Move, dragging_turns_what_is_near_with_the_mouse) {
  camera_.azimuth = camera_.elevation = 0;
  const Vec3f front{0, 0, 0.5f};
  orbit(camera_, {20, 0});
  EXPECT_GT(place_of(front, camera_).x, window.width / 2.0f);
  orbit(camera_, {-20, -20});
  EXPECT_NEAR(place_of(front, camera_).x, window.width / 2.0f, 1e-3);
  EXPECT_GT(place_of(front, camera_).y, window.height / 2.0f);
}

TEST(Camera_Limits, hold_however_far_the_mouse_goes) {
  Camera_Options camera;
  for (int i = 0; i < 1000; ++i) {
    orbit(camera, {-77, i < 500 ? 50 : -50});
    pan(camera, {100000, -100000}, window);
    zoom_at(camera, i < 500 ? 5 : -5, {0, 0}, window);
    ASSERT_LE(std::abs(camera.azimuth), 180);
    ASSERT_LE(std::abs(camera.elevation), 90);
    ASSERT_LE(std::abs(camera.pan_x), farthest_pan);
    ASSERT_LE(std::abs(camera.pan_y), farthest_pan);
    ASSERT_GE(camera.zoom, least_zoom);
    ASSERT_LE(camera.zoom, greatest_zoom);
  }
}

// The model neither leaves the window nor changes its size: the squares of three edges at right
// angles, as they are seen in parallel projection, have the same sum from all sides.
TEST(Steady_Framing, keeps_size_and_stays_inside_from_all_sides) {
  const Model model = shapes::box({5, -3, 1e4}, {8, 1, 3});
  double sum_before = 0;
  for (const bool orthographic : {true, false})
    for (double azimuth = -180; azimuth < 180; azimuth += 24)
      for (double elevation = -90; elevation <= 90; elevation += 22.5) {
        Camera_Options camera;
        camera.framing = Framing::steady;
        camera.orthographic = orthographic;
        camera.azimuth = azimuth;
        camera.elevation = elevation;
        const View view(camera, window.width, window.height, model);
        const auto place = [&](Vec3f p) { return view.to_device(view.to_eye(p)); };
        for (const Vertex& vertex : model.meshes[0].vertices) {
          const KT_Point p = place(vertex.position);
          ASSERT_TRUE(p.x > 50 && p.x < 250 && p.y > 0 && p.y < 200) << p.x << " " << p.y;
          ASSERT_TRUE(p.z > 0 && p.z < 65535) << p.z;
        }
        if (!orthographic) continue;
        double sum = 0;
        const KT_Point middle = place({5, -3, 1e4f});
        for (const Vec3f edge : {Vec3f{6, -3, 1e4f}, {5, -2, 1e4f}, {5, -3, 1e4f + 1}})
          sum += std::pow(place(edge).x - middle.x, 2) + std::pow(place(edge).y - middle.y, 2);
        if (sum_before > 0) {
          ASSERT_NEAR(sum, sum_before, 0.01);
        }
        sum_before = sum;
      }
}

}  // namespace
