// Views that hold the whole model, and their depths.
#include "apps/scene/camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/apps/shapes.h"

namespace {

using namespace kv;

struct Placed {
  float left, right, bottom, top, nearest, farthest;
};

Placed place(const View& view, const Model& model) {
  Placed placed{1e9f, -1e9f, 1e9f, -1e9f, 1e9f, -1e9f};
  for (const Vertex& vertex : model.meshes[0].vertices) {
    const KT_Point p = view.to_device(view.to_eye(vertex.position));
    placed = {std::min(placed.left, p.x),    std::max(placed.right, p.x),
              std::min(placed.bottom, p.y),  std::max(placed.top, p.y),
              std::min(placed.nearest, p.z), std::max(placed.farthest, p.z)};
  }
  return placed;
}

TEST(Camera, frames_the_whole_model_in_the_middle) {
  struct Case {
    Vec3 center, size;
    int width, height;
  };
  const std::vector<Case> cases = {
      {{0, 0, 0}, {1, 1, 1}, 640, 480},
      {{0, 0, 0}, {100, 0.01, 3}, 300, 1200},
      {{1e6, -1e6, 5e5}, {8, 30, 2}, 1000, 200},  // far off centre
      {{0, 0, 0}, {3e37, 1e37, 2e37}, 640, 480},  // near the ends of the floats
      {{0, 0, 0}, {3e-30, 1e-30, 2e-30}, 64, 64},
      {{0, 0, 0}, {0, 2, 1}, 640, 480},  // flat
      {{0, 0, 0}, {1, 1, 1}, 1, 1},
  };
  for (const Case& c : cases)
    for (const Up_Axis up : {Up_Axis::x, Up_Axis::y, Up_Axis::z})
      for (const bool orthographic : {false, true})
        for (const double azimuth : {0.0, 90.0, 215.0})
          for (const double elevation : {-90.0, 20.0, 90.0}) {
            SCOPED_TRACE(testing::Message()
                         << c.width << "x" << c.height << " size " << c.size.x << " azimuth "
                         << azimuth << " elevation " << elevation << " ortho " << orthographic);
            const Model model = shapes::box(c.center, c.size);
            const View view({azimuth, elevation, 1, 1, orthographic, up}, c.width, c.height, model);
            const Placed placed = place(view, model);
            const float w = static_cast<float>(c.width), h = static_cast<float>(c.height);
            EXPECT_TRUE(placed.left >= 0.03f * w && placed.right <= 0.97f * w);
            EXPECT_TRUE(placed.bottom >= 0.03f * h && placed.top <= 0.97f * h);
            // Not small, unless the model is so deep that the eye cannot come near; and in the
            // middle.
            const float used =
                std::max((placed.right - placed.left) / w, (placed.top - placed.bottom) / h);
            EXPECT_TRUE(used > 0.2f || used < 0.001f);  // a flat model may be seen on its edge
            EXPECT_NEAR(placed.left, w - placed.right, 0.02f * w + 0.1f);
            EXPECT_TRUE(placed.nearest >= 0 && placed.farthest <= 65535);
          }
}

TEST(Camera, device_axes_and_depth_point_the_right_way) {
  const Model model = shapes::box({0, 0, 0}, {2, 2, 2});
  for (const bool orthographic : {false, true}) {
    const View view({0, 0, 1, 1, orthographic, Up_Axis::y}, 400, 400, model);
    const auto device = [&](Vec3f p) { return view.to_device(view.to_eye(p)); };
    EXPECT_GT(device({0, 1, 0}).y, device({0, -1, 0}).y);
    EXPECT_GT(device({1, 0, 0}).x, device({-1, 0, 0}).x);
    EXPECT_NEAR(device({0, 0, 1}).z, 0, 1);
    EXPECT_NEAR(device({0, 0, -1}).z, 65535, 1);
    EXPECT_LT(device({0, 0, 0.5f}).z, device({0, 0, 0}).z);
  }
  // With z up the front looks along y, and z is what points up.
  const View z_up({0, 0, 1, 1, false, Up_Axis::z}, 400, 400, model);
  EXPECT_GT(z_up.to_device(z_up.to_eye({0, 0, 1})).y, 200);
  EXPECT_LT(z_up.to_device(z_up.to_eye({0, -1, 0})).z, z_up.to_device(z_up.to_eye({0, 1, 0})).z);
}

// What lies halfway between two points on the device has the mean of their depths: only so do
// surfaces that a module interpolates meet where they meet in space.
TEST(Camera, perspective_depth_is_linear_on_the_device) {
  const Model model = shapes::box({0, 0, 0}, {2, 2, 8});
  const View view({25, 10, 1, 1, false, Up_Axis::y}, 400, 400, model);
  const Vec3f near_end{0.3f, 0.2f, 4}, far_end{0.3f, 0.2f, -4};
  const KT_Point a = view.to_device(view.to_eye(near_end));
  const KT_Point b = view.to_device(view.to_eye(far_end));
  const KT_Point between = view.to_device(view.to_eye({0.3f, 0.2f, -1.5f}));
  const float part = (between.x - a.x) / (b.x - a.x);
  EXPECT_NEAR(between.z, a.z + part * (b.z - a.z), 20);
}

}  // namespace
