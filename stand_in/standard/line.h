// What the parts of the general polyline routines hand to each other.
#pragma once

#include <span>

#include "host/renderer.h"

namespace stand_in {

/// Where the colours of a polyline come from.
enum class Coloring : std::uint8_t {
  plain,       ///< the rendition
  single,      ///< the first vertex
  by_segment,  ///< the vertex that a segment starts at
  by_point     ///< both vertices of a segment, interpolated
};

/// A place on a line. Its coordinates are whole but for places where a line was cut.
struct Vertex {
  double x = 0;
  double y = 0;
  double z = 0;
  KT_RGB32 color;
};

/// How a polyline is drawn, and by whom.
struct Line_Job {
  const KT_Renderer_Data& renderer;
  KT_Rendition rendition;  ///< with the attributes of what the line is broken into
  Coloring coloring;
};

/// Which ends of a piece are ends of the whole line, too.
struct Piece_Ends {
  bool first = true;
  bool last = true;
};

KT_RGB32 mixed(KT_RGB32 from, KT_RGB32 to, double part);
/// The place at that part of the way; its colour is `from`'s unless colours are interpolated.
Vertex mixed(const Vertex& from, const Vertex& to, double part, Coloring coloring);

/// Whether two vertices lie at one point of the plane.
inline bool same_place(const Vertex& a, const Vertex& b) {
  return a.x == b.x && a.y == b.y;
}

}  // namespace stand_in
