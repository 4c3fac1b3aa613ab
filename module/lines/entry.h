// The routines of the polyline family, from the action to the scan.
//
//   2DI  int_any     cuts the list into parts inside (to DCI) and clipped segments
//   DCI  int_inside  draws: a scan
#pragma once

#include "module/core/call.h"

namespace zbuffer::lines {

/// Walks the entry steps of a routine, then does the layer's own work. The record of the call is
/// the routine's to change.
void enter(Routine routine, Strip_Call& line);

/// A call of this family, for a routine of `variant`.
Strip_Call polyline_call(Software_Z_Buffer& renderer, Variant variant,
                         const KT_Rendition& rendition, int count, const KT_DCI_Point* points,
                         const KT_RGB32* colors = nullptr, bool single_color = false);

/// Colour of segment `i` of a colorized list. One colour for all may be left to the rendition.
inline KT_RGB32 segment_color(const Strip_Call& line, int i) {
  if (!line.single_color) return line.colors[i];
  return line.colors ? *line.colors : line.material().color;
}

}  // namespace zbuffer::lines
