// Geometry in double precision, brought into the renderer's own numbers.
//
// With tiling, geometry may lie very far from the window. What all `2DD` actions have in
// common is here: points are cut by a guard rectangle, 2^30 wide to each side of the device
// origin, and rounded; less the origin every coordinate then fits an int with room to spare. The
// integer actions get buffer coordinates, so the device origin is zero while they run.
#pragma once

#include <algorithm>

#include "module/core/outcode.h"
#include "module/core/points.h"
#include "module/core/scratch.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer::tiling {

inline constexpr std::int32_t guard_reach = 0x40000000;

inline KT_Int_Rectangle guard_around(KT_Int_XY center) {
  return {wrapped_difference(center.x, guard_reach), wrapped_sum(center.x, guard_reach),
          wrapped_difference(center.y, guard_reach), wrapped_sum(center.y, guard_reach)};
}

/// A call in progress: the caller's points with their outcodes, and the points for the inner call.
struct Guarded_Call {
  Software_Z_Buffer& renderer;
  KT_Rendition rendition;  // a reference of its own, with a hard clip in buffer coordinates
  KT_Int_XY origin;        // the device origin, which is zero in the renderer
  KT_Int_Rectangle guard;
  int count;
  const KT_Point_D* points;
  short* codes;           // `count` and one more
  KT_DCI_Point* results;  // `count`, and 64 at least

  void take_origin_off(KT_DCI_Point& point) const {
    point.x = wrapped_difference(point.x, origin.x);
    point.y = wrapped_difference(point.y, origin.y);
  }
  /// Rounds `n` points from `first` on into results from `to` on.
  void convert(int first, int n, int to = 0) const {
    round_points(points + first, n, results + to);
    for (int i = 0; i < n; ++i) take_origin_off(results[to + i]);
  }
  template <KT_Action action, class... Arguments>
  void draw(int result_count, Arguments... arguments) const {
    renderer.actions.call<action>(rendition, result_count, results, arguments...);
  }
};

/// The hard clip in buffer coordinates, kept inside the window bound by bound.
inline KT_Int_Rectangle hard_clip_in_buffer(const Guarded_Call& call) {
  const KT_Int_Rectangle& clip = call.rendition->display_context->hard_clip;
  const KT_Int_XY extent = call.renderer.window_extent;
  const auto held = [](std::int32_t bound, std::int32_t origin, std::int32_t size) {
    const std::int32_t raised = std::max(wrapped_difference(bound, origin), 0);
    return std::min(raised, wrapped_difference(size, 1));
  };
  return {held(clip.left, call.origin.x, extent.x), held(clip.right, call.origin.x, extent.x),
          held(clip.bottom, call.origin.y, extent.y), held(clip.top, call.origin.y, extent.y)};
}

/// Draws geometry of `Kind`: `draw_whole(call)` when all of it lies inside the guard rectangle, as
/// nearly always, `draw_pieces(call)` when part of it may. When an exception passes, the device
/// origin stays at zero.
template <class Kind>
void draw_guarded(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                  const KT_Point_D* points, Kind kind) {
  Software_Z_Buffer& renderer = renderer_of(object);
  const KT_Int_XY origin = renderer.device_origin;
  Scratch<KT_DCI_Point> results(count);
  Scratch<short, 65> codes(std::ptrdiff_t{count} + 1);
  Guarded_Call call{renderer, rendition, origin,       guard_around(origin),
                    count,    points,    codes.data(), results.data()};
  renderer.device_origin = {0, 0};
  call.rendition.set_hard_clip_unrestricted(hard_clip_in_buffer(call), false);

  const int inside = KD_Clip(call.guard, count, points, call.codes);
  if (inside == count) {  // so too when there is no point at all
    call.convert(0, count);
    kind.draw_whole(call);
  } else if (inside != 0) {
    kind.draw_pieces(call);
  }
  renderer.device_origin = origin;
}

/// The array from element `n` on; an array that is not there stays so.
template <class Element>
Element* from(Element* array, std::ptrdiff_t n) {
  return array == nullptr ? nullptr : array + n;
}

}  // namespace zbuffer::tiling
