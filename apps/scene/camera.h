// Where the model is seen from, and the way from its coordinates to the device's.
#pragma once

#include "apps/load/model.h"
#include "host/types.h"

namespace kv {

// `by_format`: z for models whose format has it so, else y.
enum class Up_Axis { by_format, x, y, z, minus_x, minus_y, minus_z };

// What fits the window at zoom 1: the model as it is seen, or the sphere around it. With the sphere
// the model keeps its size while the camera turns.
enum class Framing { close, steady };

inline constexpr double farthest_pan = 1000, least_zoom = 0.001, greatest_zoom = 1000;

struct Camera_Options {
  double azimuth = 30;    // degrees around the up axis, 0 is in front of the model
  double elevation = 20;  // degrees above the horizon
  double zoom = 1;        // 1: the whole model fits the window
  double distance = 1;    // of the eye; 1: as far as the whole model fits, 0 is in its middle
  bool orthographic = false;
  Up_Axis up = Up_Axis::by_format;
  Framing framing = Framing::close;
  double pan_x = 0, pan_y = 0;  // of the picture to the right and up, in its shorter sides
};

// A view onto one model in a window of a given size. In eye coordinates x runs to the right, y up
// and z away from the eye.
class View {
 public:
  View(const Camera_Options& options, int width, int height, const Model& model);

  Vec3 to_eye(Vec3f position) const;
  // Where an eye point at or beyond the near plane lies on the device. Depth runs from 0 at the
  // nearest to 65535 at the farthest point of the model.
  KT_Point to_device(Vec3 eye_point) const;

  double near_plane() const { return near_; }
  bool orthographic() const { return orthographic_; }
  // Ends depths so much before 65535, for faces that are drawn with an offset.
  void leave_depth(int behind) { farthest_depth_ = 65535 - behind; }
  // Unit vectors in the coordinates of the model.
  Vec3 right() const { return right_; }
  Vec3 up() const { return up_; }
  Vec3 toward_viewer() const { return back_; }
  Vec3 toward_eye(Vec3f position) const;

 private:
  struct Extent;

  void set_axes(const Camera_Options& options, Up_Axis up);
  Extent extent_of(const Model& model) const;
  void frame_steady(const Camera_Options& options, const Model& model);
  void frame_perspective(const Camera_Options& options, const Model& model, const Extent& extent);
  void frame_orthographic(const Camera_Options& options, const Extent& extent);

  Vec3 right_, up_, back_;
  Vec3 eye_;
  bool orthographic_ = false;
  double half_width_, half_height_;  // of the window, pixels
  double middle_x_, middle_y_;       // on the device, of what was framed
  double scale_ = 1;                 // pixels a unit, in perspective at depth 1
  double near_ = 0, far_ = 1;
  double farthest_depth_ = 65535;
};

}  // namespace kv
