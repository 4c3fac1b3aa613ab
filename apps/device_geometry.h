// One view of a scene as the strips that are handed to the module.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/camera.h"
#include "apps/scene.h"
#include "host/types.h"

namespace kv {

enum class Mode {
  shaded,  // a colour a point
  flat     // a colour a triangle
};

struct Device_Strip {
  std::size_t first_point = 0, point_count = 0;
  std::size_t first_color = 0;
  bool faces_away = false;
};

// Strips in device coordinates, on or off the window; nothing of them is before the near plane.
class Device_Geometry {
 public:
  explicit Device_Geometry(Mode mode) : mode_(mode) {}

  // `colors` are as many as the mode asks for.
  void add(std::span<const KT_Point> points, std::span<const KT_RGB32> colors, bool faces_away);
  // A module draws the pixels of all edges. Where a front and a back share an edge at the same
  // depth, it is the one drawn last that shows: that is to be the front.
  void put_backs_first();

  Mode mode() const { return mode_; }
  // Whether any colour lets something through.
  bool translucent() const;
  const std::vector<Device_Strip>& strips() const { return strips_; }
  std::span<const KT_Point> points(const Device_Strip& strip) const {
    return std::span(points_).subspan(strip.first_point, strip.point_count);
  }
  std::span<const KT_RGB32> colors(const Device_Strip& strip) const {
    return std::span(colors_).subspan(strip.first_color, color_count(strip.point_count));
  }
  std::size_t color_count(std::size_t point_count) const {
    return mode_ == Mode::shaded ? point_count : point_count - 2;
  }

 private:
  Mode mode_;
  std::vector<KT_Point> points_;
  std::vector<KT_RGB32> colors_;
  std::vector<Device_Strip> strips_;
};

KT_RGB32 device_color(const Color& color);

// `opacity` from 0 to 1 becomes the alpha of every colour.
Device_Geometry device_geometry(const Scene& scene, const View& view, Mode mode, float opacity = 1);

// The same triangles one by one, the farthest first: for drawing without a depth buffer.
Device_Geometry back_to_front(const Device_Geometry& geometry);

}  // namespace kv
