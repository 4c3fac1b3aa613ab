// The near-flat test: Gouraud primitives whose colours hardly differ are drawn in one colour, by
// the colorized routine and by its rules: of depth settings, merging and alpha, too.
#pragma once

#include "host/types.h"

namespace zbuffer {

/// Whether red, green and blue each differ by at most 3. Alpha does not count.
constexpr bool nearly_equal(KT_RGB32 a, KT_RGB32 b) {
  const auto near = [](int x, int y) { return static_cast<unsigned>(x - y + 3) <= 6; };
  return near(a.red, b.red) && near(a.green, b.green) && near(a.blue, b.blue);
}

/// The test of strips that lie inside: point 0 with both others.
constexpr bool near_flat_inside(const KT_RGB32* colors) {
  return nearly_equal(colors[0], colors[1]) && nearly_equal(colors[0], colors[2]);
}

/// The test ahead of clipped triangles: neighbours in strip order. Not the same test.
constexpr bool near_flat_clipped(const KT_RGB32* colors) {
  return nearly_equal(colors[0], colors[1]) && nearly_equal(colors[1], colors[2]);
}

}  // namespace zbuffer
