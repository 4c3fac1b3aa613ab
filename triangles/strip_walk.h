// The walk along a strip that crosses the hard clip: runs of visible triangles, each a strip of its
// own, and single triangles that are clipped.
#pragma once

namespace zbuffer {

/// `codes` holds an outcode a point. Calls `draw_run(first, count)` with the points of a run and
/// `draw_clipped(first)` with the first point of a triangle.
template <class Draw_Run, class Draw_Clipped>
void walk_strip(int count, const short* codes, Draw_Run draw_run, Draw_Clipped draw_clipped) {
  const int last = count - 2;  // one past the last triangle
  const auto beyond_one_edge = [&](int i) { return (codes[i] & codes[i + 1] & codes[i + 2]) != 0; };
  const auto crosses = [&](int i) { return (codes[i] | codes[i + 1] | codes[i + 2]) != 0; };
  int i = 0;
  while (i < last) {
    while (i < last && beyond_one_edge(i)) ++i;
    // Once a triangle is clipped the next are not rejected, even beyond one edge.
    while (i < last && crosses(i)) draw_clipped(i++);
    if (i >= last) return;
    const int start = i++;
    while (i < last && codes[i + 2] == 0) ++i;
    draw_run(start, i + 2 - start);
  }
}

}  // namespace zbuffer
