// Reference model of the polyline actions.
#pragma once

#include "tests/differential/events.h"
#include "tests/differential/model_pixels.h"

namespace model {

using Points = std::vector<KT_DCI_Point>;

/// A polyline as an action gets it. No colours: a null pointer.
struct Line {
  Kind kind{};
  Points points;
  std::vector<KT_RGB32> colors{};  // one a segment, one in all, or one a point
  bool single_color = false;
};

/// `device`: the points lie inside the hard clip.
KT_Action action_of(Kind, bool device);

/// Does to the images of `state` what the action does; gives the general routines it calls.
Events draw_line(State&, const KT_Rendition&, bool device, const Line&);
/// The edges of a triangle strip as lines.
Events draw_strip_edges(State&, const KT_Rendition&, const Points&);

// Antialiased lines take device coordinates for buffer coordinates.
void draw_antialiased_line(State&, const KT_Rendition_Data&, const Points&);
/// Points inside the hard clip with the colour of each segment, last point included.
void draw_antialiased_run(State&, const KT_Rendition_Data&, const Points&,
                          const std::vector<KT_RGB32>& segment_colors, bool draw_last);

}  // namespace model
