// From the points of a strip to the corners of its triangles: whole texel numbers, depth with its
// offset, and colours.
#pragma once

#include "module/core/frame.h"
#include "module/raster/clipper.h"
#include "module/textures/blends.h"
#include "module/textures/call.h"
#include "module/textures/sampler.h"

namespace zbuffer::textures {

/// Points of a strip with their attributes, one parameter record each `width` records.
struct Point_List {
  int count;
  const KT_DCI_Point* points;
  const KT_RGB32* colors;
  const KT_Parameter* parameters;
  int width;

  explicit Point_List(const Textured_Call& strip)
      : count(strip.count),
        points(strip.points),
        colors(strip.colors),
        parameters(strip.parameters),
        width(strip.parameter_width) {}
  explicit Point_List(const Clipped_Strip& strip)
      : count(strip.count),
        points(strip.points),
        colors(strip.colors),
        parameters(strip.parameters),
        width(1) {}

  const KT_Parameter& parameter(int i) const { return parameters[std::ptrdiff_t{i} * width]; }
};

/// What all corners of a call have in common.
class Corner_Setup {
 public:
  Corner_Setup(const Textured_Call& strip, const KT_Shared_Image_Data& image)
      : origin_(strip.renderer.device_origin),
        depth_offset_(strip.face().face_depth_offset),
        width_(static_cast<float>(image.width)),
        height_(static_cast<float>(image.height)) {}

  /// The geometry of point `i`.
  template <class Vertex>
  void put_geometry(Vertex& vertex, const Point_List& list, int i) const {
    const KT_DCI_Point& point = list.points[i];
    vertex.y = wrapped_difference(point.y, origin_.y);
    vertex.value[0] = wrapped_difference(point.x, origin_.x);
    vertex.value[at_depth] = wrapped_sum(point.z, depth_offset_);
    vertex.value[at_u] = texel_number(width_ * list.parameter(i).s);
    vertex.value[at_v] = texel_number(height_ * list.parameter(i).t);
  }

 private:
  static std::int32_t texel_number(float at) { return truncated(static_cast<double>(at)); }

  KT_Int_XY origin_;
  std::int32_t depth_offset_;
  float width_;
  float height_;
};

}  // namespace zbuffer::textures
