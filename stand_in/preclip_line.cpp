// Segments in double precision, cut by a rectangle.
#include <algorithm>
#include <cmath>

#include "host/clip.h"
#include "stand_in/outcode.h"
#include "stand_in/rounding.h"

namespace stand_in {
namespace {

// `t` runs from 0 at `from` to 1 at `to`. Both ends come out exactly.
double between(double from, double to, double t) {
  return from * (1 - t) + to * t;
}

std::uint8_t between(std::uint8_t from, std::uint8_t to, double t) {
  return round_to_byte(between(static_cast<double>(from), static_cast<double>(to), t));
}

KT_RGB32 between(const KT_RGB32& from, const KT_RGB32& to, double t) {
  return {between(from.blue, to.blue, t), between(from.green, to.green, t),
          between(from.red, to.red, t), between(from.alpha, to.alpha, t)};
}

/// Where a segment crosses the rectangle: `t` runs from 0 at the end that it is looked at from.
struct Crossing {
  double t = 1;
  unsigned edge = 0;

  void consider(unsigned its_edge, double place, double from, double to) {
    const double its_t = (place - from) / (to - from);
    if (its_t < t) *this = {its_t, its_edge};
  }
};

/// The first of the edges in `code` that is crossed on the way from `inside` to `outside`.
/// `inside` need not lie inside, but not beyond one of the same edges. Looked at from there, the
/// place stays exact however far `outside` is, and both directions of a segment are cut alike.
Crossing crossing_out(unsigned code, const KT_Int_Rectangle& rectangle, const KT_Point_D& inside,
                      const KT_Point_D& outside) {
  Crossing first;
  if (code & beyond_left) first.consider(beyond_left, rectangle.left, inside.x, outside.x);
  if (code & beyond_right) first.consider(beyond_right, rectangle.right, inside.x, outside.x);
  if (code & beyond_bottom) first.consider(beyond_bottom, rectangle.bottom, inside.y, outside.y);
  if (code & beyond_top) first.consider(beyond_top, rectangle.top, inside.y, outside.y);
  return first;
}

/// The rounded point of a crossing, exactly on its edge.
KT_DCI_Point cut_point(const KT_Int_Rectangle& rectangle, const KT_Point_D& from,
                       const KT_Point_D& to, const Crossing& at) {
  const KT_Point_D place = {between(from.x, to.x, at.t), between(from.y, to.y, at.t),
                            between(from.z, to.z, at.t)};
  KT_DCI_Point result = round_to_pixel(place);
  result.x = std::clamp(result.x, rectangle.left, rectangle.right);
  result.y = std::clamp(result.y, rectangle.bottom, rectangle.top);
  if (at.edge == beyond_left) result.x = rectangle.left;
  if (at.edge == beyond_right) result.x = rectangle.right;
  if (at.edge == beyond_bottom) result.y = rectangle.bottom;
  if (at.edge == beyond_top) result.y = rectangle.top;
  return result;
}

/// Writes what a segment has at a crossing; the colours may be null.
void put(const KT_Int_Rectangle& rectangle, const KT_Point_D* points, const KT_RGB32* colors,
         int from, int to, const Crossing& at, KT_DCI_Point& result, KT_RGB32* result_color) {
  result = cut_point(rectangle, points[from], points[to], at);
  if (colors != nullptr && result_color != nullptr) {
    *result_color = between(colors[from], colors[to], at.t);
  }
}

bool is_number(const KT_Point_D& point) {
  return !std::isnan(point.x) && !std::isnan(point.y);
}

unsigned edges_of(short code) {
  return static_cast<unsigned>(code) & beyond_any;
}

}  // namespace
}  // namespace stand_in

void KD_Preclip_Head(short code, const KT_Int_Rectangle& rectangle, const KT_Point_D* points,
                     KT_DCI_Point* result, const KT_RGB32* colors, KT_RGB32* result_colors) {
  using namespace stand_in;
  const Crossing at = crossing_out(edges_of(code), rectangle, points[1], points[0]);
  put(rectangle, points, colors, 1, 0, at, *result, result_colors);
}

void KD_Preclip_Tail(short code, const KT_Int_Rectangle& rectangle, const KT_Point_D* points,
                     KT_DCI_Point* result, const KT_RGB32* colors, KT_RGB32* result_colors) {
  using namespace stand_in;
  const Crossing at = crossing_out(edges_of(code), rectangle, points[0], points[1]);
  put(rectangle, points, colors, 0, 1, at, *result, result_colors);
}

bool KD_Preclip_Ends(const short* codes, const KT_Int_Rectangle& rectangle,
                     const KT_Point_D* points, KT_DCI_Point* results, const KT_RGB32* colors,
                     KT_RGB32* result_colors) {
  using namespace stand_in;
  const unsigned first = edges_of(codes[0]);
  const unsigned second = edges_of(codes[1]);
  if ((first & second) != 0 || !is_number(points[0]) || !is_number(points[1])) return false;
  const Crossing head = crossing_out(first, rectangle, points[1], points[0]);
  const Crossing tail = crossing_out(second, rectangle, points[0], points[1]);
  // What lies within the edges of one end and what lies within those of the other must overlap.
  if (!(head.t + tail.t >= 1)) return false;
  put(rectangle, points, colors, 1, 0, head, results[0], result_colors);
  put(rectangle, points, colors, 0, 1, tail, results[1],
      result_colors != nullptr ? result_colors + 1 : nullptr);
  return true;
}
