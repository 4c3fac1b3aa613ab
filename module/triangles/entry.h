// From an action to the scan: entry chains, the four layers, and the walk along a strip that
// crosses the hard clip.
//
//   2D   float_any     float, anywhere   converts, goes on to 2DI
//   2DI  int_any       whole, anywhere   cuts the strip into visible pieces (to DCI) and single
//                                        clipped triangles
//   DC   float_inside  float, inside     converts, goes on to DCI
//   DCI  int_inside    whole, inside     scan conversion
#pragma once

#include "module/core/scratch.h"
#include "module/lines/strip_edges.h"
#include "module/raster/strip_split.h"
#include "module/triangles/scan.h"
#include "module/triangles/standard.h"

namespace zbuffer {

namespace entry_detail {

/// The layer that a float layer goes on to.
constexpr Layer layer_below(Layer layer) {
  return layer == Layer::float_any ? Layer::int_any : Layer::int_inside;
}

template <Layer layer, Variant variant, Kind kind>
void enter_masked(const Strip& strip) {
  if constexpr (layer == Layer::int_any) {
    draw_anywhere_masked<variant, kind>(strip);
  } else {
    draw_inside_masked<variant, kind>(strip);
  }
}

template <Step step, Layer layer, Variant variant, Kind kind>
bool taken(const Strip_At<layer>& strip);

/// The rest of the blending variant's chain behind its edge test, and its scan.
template <Layer layer, Variant variant, Kind kind>
void blend_filled(const Strip_At<layer>& strip) {
  if (taken<Step::standard_face, layer, variant, kind>(strip)) return;
  if (taken<Step::no_depth, layer, variant, kind>(strip)) return;
  scan<variant, kind, Masking::open>(strip);
}

/// Takes the call elsewhere when the test of `step` holds; returns whether it did.
template <Step step, Layer layer, Variant variant, Kind kind>
bool taken(const Strip_At<layer>& strip) {
  const auto bit = [&](std::uint32_t value) { return (strip.advanced_bits() & value) != 0; };
  if constexpr (step == Step::alpha_bit) {
    if (!bit(KT_Advanced_Options::alpha_bit)) return false;
    enter<layer, with_alpha(variant), kind>(strip);
  } else if constexpr (step == Step::blend_filled) {
    if (!bit(KT_Advanced_Options::alpha_bit)) return false;
    blend_filled<layer, with_alpha(variant), kind>(strip);
  } else if constexpr (step == Step::edge_bit) {
    if (!bit(KT_Advanced_Options::edge_bit)) return false;
    draw_strip_edges(strip.renderer, strip.rendition, strip.count, strip.points);
  } else if constexpr (step == Step::standard_face) {
    if (strip.face().face_pattern < KT_Face_Attributes::first_standard) return false;
    call_standard<layer, kind>(strip);
  } else if constexpr (step == Step::nothing) {
    return !strip.renderer.color_image || strip.count < 2;
  } else if constexpr (step == Step::no_depth) {
    if (strip.display_context().depth_enabled != 0) return false;
    enter<layer, without_depth(variant), kind>(strip);
  } else if constexpr (step == Step::merge) {
    if (!merge_on(strip.renderer, strip.rendition)) return false;
    enter<layer, with_alpha(variant), kind>(strip);
  } else if constexpr (step == Step::mask) {
    if (!mask_in_force(strip.renderer, strip.rendition)) return false;
    enter_masked<layer, variant, kind>(strip);
  } else {
    static_assert(step == Step::none);
    return false;
  }
  return true;
}

template <Layer layer, Variant variant, Kind kind, std::size_t... at>
bool taken_by_chain(const Strip_At<layer>& strip, std::index_sequence<at...>) {
  constexpr Chain chain = the_chain({layer, kind, variant});
  return (taken<chain.steps[at], layer, variant, kind>(strip) || ...);
}

template <Layer layer, Variant variant, Kind kind>
bool taken_by_chain(const Strip_At<layer>& strip) {
  return taken_by_chain<layer, variant, kind>(strip, std::make_index_sequence<Chain::longest>{});
}

/// A flat action of a direct colour: the colorized one, in a copy of the rendition's colour.
template <Layer layer, Variant variant>
void enter_as_colorized(const Strip_At<layer>& flat) {
  KT_RGB32 color = flat.material().color;
  const auto strip = flat.in_one_color(&color);  // points at `color`, also when that changes below
  constexpr Chain chain = the_chain({layer, Kind::flat, variant});
  if constexpr (chain.has(Step::alpha_bit)) {
    if (taken<Step::alpha_bit, layer, variant, Kind::colorized>(strip)) return;
  }
  if constexpr (chain.has(Step::merge_opaque)) {
    if (merge_on(strip.renderer, strip.rendition)) {
      color.alpha = 255;
      return enter<layer, with_alpha(variant), Kind::colorized>(strip);
    }
  }
  enter<layer, variant, Kind::colorized>(strip);
}

/// Rounds float points and goes on to the integer layer below. Variants without depth leave z of
/// points that are inside alone: nothing reads it there.
template <Layer layer, Variant variant, Kind kind>
void convert(const Float_Strip& strip) {
  constexpr bool with_z = layer == Layer::float_any || has_depth(variant);
  Scratch<KT_DCI_Point> points(strip.count);
  for (int i = 0; i < strip.count; ++i) {
    const KT_Point& from = strip.points[i];
    points[i] = {rounded(from.x), rounded(from.y), with_z ? rounded(from.z) : 0};
  }
  enter<layer_below(layer), variant, kind>(strip.with_points(strip.count, points.data()));
}

/// Draws a strip, or a piece of one, that lies inside.
template <Variant variant, Kind kind, Masking masking>
void draw_piece(const Strip& piece) {
  if constexpr (masking == Masking::masked) {
    draw_inside_masked<variant, kind>(piece);
  } else {
    enter<Layer::int_inside, variant, kind>(piece);
  }
}

/// A strip that lies inside as a whole. `RGB_Z` alone goes through the action record here, so that
/// whoever has bound a routine of his own there sees it.
template <Variant variant, Kind kind, Masking masking>
void draw_visible_strip(const Strip& strip) {
  if constexpr (variant == Variant::rgb_z && masking == Masking::open) {
    const KT_Action_Table& actions = strip.renderer.actions;
    if constexpr (kind == Kind::gouraud) {
      actions.call<KT_Action::Draw_DCI_Gouraud_Polytriangle>(strip.rendition, strip.count,
                                                             strip.points, strip.colors);
    } else {
      actions.call<KT_Action::Draw_DCI_Colorized_Polytriangle>(
          strip.rendition, strip.count, strip.points, strip.colors, strip.single_color);
    }
  } else {
    draw_piece<variant, kind, masking>(strip);
  }
}

/// The strip's colours from triangle `i` on.
template <Kind kind>
const KT_RGB32* colors_at(const Strip& strip, int i) {
  if (kind == Kind::flat || (kind == Kind::colorized && strip.single_color)) return strip.colors;
  return strip.colors + i;
}

template <Variant variant, Kind kind, Masking masking>
void draw_clipped(const Strip& strip, int i) {
  Strip triangle = strip.with_points(3, strip.points + i);
  triangle.colors = colors_at<kind>(strip, i);
  if constexpr (kind == Kind::gouraud) {
    if (near_flat_when_clipped(triangle.colors)) {
      return draw_clipped_triangle<variant, Kind::colorized, masking>(
          triangle.in_one_color(triangle.colors));
    }
  }
  draw_clipped_triangle<variant, kind, masking>(triangle);
}

template <Variant variant, Kind kind, Masking masking>
void draw_crossing_strip(const Strip& strip, const short* codes) {
  if (draws_nothing(strip.rendition)) return;
  split_strip(
      strip.count, codes,
      [&](int first, int count) {
        Strip piece = strip.with_points(count, strip.points + first);
        piece.colors = colors_at<kind>(strip, first);
        draw_piece<variant, kind, masking>(piece);
      },
      [&](int first) { draw_clipped<variant, kind, masking>(strip, first); });
}

template <Variant variant, Kind kind, Masking masking>
void draw_anywhere(const Strip& strip) {
  Scratch<short> codes(strip.count);
  const int verdict =
      KD_Clip(strip.display_context().hard_clip, strip.count, strip.points, codes.data());
  if (verdict == strip.count) return draw_visible_strip<variant, kind, masking>(strip);
  if (verdict != 0) draw_crossing_strip<variant, kind, masking>(strip, codes.data());
}

}  // namespace entry_detail

template <Layer layer, Variant variant, Kind kind>
void enter(const Strip_At<layer>& strip) {
  using namespace entry_detail;
  if constexpr (kind == Kind::flat && !is_mapped(variant)) {
    enter_as_colorized<layer, variant>(strip);
  } else {
    if (taken_by_chain<layer, variant, kind>(strip)) return;
    if constexpr (is_float_layer<layer>) {
      convert<layer, variant, kind>(strip);
    } else if constexpr (layer == Layer::int_any) {
      draw_anywhere<variant, kind, Masking::open>(strip);
    } else {
      scan<variant, kind, Masking::open>(strip);
    }
  }
}

template <Variant variant, Kind kind>
void draw_anywhere_masked(const Strip& strip) {
  entry_detail::draw_anywhere<variant, kind, Masking::masked>(strip);
}

template <Variant variant, Kind kind>
void draw_inside_masked(const Strip& strip) {
  if constexpr (variant == Variant::rgb) {
    const bool blends = (strip.advanced_bits() & KT_Advanced_Options::alpha_bit) != 0;
    // Merging moves colorized strips alone.
    const bool merges = kind == Kind::colorized && merge_on(strip.renderer, strip.rendition);
    if (blends || merges) return draw_inside_masked<Variant::rgb_alpha, kind>(strip);
  }
  scan<variant, kind, Masking::masked>(strip);
}

}  // namespace zbuffer
