// Reference model of the polyline actions.
#pragma once

#include <string>

#include "tests/differential/model_pixels.h"

namespace model {

/// A polyline as an action gets it. No colours: a null pointer.
struct Line {
  Kind kind{};
  std::vector<KT_DCI_Point> points;
  std::vector<KT_RGB32> colors;  // one a segment, one in all, or one a point
  bool single_color = false;
  bool operator==(const Line&) const = default;
};

/// A call of the general polyline routine of that kind and layer.
struct General_Line {
  bool device = false;  ///< the DCI layer
  Line line;
  std::string look;  ///< of the rendition
  bool operator==(const General_Line&) const = default;
};

/// The attributes of a rendition that the passes of an outlined line change.
std::string look_of(const KT_Rendition&);

/// Does to the images of `state` what the action does; gives the general routines it calls.
std::vector<General_Line> draw_line(State&, const KT_Rendition&, bool device, const Line&);
/// The edges of a triangle strip as lines.
std::vector<General_Line> draw_strip_edges(State&, const KT_Rendition&,
                                           const std::vector<KT_DCI_Point>& points);

// Antialiased lines take device coordinates for buffer coordinates.
void draw_antialiased_line(State&, const KT_Rendition&, const std::vector<KT_DCI_Point>& points);
/// Points inside the hard clip with the colour of each segment, last point included.
void draw_antialiased_run(State&, const KT_Rendition&, const std::vector<KT_DCI_Point>& points,
                          const std::vector<KT_RGB32>& segment_colors, bool draw_last);

}  // namespace model
