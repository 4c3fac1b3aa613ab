// A call of a polyline routine, with all its arguments in one value.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer::lines {

/// A list of `count` points. `colors` is null for plain lists; colorized ones have a colour a
/// segment, or one for all with `single_color`; Gouraud ones have a colour a point.
struct Polyline {
  Software_Z_Buffer& renderer;
  const KT_Rendition& rendition;
  int count;
  const KT_DCI_Point* points;
  const KT_RGB32* colors = nullptr;
  bool single_color = false;

  const KT_Display_Context& context() const { return *rendition->display_context; }
  const KT_Line_Attributes& attributes() const { return *rendition->line_attributes; }
  const KT_Material& material() const { return *rendition->material; }
  std::uint32_t advanced_bits() const { return rendition->misc_attributes->advanced_options.bits; }

  /// Colour of segment `i` of a colorized list. One colour for all may be left to the rendition.
  KT_RGB32 segment_color(int i) const {
    if (!single_color) return colors[i];
    return colors ? *colors : material().color;
  }

  /// The same call with other points.
  Polyline with_points(int other_count, const KT_DCI_Point* other,
                       const KT_RGB32* their_colors) const {
    return {renderer, rendition, other_count, other, their_colors, single_color};
  }
  /// The same call in one colour.
  Polyline in_one_color(const KT_RGB32* color) const {
    return {renderer, rendition, count, points, color, true};
  }
  /// The same call with another rendition.
  Polyline drawn_by(const KT_Rendition& other) const {
    return {renderer, other, count, points, colors, single_color};
  }
};

}  // namespace zbuffer::lines
