// A call of an action, with all its arguments in one value.
#pragma once

#include "module/core/entry_steps.h"

namespace zbuffer {

/// What all calls have: the renderer, the rendition, and which entry steps may apply.
struct Call {
  Software_Z_Buffer& renderer;
  const KT_Rendition& rendition;
  Entry_Step_Set held;

  const KT_Face_Attributes& face() const { return *rendition->face_attributes; }
  const KT_Line_Attributes& line() const { return *rendition->line_attributes; }
  const KT_Material& material() const { return *rendition->material; }
  const KT_Display_Context& display_context() const { return *rendition->display_context; }
  const KT_Misc_Attributes& misc() const { return *rendition->misc_attributes; }
};

/// A strip or a polyline of `count` points in device coordinates. Points and colours belong to the
/// caller. `colors` is null for flat calls; colorized ones have a colour a triangle or segment, or
/// one for all with `single_color`; Gouraud ones have a colour a point.
struct Strip_Call : Call {
  int count;
  const KT_DCI_Point* points;  // null in the float layers
  const KT_Point* floats;      // null in the integer layers
  const KT_RGB32* colors = nullptr;
  bool single_color = false;

  // Most calls pass the layers without a copy: what a layer changes, it changes in place.

  /// Gives the call other points.
  void set_points(int other_count, const KT_DCI_Point* other) {
    count = other_count;
    points = other;
    floats = nullptr;
  }
  /// Gives the call one colour, which must outlive it.
  void set_one_color(const KT_RGB32* color) {
    colors = color;
    single_color = true;
  }

  /// The same call with other points.
  Strip_Call with_points(int other_count, const KT_DCI_Point* other) const {
    Strip_Call call(*this);
    call.set_points(other_count, other);
    return call;
  }
  /// The same call in one colour, which must outlive it.
  Strip_Call in_one_color(const KT_RGB32* color) const {
    Strip_Call call(*this);
    call.set_one_color(color);
    return call;
  }
  /// `part_count` points from point `first` on, with their colours.
  Strip_Call part(Kind kind, int first, int part_count) const {
    Strip_Call call = with_points(part_count, points + first);
    if (kind == Kind::gouraud || (kind == Kind::colorized && !single_color)) call.colors += first;
    return call;
  }
};

}  // namespace zbuffer
