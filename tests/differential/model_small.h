// Reference model of dots, markers, images and polygons.
#pragma once

#include <optional>

#include "tests/differential/model_pixels.h"

namespace model {

bool merge_on(const State&, const KT_Rendition&);
/// True where the mask in force hides a pixel of buffer coordinates.
bool hidden(const State&, int x, int y);
/// `source` over `pixel` by 256ths of its alpha; the alpha byte becomes 255.
KT_RGB32 blend_256(KT_RGB32 pixel, KT_RGB32 source);
/// Index of a colour at a pixel by the plain dither.
std::uint8_t dithered(const State&, KT_RGB32 color, int x, int y);

/// The dot of variant `v`; a null colour means the rendition's.
void draw_dot(State&, Variant v, const KT_Rendition&, const KT_DCI_Point&, const KT_RGB32* color);

/// False when the general routine is to draw the markers.
bool draw_markers(State&, const KT_Rendition&, const std::vector<KT_DCI_Point>& points);

struct Image_Call {
  bool indices = false;  ///< palette indices, else colours
  KT_DCI_Point start, end;
  int stride = 0;
  std::vector<std::uint8_t> bytes;
};
/// False when the general routine is to draw the image.
bool draw_image(State&, const KT_Rendition&, const Image_Call&);

/// What a polygon comes down to: one call of a polytriangle action.
struct Strip_Call {
  KT_Action action{};
  std::vector<KT_Point_D> points;
  std::optional<KT_RGB32> color;
  bool single_color = false;
  int depth_offset = 0;         ///< of the rendition that the strip is drawn with
  bool same_rendition = false;  ///< that rendition is the caller's own record
};
struct Polygon_Call {
  KT_Action action{};
  std::vector<KT_Point> floats;      // of the float actions
  std::vector<KT_DCI_Point> points;  // of the integer ones
  std::optional<KT_RGB32> color;
};
/// The strips of a polygon of that rank; nothing at all when the general routine is to draw it.
std::optional<std::vector<Strip_Call>> draw_polygon(const KT_Rendition&, const Polygon_Call&,
                                                    int rank, int edge_depth_offset);

}  // namespace model
