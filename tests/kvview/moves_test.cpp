// How the mouse moves the camera, and framing that keeps the size.
#include "apps/view/moves.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST(Camera_Move, follows_the_mouse) {
  for (const bool orthographic : {false, true}) {
    Camera_Options camera;
    camera.framing = Framing::steady;
    camera.orthographic = orthographic;
    const KT_Point first = place_of(corner, camera);
    pan(camera, {37, -21}, window);
    const KT_Point panned = place_of(corner, camera);
    EXPECT_NEAR(panned.x - first.x, 37, 0.01);
    EXPECT_NEAR(panned.y - first.y, 21, 0.01);
    // What is under the mouse stays there.
    const Window_Point mouse{static_cast<int>(panned.x),
                             window.height - static_cast<int>(panned.y)};
    for (const double steps : {6.0, -9.0, 1.5}) zoom_at(camera, steps, mouse, window);
    EXPECT_NEAR(place_of(corner, camera).x, panned.x, 1);
    EXPECT_NEAR(place_of(corner, camera).y, panned.y, 1);
    EXPECT_NEAR(camera.zoom, std::exp2(-1.5 / 6), 1e-5);
    // What is near moves with the mouse.
    camera = {0, 0, 1, 1, orthographic, Up_Axis::y, Framing::steady};
    orbit(camera, {20, 0});
    EXPECT_GT(place_of({0, 0, 0.5f}, camera).x, window.width / 2.0f);
    orbit(camera, {-20, -20});
    EXPECT_NEAR(place_of({0, 0, 0.5f}, camera).x, window.width / 2.0f, 1e-3);
    EXPECT_GT(place_of({0, 0, 0.5f}, camera).y, window.height / 2.0f);
  }
}

TEST(Camera_Limits, hold_however_far_the_mouse_goes) {
  Camera_Options camera;
  for (int i = 0; i < 1000; ++i) {
    orbit(camera, {-77, i < 500 ? 50 : -50});
    pan(camera, {100000, -100000}, window);
    zoom_at(camera, i < 500 ? 5 : -5, {0, 0}, window);
    ASSERT_TRUE(std::abs(camera.azimuth) <= 180 && std::abs(camera.elevation) <= 90);
    ASSERT_LE(std::max(std::abs(camera.pan_x), std::abs(camera.pan_y)), farthest_pan);
    ASSERT_TRUE(camera.zoom >= least_zoom && camera.zoom <= greatest_zoom);
  }
}

TEST(Steady_Framing, keeps_the_model_inside_from_all_sides) {
  const Model model = shapes::box({5, -3, 1e4}, {8, 1, 3});
  for (const bool orthographic : {true, false})
    for (double azimuth = -180; azimuth < 180; azimuth += 24)
      for (double elevation = -90; elevation <= 90; elevation += 22.5) {
        const View view({azimuth, elevation, 1, 1, orthographic, Up_Axis::y, Framing::steady},
                        window.width, window.height, model);
        const auto place = [&](Vec3f p) { return view.to_device(view.to_eye(p)); };
        for (const Vertex& vertex : model.meshes[0].vertices) {
          const KT_Point p = place(vertex.position);
          ASSERT_TRUE(p.x > 50 && p.x < 250 && p.y > 0 && p.y < 200) << p.x << " " << p.y;
          ASSERT_TRUE(p.z > 0 && p.z < 65535) << p.z;
        }
      }
}

}  // namespace
