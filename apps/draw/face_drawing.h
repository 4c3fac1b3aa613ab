// Faces, in strips or as polygons.
#pragma once

#include <vector>

#include "apps/draw/strip_calls.h"
#include "apps/scene/device_geometry.h"

namespace kv {

using Textures = std::vector<KT_Handle<KT_Material_Object>>;  // by material of the model

class Face_Drawing {
 public:
  Face_Drawing(const Canvas& canvas, const Textures& textures)
      : canvas_(canvas), textures_(textures), calls_(canvas) {}

  // In an order that the variant draws rightly.
  void draw(const Device_Geometry& geometry);
  // Faces in the colour of the background, which only hide the edges that lie after them.
  void draw_hiding(const Device_Geometry& geometry);

 private:
  const Drawing& drawing() const { return canvas_.configuration.drawing; }
  enum class Which { all, opaque };
  void draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry,
                   Which which = Which::all);
  void draw_strip(const KT_Rendition& rendition, const Device_Geometry& geometry,
                  const Device_Strip& strip);
  void draw_textured(const KT_Rendition& rendition, const Device_Geometry& geometry,
                     const Device_Strip& strip);
  std::span<const KT_Point> beneath_lines(std::span<const KT_Point> points);
  void draw_polygon(const KT_Rendition& rendition, std::span<const KT_Point> points,
                    const KT_RGB32* color);
  KT_Rendition textured(const KT_Rendition& rendition, const Device_Strip& strip) const;

  const Canvas& canvas_;
  const Textures& textures_;
  Strip_Calls calls_;
  std::vector<float> even_w_;  // of one call, all 1
  std::vector<KT_Point> beneath_;
};

}  // namespace kv
