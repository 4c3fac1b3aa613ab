// Antialiased lines: three pixels across at every step along the major axis, the middle one
// strongest.
//
//   o o o o o . . .     shallow and diagonal lines, and single points, have their side pixels
//   # # # # # o o o     above and below, steep ones left and right
//   o o o o o # # #
//   . . . . . o o o
//
// Coordinates are buffer coordinates as they come: the device origin has no part in it.
// Whole-number clipping may put the middle pixel one beyond the hard clip, where it is drawn all
// the same; a side pixel is drawn where the middle one leaves room for it inside. Nothing is drawn
// outside the image.
#pragma once

#include "module/core/call.h"

namespace zbuffer::lines {

/// Draws a flat list in the rendition's colour, clipping it.
void draw_antialiased_polyline(const Strip_Call& line);

/// Draws a colorized list of points that lie inside, far end included.
void draw_antialiased_list(const Strip_Call& line, Masking masking);

}  // namespace zbuffer::lines
