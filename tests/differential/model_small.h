// Reference model of markers, images and polygons.
#pragma once

#include <optional>

#include "tests/differential/events.h"
#include "tests/differential/model_pixels.h"

namespace model {

Events draw_markers(State&, const KT_Rendition&, const std::vector<KT_DCI_Point>& points);

struct Image_Call {
  bool indices = false;  ///< palette indices, else colours
  KT_DCI_Point start, end;
  int stride = 0;
  std::vector<std::uint8_t> bytes{};
};
Events draw_image(State&, const KT_Rendition&, const Image_Call&);

struct Polygon_Call {
  KT_Action action{};
  std::vector<KT_Point> floats{};      // of the float actions
  std::vector<KT_DCI_Point> points{};  // of the integer ones
  std::optional<KT_RGB32> color{};
};
/// A polygon of that rank comes down to calls of other actions. `edge_offset`: of the edge pass in
/// which it is drawn.
Events draw_polygon(const KT_Rendition&, const Polygon_Call&, int rank, int edge_offset);

}  // namespace model
