// A call of a polytriangle routine, with all its arguments in one value.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/triangles/rules.h"

namespace zbuffer {

/// A strip of `count` points. `colors` is null for flat strips; colorized ones have a colour a
/// triangle, or one for all with `single_color`; Gouraud ones have a colour a point.
template <class Point>
struct Strip_Of {
  Software_Z_Buffer& renderer;
  const KT_Rendition& rendition;
  int count;
  const Point* points;
  const KT_RGB32* colors = nullptr;
  bool single_color = false;

  const KT_Face_Attributes& face() const { return *rendition->face_attributes; }
  const KT_Material& material() const { return *rendition->material; }
  const KT_Display_Context& display_context() const { return *rendition->display_context; }
  std::uint32_t advanced_bits() const { return rendition->misc_attributes->advanced_options.bits; }

  /// The same call with other points.
  template <class Other>
  Strip_Of<Other> with_points(int other_count, const Other* other) const {
    return {renderer, rendition, other_count, other, colors, single_color};
  }
  /// The same call in one colour.
  Strip_Of in_one_color(const KT_RGB32* color) const {
    return {renderer, rendition, count, points, color, true};
  }
};

using Strip = Strip_Of<KT_DCI_Point>;
using Float_Strip = Strip_Of<KT_Point>;

template <Layer layer>
constexpr bool is_float_layer = layer == Layer::float_any || layer == Layer::float_inside;

template <Layer layer>
using Strip_At = std::conditional_t<is_float_layer<layer>, Float_Strip, Strip>;

}  // namespace zbuffer
