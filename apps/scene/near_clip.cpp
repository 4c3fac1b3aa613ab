// Cutting at the near plane in eye coordinates, z away from the eye.
#include "apps/scene/near_clip.h"

#include <utility>

namespace kv {
namespace {

float between(float from, float to, double part) {
  return static_cast<float>(from + part * (static_cast<double>(to) - from));
}

// Where the edge from a kept to a dropped point crosses the plane. Always computed in that
// direction, so that two triangles get the same point on their common edge.
Eye_Point crossing(const Eye_Point& kept, const Eye_Point& dropped, double near_plane) {
  const double part = (kept.position.z - near_plane) / (kept.position.z - dropped.position.z);
  Eye_Point point;
  point.position = kept.position + (dropped.position - kept.position) * part;
  point.position.z = near_plane;
  point.color = {between(kept.color.red, dropped.color.red, part),
                 between(kept.color.green, dropped.color.green, part),
                 between(kept.color.blue, dropped.color.blue, part),
                 between(kept.color.alpha, dropped.color.alpha, part)};
  point.place = {between(kept.place.s, dropped.place.s, part),
                 between(kept.place.t, dropped.place.t, part)};
  return point;
}

// Calls `add` with the corners of what is left of a face, in their order around it.
template <class Add>
void clip_face(std::span<const Eye_Point> face, double near_plane, Add add) {
  const auto kept = [&](const Eye_Point& point) { return point.position.z >= near_plane; };
  for (std::size_t i = 0; i < face.size(); ++i) {
    const Eye_Point& here = face[i];
    const Eye_Point& next = face[(i + 1) % face.size()];
    if (kept(here)) add(here);
    if (kept(here) && !kept(next)) add(crossing(here, next, near_plane));
    if (!kept(here) && kept(next)) add(crossing(next, here, near_plane));
  }
}

}  // namespace

Clipped_Strip clip_near(const std::array<Eye_Point, 3>& triangle, double near_plane) {
  Clipped_Strip polygon;
  clip_face(triangle, near_plane,
            [&](const Eye_Point& point) { polygon.points[polygon.count++] = point; });
  // From the order around a quadrilateral to that of a strip.
  if (polygon.count == 4) std::swap(polygon.points[2], polygon.points[3]);
  return polygon;
}

void clip_near(std::vector<Eye_Point>& face, double near_plane) {
  std::vector<Eye_Point> rest;
  clip_face(face, near_plane, [&](const Eye_Point& point) { rest.push_back(point); });
  face = std::move(rest);
}

bool clip_near(std::array<Eye_Point, 2>& ends, double near_plane) {
  const bool first = ends[0].position.z >= near_plane, second = ends[1].position.z >= near_plane;
  if (first && !second) ends[1] = crossing(ends[0], ends[1], near_plane);
  if (!first && second) ends[0] = crossing(ends[1], ends[0], near_plane);
  return first || second;
}

}  // namespace kv
