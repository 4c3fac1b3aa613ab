// Convex polygons in device coordinates. One that reaches farther than single precision tells
// pixels apart is first cut to the clip and a margin around it.
#include "stand_in/standard/polygon_fill.h"

#include <algorithm>
#include <cmath>

#include "stand_in/standard/calls.h"

namespace stand_in {
namespace {

/// Up to here single precision tells pixels and their halves apart.
constexpr double exact_limit = 1 << 22;

struct Bounds {
  double left, right, bottom, top;
};

Bounds bounds_of(const std::vector<Vertex>& outline) {
  Bounds bounds = {outline[0].x, outline[0].x, outline[0].y, outline[0].y};
  for (const Vertex& v : outline) {
    bounds.left = std::min(bounds.left, v.x);
    bounds.right = std::max(bounds.right, v.x);
    bounds.bottom = std::min(bounds.bottom, v.y);
    bounds.top = std::max(bounds.top, v.y);
  }
  return bounds;
}

/// Keeps what has a distance of at least 0 from an edge.
template <class Distance>
void cut(std::vector<Vertex>& outline, Distance distance) {
  std::vector<Vertex> kept;
  for (std::size_t n = 0; n < outline.size(); ++n) {
    const Vertex& from = outline[n];
    const Vertex& to = outline[n + 1 < outline.size() ? n + 1 : 0];
    const double a = distance(from);
    const double b = distance(to);
    if (a >= 0) kept.push_back(from);
    if ((a < 0) != (b < 0)) kept.push_back(mixed(from, to, a / (a - b), Coloring::by_point));
  }
  outline = std::move(kept);
}

void cut_to(const Bounds& bounds, std::vector<Vertex>& outline) {
  cut(outline, [&](const Vertex& v) { return v.x - bounds.left; });
  cut(outline, [&](const Vertex& v) { return bounds.right - v.x; });
  cut(outline, [&](const Vertex& v) { return v.y - bounds.bottom; });
  cut(outline, [&](const Vertex& v) { return bounds.top - v.y; });
}

/// Brings an outline into what floats hold; false when nothing of it can be seen.
bool make_drawable(const KT_Int_Rectangle& clip, std::vector<Vertex>& outline) {
  if (outline.size() < 3) return false;
  const Bounds bounds = bounds_of(outline);
  // A pixel more on each side, as corners are rounded.
  const Bounds seen = {clip.left - 1.0, clip.right + 2.0, clip.bottom - 1.0, clip.top + 2.0};
  if (!(bounds.left <= seen.right && bounds.right >= seen.left && bounds.bottom <= seen.top &&
        bounds.top >= seen.bottom)) {
    return false;
  }
  const double farthest = std::max({-bounds.left, bounds.right, -bounds.bottom, bounds.top});
  if (farthest > exact_limit) cut_to(seen, outline);
  return outline.size() >= 3;
}

KT_Point float_point(const Vertex& v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

void fill_shaded(const Line_Job& job, const std::vector<Vertex>& outline) {
  std::vector<KT_Point> points;
  std::vector<KT_RGB32> colors;
  // As a strip, taken from both ends in turn.
  std::size_t low = 0;
  std::size_t high = outline.size();
  for (bool from_low = true; low < high; from_low = !from_low) {
    const Vertex& v = outline[from_low ? low++ : --high];
    points.push_back(float_point(v));
    colors.push_back(v.color);
  }
  call<KT_Action::Draw_2D_Gouraud_Polytriangle>(
      job.renderer, job.rendition, static_cast<int>(points.size()), points.data(), colors.data());
}

}  // namespace

void fill_convex(const Line_Job& job, std::vector<Vertex>& outline) {
  if (!make_drawable(job.rendition->display_context->hard_clip, outline)) return;
  if (job.coloring == Coloring::by_point) return fill_shaded(job, outline);
  std::vector<KT_Point> points;
  for (const Vertex& v : outline) points.push_back(float_point(v));
  const KT_RGB32 color = outline.front().color;
  call<KT_Action::Draw_2D_Polygon>(job.renderer, job.rendition, static_cast<int>(points.size()),
                                   points.data(),
                                   job.coloring == Coloring::plain ? nullptr : &color);
}

}  // namespace stand_in
