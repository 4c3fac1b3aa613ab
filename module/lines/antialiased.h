// Antialiased lines: three pixels across at every step along the major axis, the middle one
// strongest.
//
//   o o o o o . . .     shallow and diagonal lines, and single points, have their side pixels
//   # # # # # o o o     above and below, steep ones left and right
//   o o o o o # # #
//   . . . . . o o o
//
// Coordinates are buffer coordinates as they come: the device origin has no part in it. Nothing is
// drawn outside the hard clip.
#pragma once

#include "module/lines/polyline.h"
#include "module/lines/rules.h"

namespace zbuffer::lines {

/// Draws a plain list in the rendition's colour, clipping it.
void draw_antialiased_polyline(const Polyline& line);

/// Draws a colorized list of points that lie inside, far end included.
void draw_antialiased_list(const Polyline& line, Masking masking);

}  // namespace zbuffer::lines
