// Cuts triangles at the near plane, before the division that would turn them inside out.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "apps/load/model.h"

namespace kv {

// A point in eye coordinates (z away from the eye) with the colour it is lit in and its place in a
// texture.
struct Eye_Point {
  Vec3 position;
  Color color;
  Texture_Place place{};
};

// What is left of a triangle: 0, 3 or 4 points in the order of a strip.
struct Clipped_Strip {
  std::array<Eye_Point, 4> points;
  std::size_t count = 0;

  std::span<const Eye_Point> span() const { return std::span(points).first(count); }
};

// Keeps what lies at or beyond `near_plane`, and its winding.
Clipped_Strip clip_near(const std::array<Eye_Point, 3>& triangle, double near_plane);

// The same for a face of any number of corners; may leave none.
void clip_near(std::vector<Eye_Point>& face, double near_plane);

// The same for the ends of a line; false when nothing of it is left.
bool clip_near(std::array<Eye_Point, 2>& ends, double near_plane);

}  // namespace kv
