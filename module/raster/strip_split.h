// A strip that crosses the hard clip, taken apart: pieces of visible triangles, each a strip of its
// own, and single triangles that are clipped.
#pragma once

namespace zbuffer {

/// `codes` holds an outcode a point. Calls `draw_piece(first, count)` with the points of a piece
/// and `draw_clipped(first)` with the first point of a triangle, in the order of the strip.
template <class Draw_Piece, class Draw_Clipped>
void split_strip(int count, const short* codes, Draw_Piece draw_piece, Draw_Clipped draw_clipped) {
  const int triangles = count - 2;
  const auto beyond_one_edge = [&](int i) { return (codes[i] & codes[i + 1] & codes[i + 2]) != 0; };
  const auto crosses = [&](int i) { return (codes[i] | codes[i + 1] | codes[i + 2]) != 0; };
  int i = 0;
  while (i < triangles) {
    while (i < triangles && beyond_one_edge(i)) ++i;
    // Once a triangle is clipped the next are not rejected, even beyond one edge.
    while (i < triangles && crosses(i)) draw_clipped(i++);
    if (i >= triangles) return;
    const int start = i++;
    while (i < triangles && codes[i + 2] == 0) ++i;
    draw_piece(start, i + 2 - start);
  }
}

}  // namespace zbuffer
