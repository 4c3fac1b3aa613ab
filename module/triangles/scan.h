// Scan conversion of strips that lie inside the hard clip, and of single triangles that do not.
#pragma once

#include "module/raster/clipper.h"
#include "module/raster/near_flat.h"
#include "module/triangles/drawer.h"
#include "module/triangles/scans.h"

namespace zbuffer::triangles {

/// A scan as the routine chooses it; the filling is added by the call.
struct Scan_Member {
  Variant variant;
  Kind kind;
  Path path;
  Masking masking;
};

template <Scan_Member scan>
void scan_inside(const Strip_Call& strip);

namespace scan_detail {

template <Scan_Member scan, Filling filling, class Bits, class Draw>
void with_filling(const Call& call, const Bits& bits, Draw draw) {
  using Rules = Pipeline<Member{scan.variant, scan.kind, scan.path, scan.masking, filling}>;
  const auto with_bits = [&](const auto& drawn) {
    with_depth_test<scan.variant, Rules::depth>(call.renderer, [&](auto test) {
      draw(Drawer<Rules, std::decay_t<decltype(drawn)>, decltype(test)>(call, drawn));
    });
  };
  if constexpr (scan.masking == Masking::masked) {
    with_bits(Masked_Bits(call.renderer.mask_cache, bits));
  } else {
    with_bits(bits);
  }
}

/// Calls `draw(drawer)` with the drawer for this call: everything that the call decides becomes a
/// type here.
template <Scan_Member scan, class Draw>
void with_drawer(const Call& call, Draw draw) {
  if (is_solid(call.rendition)) {
    with_filling<scan, Filling::solid>(call, Solid_Bits{}, draw);
  } else {
    with_filling<scan, Filling::patterned>(call, Stipple_Bits(call.rendition), draw);
  }
}

inline bool has_height(const KT_DCI_Point* points) {
  return points[0].y != points[1].y || points[0].y != points[2].y;
}

// Strips, one triangle after the other. A triangle that draws nothing still moves on.

template <class Drawer_Type>
void scan_flat(const Drawer_Type& drawer, const Strip_Call& strip) {
  for (int i = 0; i + 2 < strip.count; ++i) drawer.flat(strip.points + i);
}

// The first colour may have been changed before the scan; later ones are read anew.
template <class Drawer_Type>
void scan_colorized(const Drawer_Type& drawer, const Strip_Call& strip, KT_RGB32 first) {
  KT_RGB32 color = first;
  for (int i = 0; i + 2 < strip.count; ++i) {
    if (i > 0 && !strip.single_color) color = strip.colors[i];
    drawer.colorized(strip.points + i, color);
  }
}

// With one colour for all it is worked out for the first triangle alone. If that one has no
// height, the whole strip stays at index 0.
template <class Drawer_Type>
void scan_dithered(const Drawer_Type& drawer, const Strip_Call& strip) {
  const Cube cube(strip.renderer.color_cube);
  Dithered_Color color;
  for (int i = 0; i + 2 < strip.count; ++i) {
    if (!has_height(strip.points + i)) continue;
    if (i == 0 || !strip.single_color) color = Dithered_Color(cube, strip.colors[i]);
    drawer.dithered(strip.points + i, color);
  }
}

// A nearly flat triangle is a colorized strip of its own, in the colour of its first point.
template <Scan_Member scan, class Drawer_Type>
void scan_gouraud(const Drawer_Type& drawer, const Strip_Call& strip) {
  for (int i = 0; i + 2 < strip.count; ++i) {
    const KT_RGB32* colors = strip.colors + i;
    if (near_flat_inside(colors)) {
      constexpr Scan_Member in_one_color{scan.variant, Kind::colorized, scan.path, scan.masking};
      scan_inside<in_one_color>(strip.with_points(3, strip.points + i).in_one_color(colors));
    } else {
      drawer.gouraud(strip.points + i, colors);
    }
  }
}

}  // namespace scan_detail

/// Draws a strip that lies inside.
template <Scan_Member scan>
void scan_inside(const Strip_Call& strip) {
  using namespace scan_detail;
  if (strip.count < 3 || draws_nothing(strip.rendition)) return;
  KT_RGB32 first{};
  if constexpr (scan.kind == Kind::colorized) first = strip.colors[0];
  constexpr Member solid{scan.variant, scan.kind, scan.path, scan.masking, Filling::solid};
  if constexpr (rules::first_color(solid) == First_Color::tested) {
    if (first.alpha == 0 && strip.single_color) return;
    if (merge_on(strip.renderer, strip.rendition)) first.alpha = 255;
  }
  with_drawer<scan>(strip, [&](const auto& drawer) {
    if constexpr (scan.kind == Kind::flat) {
      scan_flat(drawer, strip);
    } else if constexpr (scan.kind == Kind::gouraud) {
      scan_gouraud<scan>(drawer, strip);
    } else if constexpr (is_mapped(scan.variant)) {
      scan_dithered(drawer, strip);
    } else {
      scan_colorized(drawer, strip, first);
    }
  });
}

/// Draws a strip of one triangle, cut by the hard clip. A triangle that reaches beyond the device
/// range is first cut to a strip inside it.
template <Scan_Member scan>
void scan_clipped(const Strip_Call& triangle) {
  using namespace scan_detail;
  const Clipped_Strip strip =
      clipped_to_device_range({.points = triangle.points,
                               .colors = scan.kind == Kind::gouraud ? triangle.colors : nullptr});
  with_drawer<scan>(triangle, [&](const auto& drawer) {
    for (int i = 0; i + 2 < strip.count; ++i) {
      const KT_DCI_Point* points = strip.points + i;
      if constexpr (scan.kind == Kind::flat) {
        drawer.flat(points);
      } else if constexpr (scan.kind == Kind::gouraud) {
        drawer.gouraud(points, strip.colors + i);
      } else if constexpr (is_mapped(scan.variant)) {
        drawer.dithered_by_pixel(points, triangle.colors[0]);
      } else {
        drawer.colorized(points, triangle.colors[0]);
      }
    }
  });
}

/// All scans of a variant.
template <Variant variant>
constexpr Scans scans() {
  Scans made{};
  for_all_kinds([&]<Kind kind, Masking masking>() {
    constexpr auto k = static_cast<std::size_t>(kind);
    constexpr auto m = static_cast<std::size_t>(masking);
    constexpr Member solid{variant, kind, Path::inside, masking, Filling::solid};
    if constexpr (rules::exists(solid) == Exists::yes) {
      made.inside[k][m] = scan_inside<Scan_Member{variant, kind, Path::inside, masking}>;
      made.clipped[k][m] = scan_clipped<Scan_Member{variant, kind, Path::clipped, masking}>;
    }
  });
  return made;
}

}  // namespace zbuffer::triangles
