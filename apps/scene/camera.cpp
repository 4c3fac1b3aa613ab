// From the camera's options to a view that holds the whole model. Eye coordinates: x to the right,
// y up, z away from the eye.
#include "apps/scene/camera.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace kv {
namespace {

constexpr double field_of_view_degrees = 35;  // across the shorter side of the window
constexpr double used_part = 0.92;            // of the window, the rest is margin
// In parts of the model's size: no nearer does the eye come by itself, and no nearer does it see.
constexpr double least_approach = 0.05;
constexpr double least_near = 0.005;
// The near plane stays clear of the nearest points by this, else their rounding errors are cut.
constexpr double near_slack = 1e-6;

double radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

// Pixels from the eye to the window.
double focus_for(double half_width, double half_height) {
  return std::min(half_width, half_height) / std::tan(radians(field_of_view_degrees / 2));
}

// From axes with y up and the front at z to the model's.
Vec3 turned(Vec3 v, Up_Axis up) {
  switch (up) {
    case Up_Axis::x:
      return {v.y, -v.x, v.z};
    case Up_Axis::z:
      return {v.x, -v.z, v.y};
    case Up_Axis::minus_x:
      return {-v.y, v.x, v.z};
    case Up_Axis::minus_y:
      return {-v.x, -v.y, v.z};
    case Up_Axis::minus_z:
      return {v.x, v.z, -v.y};
    default:
      return v;
  }
}

template <class Visit>
void for_each_framed(const Model& model, Visit visit) {
  for_each_position(model, [&](Vec3f position) {
    if (model.bulk.holds(position)) visit(position);
  });
}

struct Range {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void include(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  double middle() const { return (low + high) / 2; }
  double size() const { return high - low; }
  void widen_by(double margin) { low -= margin, high += margin; }
};

// A model that is a single place is framed as if it had a size.
double size_of_a_place(Vec3 place) {
  constexpr double part = 1e-3;
  return std::max(1.0, length(place)) * part;
}

}  // namespace

// Of the model along the axes of the view.
struct View::Extent {
  Range x, y, z;  // to the right, up, and toward the viewer

  double size() const { return length({x.size(), y.size(), z.size()}); }
};

View::View(const Camera_Options& options, int width, int height, const Model& model)
    : orthographic_(options.orthographic), half_width_(width / 2.0), half_height_(height / 2.0) {
  const double side = std::min(width, height);
  middle_x_ = half_width_ + options.pan_x * side;
  middle_y_ = half_height_ + options.pan_y * side;
  set_axes(options, options.up != Up_Axis::by_format ? options.up
                    : model.up_is_z                  ? Up_Axis::z
                                                     : Up_Axis::y);
  if (options.framing == Framing::steady) {
    frame_steady(options, model);
    return;
  }
  const Extent extent = extent_of(model);
  if (orthographic_)
    frame_orthographic(options, extent);
  else
    frame_perspective(options, model, extent);
}

void View::set_axes(const Camera_Options& options, Up_Axis up) {
  const double azimuth = radians(options.azimuth), elevation = radians(options.elevation);
  const double ca = std::cos(azimuth), sa = std::sin(azimuth);
  const double ce = std::cos(elevation), se = std::sin(elevation);
  right_ = turned({ca, 0, -sa}, up);
  up_ = turned({-sa * se, ce, -ca * se}, up);
  back_ = turned({sa * ce, se, ca * ce}, up);
}

View::Extent View::extent_of(const Model& model) const {
  Extent extent;
  for_each_framed(model, [&](Vec3f position) {
    const Vec3 p = widen(position);
    extent.x.include(dot(p, right_));
    extent.y.include(dot(p, up_));
    extent.z.include(dot(p, back_));
  });
  if (extent.size() == 0) {
    const double margin = size_of_a_place({extent.x.low, extent.y.low, extent.z.low});
    for (Range* range : {&extent.x, &extent.y, &extent.z}) range->widen_by(margin);
  }
  return extent;
}

namespace {

// How far a model reaches to both sides along one axis, for sides of a given slope t. Such a side
// leaves a point (x, z) inside when x - eye.x <= t (eye.z - z): the side on the right asks for
// eye.x + t eye.z to be at least the largest x + t z, the one on the left likewise for -x.
class Reach {
 public:
  explicit Reach(double slope) : slope_(slope) {}

  void include(double x, double z) {
    if (x + slope_ * z > right_) right_ = x + slope_ * z, at_right_ = {x, 0, z};
    if (-x + slope_ * z > left_) left_ = -x + slope_ * z, at_left_ = {x, 0, z};
  }
  double nearest_eye() const { return (right_ + left_) / (2 * slope_); }
  double middle() const { return (right_ - left_) / 2; }
  // The slope of sides through the outermost points found, for an eye at this distance.
  double slope_from(double eye_z) const {
    return (at_right_.x - at_left_.x) / (2 * eye_z - at_right_.z - at_left_.z);
  }
  double slope() const { return slope_; }

 private:
  static constexpr double infinity = std::numeric_limits<double>::infinity();

  double slope_;
  double right_ = -infinity, left_ = -infinity;
  Vec3 at_right_, at_left_;
};

}  // namespace

void View::frame_perspective(const Camera_Options& options, const Model& model,
                             const Extent& extent) {
  const double focus = focus_for(half_width_, half_height_);
  // Relative to the middle, so that a far-off-centre model loses no digits.
  const Vec3 middle{extent.x.middle(), extent.y.middle(), extent.z.middle()};
  const auto measure = [&](Reach& x, Reach& y) {
    for_each_framed(model, [&](Vec3f position) {
      const Vec3 p = widen(position);
      const Vec3 v = Vec3{dot(p, right_), dot(p, up_), dot(p, back_)} - middle;
      x.include(v.x, v.z);
      y.include(v.y, v.z);
    });
  };
  // As near as the sides of the window allow, less the margin.
  Reach x(used_part * half_width_ / focus), y(used_part * half_height_ / focus);
  measure(x, y);
  const double size = extent.size();
  const double fit_z =
      std::max({x.nearest_eye(), y.nearest_eye(), extent.z.size() / 2 + least_approach * size});
  // One way there is room to spare: sides that also touch there bring the model to the middle.
  // Each step goes to the outermost points of the step before, and few are ever needed.
  constexpr int most_steps = 8;
  for (int step = 0; step < most_steps; ++step) {
    Reach closer_x(x.slope_from(fit_z)), closer_y(y.slope_from(fit_z));
    if (closer_x.slope() == x.slope() && closer_y.slope() == y.slope()) break;
    measure(closer_x, closer_y);
    x = closer_x;
    y = closer_y;
  }
  const double eye_z = fit_z * options.distance;
  const Vec3 seen = middle + Vec3{x.middle(), y.middle(), eye_z};
  eye_ = right_ * seen.x + up_ * seen.y + back_ * seen.z;
  scale_ = focus * options.zoom;
  near_ = std::max(eye_z - extent.z.size() / 2 - near_slack * size, least_near * size);
  far_ = std::max(eye_z + extent.z.size() / 2, near_);
}

void View::frame_orthographic(const Camera_Options& options, const Extent& extent) {
  eye_ = right_ * extent.x.middle() + up_ * extent.y.middle() + back_ * extent.z.high;
  // A model seen edge-on has no extent one way.
  const double least_size = 1e-9 * extent.size();
  const double fit_x = 2 * half_width_ / std::max(extent.x.size(), least_size);
  const double fit_y = 2 * half_height_ / std::max(extent.y.size(), least_size);
  scale_ = used_part * std::min(fit_x, fit_y) * options.zoom;
  near_ = -near_slack * extent.size();
  far_ = extent.z.size();
}

void View::frame_steady(const Camera_Options& options, const Model& model) {
  Range x, y, z;
  for_each_framed(model, [&](Vec3f p) { x.include(p.x), y.include(p.y), z.include(p.z); });
  const Vec3 middle{x.middle(), y.middle(), z.middle()};
  double radius = 0;
  for_each_framed(
      model, [&](Vec3f position) { radius = std::max(radius, length(widen(position) - middle)); });
  if (radius == 0) radius = size_of_a_place(middle);
  const double used = used_part * std::min(half_width_, half_height_);
  const double focus = focus_for(half_width_, half_height_);
  // In perspective the sides of the window touch the sphere before its middle.
  const double fit_z = orthographic_ ? radius : radius * std::hypot(1, focus / used);
  const double eye_z = orthographic_ ? fit_z : fit_z * options.distance;
  const double size = 2 * radius;
  eye_ = middle + back_ * eye_z;
  scale_ = (orthographic_ ? used / radius : focus) * options.zoom;
  near_ = eye_z - radius - near_slack * size;
  if (!orthographic_) near_ = std::max(near_, least_near * size);
  far_ = std::max(eye_z + radius, near_);
}

Vec3 View::to_eye(Vec3f position) const {
  const Vec3 v = widen(position) - eye_;
  return {dot(v, right_), dot(v, up_), -dot(v, back_)};
}

KT_Point View::to_device(Vec3 eye_point) const {
  const double scale = orthographic_ ? scale_ : scale_ / eye_point.z;
  // In perspective it is the inverse of the distance that is linear across the device.
  const double part = orthographic_  ? (eye_point.z - near_) / (far_ - near_)
                      : far_ > near_ ? far_ * (eye_point.z - near_) / (eye_point.z * (far_ - near_))
                                     : 0;
  const Vec3 device{middle_x_ + scale * eye_point.x, middle_y_ + scale * eye_point.y,
                    farthest_depth_ * std::clamp(part, 0.0, 1.0)};
  const Vec3f point = narrow(device);
  return {point.x, point.y, point.z};
}

Vec3 View::toward_eye(Vec3f position) const {
  return orthographic_ ? back_ : normalized(eye_ - widen(position));
}

}  // namespace kv
