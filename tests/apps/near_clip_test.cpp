#include "apps/scene/near_clip.h"

#include <gtest/gtest.h>

#include <random>

#include "apps/scene/strips.h"

namespace {

using namespace kv;

// Twice the signed area seen along z.
double signed_area(Vec3 a, Vec3 b, Vec3 c) {
  return cross(b - a, c - a).z;
}

double strip_area(const Clipped_Strip& strip) {
  double area = 0;
  for (std::size_t t = 0; t + 2 < strip.count; ++t) {
    const Corners i = strip_triangle(t);
    area += signed_area(strip.points[i.a].position, strip.points[i.b].position,
                        strip.points[i.c].position);
  }
  return area;
}

Eye_Point point(double x, double y, double z, float red = 0) {
  return {{x, y, z}, {red, 0, 0, 1}};
}

TEST(Near_Clip, keeps_or_drops_what_is_on_one_side) {
  EXPECT_EQ(clip_near({point(0, 0, 2), point(1, 0, 1), point(0, 1, 3)}, 1).count, 3u);
  EXPECT_EQ(clip_near({point(0, 0, 0.5), point(1, 0, 0.9), point(0, 1, -3)}, 1).count, 0u);
}

TEST(Near_Clip, interpolates_position_and_colour_at_the_plane) {
  const Clipped_Strip strip =
      clip_near({point(0, 0, 3, 1), point(4, 0, -1, 0), point(0, 4, 3, 1)}, 1);
  ASSERT_EQ(strip.count, 4u);
  bool found = false;
  for (const Eye_Point& p : strip.span())
    if (p.position.x == 2 && p.position.y == 0) {
      found = true;
      EXPECT_EQ(p.position.z, 1);
      EXPECT_FLOAT_EQ(p.color.red, 0.5f);
    }
  EXPECT_TRUE(found);
}

// What is kept on both sides of the plane adds up to the triangle, with its winding.
TEST(Near_Clip, parts_add_up_with_the_winding) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> coordinate(-2, 2);
  for (int i = 0; i < 2000; ++i) {
    std::array<Eye_Point, 3> triangle, mirrored;
    for (std::size_t c = 0; c < 3; ++c) {
      triangle[c] = point(coordinate(random), coordinate(random), coordinate(random));
      mirrored[c] = triangle[c];
      mirrored[c].position.z = -triangle[c].position.z;
    }
    const Clipped_Strip before = clip_near(triangle, 0.25), behind = clip_near(mirrored, -0.25);
    for (const Eye_Point& p : before.span()) EXPECT_GE(p.position.z, 0.25);
    EXPECT_NEAR(strip_area(before) + strip_area(behind),
                signed_area(triangle[0].position, triangle[1].position, triangle[2].position),
                1e-9);
    // Both triangles of a quadrilateral turn the same way, else it would be folded.
    if (before.count == 4) {
      const auto& p = before.points;
      EXPECT_GE(signed_area(p[0].position, p[1].position, p[2].position) *
                    signed_area(p[2].position, p[1].position, p[3].position),
                0);
    }
  }
}

// A crack would open between neighbours that cut their common edge at different points.
TEST(Near_Clip, neighbours_share_the_cut_of_their_edge) {
  const Eye_Point a = point(0.1, 0.7, 3.3), b = point(1.3, -0.9, -0.7);
  const Clipped_Strip one = clip_near({a, b, point(-1, 0, 2)}, 0.3);
  const Clipped_Strip other = clip_near({b, a, point(2, 0, 2)}, 0.3);
  int shared = 0;
  for (const Eye_Point& p : one.span())
    for (const Eye_Point& q : other.span())
      shared += p.position.z == 0.3 && p.position.x == q.position.x && p.position.y == q.position.y;
  EXPECT_EQ(shared, 1);
}

}  // namespace
