// The triangle clipper: cuts one triangle against one rectangle, with all vertex attributes, for
// triangles that reach beyond what fixed-point edges can hold. It works in double precision and
// allocates nothing.
#pragma once

#include <algorithm>

#include "host/rendition.h"

namespace zbuffer {

/// The rectangle, in device coordinates, within which the fixed-point arithmetic cannot overflow:
/// no difference of two coordinates in it reaches 2^15. It is held against device coordinates
/// although edges run in buffer coordinates; windows begin near the origin.
inline constexpr KT_Int_Rectangle safe_rectangle{-4000, 28760, -4000, 28760};

inline constexpr int clipped_points_at_most = 8;

/// Cuts the triangle of `points` (device coordinates) against `rectangle`; z is carried along.
///
/// `colors[2]` null means no colours, `parameters[0]` null no parameters; `w` goes with the
/// parameters. Vectors are accepted and come back as zeros. Of the rendition only
/// `texture_options` is read: bit 0 makes parameters perspective-correct. `count` gets the number
/// of points of a triangle strip of up to 8 points, or 0 when nothing is left; output lists may be
/// null where the matching input is.
void clip_triangle(const KT_Rendition& rendition, const KT_DCI_Point* points,
                   const KT_RGB32* const (&colors)[3], const KT_Parameter* const (&parameters)[3],
                   const float (&w)[3], const KT_Vector* const (&vectors)[3],
                   const KT_Int_Rectangle& rectangle, int& count, KT_DCI_Point* points_out,
                   KT_RGB32* colors_out, KT_Parameter* parameters_out, KT_Vector* vectors_out,
                   float* w_out);

/// The strip that a clipped triangle is drawn as.
struct Clipped_List {
  int count = 0;
  KT_DCI_Point points[clipped_points_at_most];
  KT_RGB32 colors[clipped_points_at_most];

  /// Takes a triangle as it is; `from_colors` may be null.
  void take_triangle(const KT_DCI_Point* from, const KT_RGB32* from_colors) {
    count = 3;
    std::copy_n(from, 3, points);
    if (from_colors) std::copy_n(from_colors, 3, colors);
  }
  /// Takes what the rectangle leaves of a triangle.
  void clip(const KT_Rendition& rendition, const KT_DCI_Point* from, const KT_RGB32* from_colors,
            const KT_Int_Rectangle& rectangle) {
    const KT_RGB32* const three[3] = {from_colors, from_colors ? from_colors + 1 : nullptr,
                                      from_colors ? from_colors + 2 : nullptr};
    clip_triangle(rendition, from, three, {nullptr, nullptr, nullptr}, {0, 0, 0},
                  {nullptr, nullptr, nullptr}, rectangle, count, points, colors, nullptr, nullptr,
                  nullptr);
  }
};

}  // namespace zbuffer
