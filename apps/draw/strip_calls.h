// Calls with lists of points: by the actions of single precision for a whole picture, by those of
// double precision for a part of one.
#pragma once

#include <cmath>
#include <span>
#include <vector>

#include "apps/draw/canvas.h"

namespace kv {

// Rounded as the actions of single precision do it. Those of double precision round by a finer
// rule: whole numbers come out of it as they are, so that parts fit the whole.
inline double rounded(float value) {
  return std::trunc(value >= 0 ? value + 0.5f : value - 0.499999f);
}
inline KT_Point_D in_double(const KT_Point& point) {
  return {rounded(point.x), rounded(point.y), rounded(point.z)};
}
inline KT_Point_D in_double(const KT_DCI_Point& point) {
  return {static_cast<double>(point.x), static_cast<double>(point.y), static_cast<double>(point.z)};
}

class Strip_Calls {
 public:
  explicit Strip_Calls(const Canvas& canvas) : canvas_(canvas) {}

  // The canvas's rendition for these calls: the actions of double precision take the clip from the
  // frame buffer's corner on.
  KT_Rendition rendition() const {
    KT_Rendition rendition = canvas_.rendition;
    if (!canvas_.frame.in_parts || !canvas_.configuration.drawing.clip) return rendition;
    const auto left = static_cast<float>(canvas_.frame.origin.x);
    const auto bottom = static_cast<float>(canvas_.frame.origin.y);
    KT_Contour_Set& clip = rendition.edit(&KT_Rendition_Data::display_context).complex_clip;
    for (auto& contour : clip.writable().contours)
      for (KT_Point& point : contour) point = {point.x - left, point.y - bottom, 0};
    return rendition;
  }

  template <KT_Action whole, KT_Action in_parts, class Point, class... More>
  void call(const KT_Rendition& rendition, std::span<const Point> points, More... more) {
    const int count = static_cast<int>(points.size());
    if (!canvas_.frame.in_parts)
      return canvas_.renderer.call<whole>(rendition, count, points.data(), more...);
    points_.clear();
    for (const Point& point : points) points_.push_back(in_double(point));
    canvas_.renderer.call<in_parts>(rendition, count, points_.data(), more...);
  }

 private:
  const Canvas& canvas_;
  std::vector<KT_Point_D> points_;  // of one call
};

}  // namespace kv
