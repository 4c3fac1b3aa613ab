// One view of a scene as the strips that are handed to the module.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/scene/camera.h"
#include "apps/scene/scene.h"
#include "host/types.h"

namespace kv {

enum class Mode {
  shaded,   // a colour a point
  flat,     // a colour a triangle
  polygons  // strips are the points around a face, with one colour
};

// Textured strips have a colour a point in every mode.
struct Device_Strip {
  std::size_t first_point = 0, point_count = 0;
  std::size_t first_color = 0;
  bool faces_away = false;
  std::uint32_t material = no_texture;  // whose texture is drawn
  std::size_t first_place = 0;
  bool in_reach = true;  // of the texel numbers of a renderer
  bool in_plane = true;  // its texture may be mapped in the plane of the picture
  bool translucent = false;

  bool textured() const { return material != no_texture; }
};

// What a strip shows of a texture, a place and a w (the distance from the eye) a point.
struct Strip_Texture {
  std::uint32_t material = no_texture;
  std::span<const KT_Parameter> places{};
  std::span<const float> w{};
  bool in_reach = true, in_plane = true;
  bool sees_through = false;
};

// Strips in device coordinates, on or off the window; nothing of them is before the near plane.
class Device_Geometry {
 public:
  explicit Device_Geometry(Mode mode) : mode_(mode) {}

  // `colors` are as many as the mode needs. Nothing is added that is not seen at all.
  void add(std::span<const KT_Point> points, std::span<const KT_RGB32> colors, bool faces_away,
           const Strip_Texture& texture = {});
  // A module draws the pixels of all edges. Where a front and a back share an edge at the same
  // depth, it is the one drawn last that shows: that is to be the front.
  void put_backs_first();

  Mode mode() const { return mode_; }
  const std::vector<Device_Strip>& strips() const { return strips_; }
  // Draws these strips out of those that were added.
  void show_only(std::vector<Device_Strip> strips) { strips_ = std::move(strips); }
  // Whether any strip lets something through.
  bool translucent() const;
  std::span<const KT_Point> points(const Device_Strip& strip) const {
    return std::span(points_).subspan(strip.first_point, strip.point_count);
  }
  std::span<const KT_RGB32> colors(const Device_Strip& strip) const {
    return std::span(colors_).subspan(strip.first_color,
                                      color_count(strip.point_count, strip.textured()));
  }
  std::size_t color_count(std::size_t point_count, bool textured) const {
    if (textured || mode_ == Mode::shaded) return point_count;
    return mode_ == Mode::polygons ? 1 : point_count - 2;
  }
  Strip_Texture texture(const Device_Strip& strip) const {
    if (!strip.textured()) return {};
    return {strip.material,
            std::span(places_).subspan(strip.first_place, strip.point_count),
            std::span(w_).subspan(strip.first_place, strip.point_count),
            strip.in_reach,
            strip.in_plane,
            strip.translucent};
  }

 private:
  Mode mode_;
  std::vector<KT_Point> points_;
  std::vector<KT_RGB32> colors_;
  std::vector<KT_Parameter> places_;
  std::vector<float> w_;
  std::vector<Device_Strip> strips_;
};

KT_RGB32 device_color(const Color& color);

// `opacity` from 0 to 1 becomes the alpha of every colour. With Mode::polygons faces are lit flat.
Device_Geometry device_geometry(const Scene& scene, const View& view, Mode mode, float opacity = 1);

// The same triangles or polygons one by one, the farthest first: for drawing without a depth buffer
// and for blending. Of `translucent_only` those alone that let something through.
Device_Geometry back_to_front(const Device_Geometry& geometry, bool translucent_only = false);

}  // namespace kv
