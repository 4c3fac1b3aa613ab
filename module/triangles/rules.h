// The rules by which like members of the polytriangle family differ, as tables.
//
// A member is a routine by variant, kind, road, masking and filling; rows may cover members that
// are never made, such as flat ones of direct colour. Beside the tables stand, each at its place:
// the head of the scan of `RGB_Alpha` and the dithered strip of one colour (scan.h), z of points
// inside and the action record of `RGB_Z` (entry.h), and where masked `RGB` blends (entry.h).
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>

#include "module/core/rule_table.h"
#include "module/core/variant.h"
#include "module/pixels/blend.h"
#include "module/pixels/depth_test.h"

namespace zbuffer {

enum class Kind : std::uint8_t { flat, colorized, gouraud };
/// Point type and place of an action: `2D`, `DC`, `2DI`, `DCI`.
enum class Layer : std::uint8_t { float_any, float_inside, int_any, int_inside };
/// The scan of strips that lie inside, or single triangles cut by the hard clip.
enum class Road : std::uint8_t { scan, clipped };
enum class Masking : std::uint8_t { open, masked };
enum class Filling : std::uint8_t { solid, patterned };

struct Member {
  Variant variant;
  Kind kind;
  Road road;
  Masking masking;
  Filling filling;
};

struct Where {
  Any<Variant> variant{};
  Any<Kind> kind{};
  Any<Road> road{};
  Any<Masking> masking{};
  Any<Filling> filling{};

  constexpr bool covers(Member m) const {
    return variant.has(m.variant) && kind.has(m.kind) && road.has(m.road) &&
           masking.has(m.masking) && filling.has(m.filling);
  }
};

/// How the two depth settings are taken.
struct Depth_Rule {
  Depth_Setting test;
  Depth_Setting write;
};

/// Which pixels merge control changes when it is on.
enum class Merge_Rule : std::uint8_t {
  never,
  opaque_triangles,  // triangles of alpha 255 merge, contrast pixels with them; others blend
  all,               // every stored pixel
  ordinary           // ordinary pixels; the contrast colour is stored as it is
};

/// What becomes of the alpha of an ordinary and of a contrast pixel, in direct colour.
struct Alpha_Rules {
  Alpha_Rule ordinary;
  Alpha_Rule contrast;
};

/// Spans that work straight from the edges, without a division.
enum class Short_Spans : std::uint8_t { none, one_and_two };

/// Whether rows outside the window are passed over.
enum class Row_Rule : std::uint8_t { trusted, guarded };

namespace rules {

using enum Variant;
using enum Kind;
using enum Road;
using enum Masking;
using enum Filling;

template <class Rule>
using Row = Rule_Row<Where, Rule>;

// Depth settings honoured. Only the colorized routines of the direct colours read them, and
// `RGB_Alpha_Z` only the write setting.
inline constexpr Depth_Setting fixed = Depth_Setting::fixed;
inline constexpr Depth_Setting by_setting = Depth_Setting::by_setting;
inline constexpr Row<Depth_Rule> depth_rules[] = {
    {{.variant = {rgb_alpha, rgb, mapped, mapped_z}}, {fixed, fixed}},
    {{.variant = {rgb_alpha_z, rgb_z}, .kind = gouraud}, {fixed, fixed}},
    {{.variant = {rgb_alpha_z, rgb_z}, .kind = {flat, colorized}, .masking = masked},
     {fixed, fixed}},
    {{.variant = rgb_z, .kind = {flat, colorized}, .road = scan, .masking = open},
     {by_setting, by_setting}},
    {{.variant = rgb_z,
      .kind = {flat, colorized},
      .road = clipped,
      .masking = open,
      .filling = solid},
     {by_setting, by_setting}},
    // A pass writes depth here, whatever the write setting says.
    {{.variant = rgb_z,
      .kind = {flat, colorized},
      .road = clipped,
      .masking = open,
      .filling = patterned},
     {by_setting, fixed}},
    {{.variant = rgb_alpha_z, .kind = {flat, colorized}, .road = scan, .masking = open},
     {fixed, by_setting}},
    {{.variant = rgb_alpha_z,
      .kind = {flat, colorized},
      .road = clipped,
      .masking = open,
      .filling = solid},
     {fixed, by_setting}},
    {{.variant = rgb_alpha_z,
      .kind = {flat, colorized},
      .road = clipped,
      .masking = open,
      .filling = patterned},
     {fixed, fixed}},
};

inline constexpr Row<Merge_Rule> merge_rules[] = {
    {{.variant = {rgb_alpha_z, rgb_z, mapped_z, rgb}}, Merge_Rule::never},
    {{.variant = mapped, .kind = flat}, Merge_Rule::all},
    {{.variant = mapped, .kind = colorized, .road = scan}, Merge_Rule::never},
    {{.variant = mapped, .kind = colorized, .road = clipped}, Merge_Rule::ordinary},
    {{.variant = {mapped, rgb_alpha}, .kind = gouraud}, Merge_Rule::never},
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = scan, .masking = open},
     Merge_Rule::opaque_triangles},
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = scan, .masking = masked},
     Merge_Rule::all},
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = clipped}, Merge_Rule::all},
};

inline constexpr Alpha_Rule store = Alpha_Rule::store;
inline constexpr Alpha_Rule blend = Alpha_Rule::blend;
inline constexpr Alpha_Rule by_alpha = Alpha_Rule::by_alpha;
inline constexpr Alpha_Rule keeping = Alpha_Rule::by_alpha_keeping;
inline constexpr Row<Alpha_Rules> alpha_rules[] = {
    {{.variant = {rgb, rgb_z, mapped, mapped_z}}, {store, store}},
    // The scan of `RGB_Alpha` stores the contrast colour unblended, that of `RGB_Alpha_Z` and
    // all clipped spans blend it.
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = scan, .masking = open},
     {blend, store}},
    {{.variant = rgb_alpha, .kind = gouraud, .road = scan, .masking = open}, {by_alpha, store}},
    {{.variant = rgb_alpha, .road = clipped, .masking = open}, {by_alpha, by_alpha}},
    // Under a mask a blended pixel keeps its alpha byte.
    {{.variant = rgb_alpha, .masking = masked}, {keeping, keeping}},
    {{.variant = rgb_alpha_z, .kind = {flat, colorized}, .road = scan}, {blend, blend}},
    {{.variant = rgb_alpha_z, .kind = gouraud, .road = scan}, {by_alpha, by_alpha}},
    {{.variant = rgb_alpha_z, .road = clipped}, {by_alpha, by_alpha}},
};

// Spans of one and two pixels that work straight from the edges.
inline constexpr Row<Short_Spans> short_span_rules[] = {
    {{.road = scan, .masking = open, .filling = solid}, Short_Spans::one_and_two},
    {{.variant = {mapped, mapped_z}, .road = scan, .masking = masked, .filling = solid},
     Short_Spans::one_and_two},
    {{.variant = {rgb_alpha, rgb, rgb_alpha_z, rgb_z},
      .road = scan,
      .masking = masked,
      .filling = solid},
     Short_Spans::none},
    {{.road = scan, .filling = patterned}, Short_Spans::none},
    {{.road = clipped}, Short_Spans::none},
};

// Rows outside the window are passed over in one scan alone.
inline constexpr Row<Row_Rule> row_rules[] = {
    {{.variant = rgb_alpha,
      .kind = {flat, colorized},
      .road = scan,
      .masking = open,
      .filling = solid},
     Row_Rule::guarded},
    {{.variant = rgb_alpha,
      .kind = {flat, colorized},
      .road = scan,
      .masking = open,
      .filling = patterned},
     Row_Rule::trusted},
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = scan, .masking = masked},
     Row_Rule::trusted},
    {{.variant = rgb_alpha, .kind = {flat, colorized}, .road = clipped}, Row_Rule::trusted},
    {{.variant = rgb_alpha, .kind = gouraud}, Row_Rule::trusted},
    {{.variant = {rgb, mapped, mapped_z, rgb_alpha_z, rgb_z}}, Row_Rule::trusted},
};

}  // namespace rules

// Entry chains: the tests at the head of an action, in order; the first that holds takes the
// call elsewhere. Which order and which tests differs from routine to routine.
enum class Step : std::uint8_t {
  none,
  alpha_bit,      // blending asked for: the blending variant, same layer and kind
  blend_filled,   // the same, past that variant's edge test
  edge_bit,       // edges asked for: the strip is drawn as lines
  standard_face,  // a pattern that is not handled here: the framework's general routine
  nothing,        // no image, or fewer than two points
  no_depth,       // depth test off: the variant without depth, same layer and kind
  merge,          // merge control on: the blending variant
  merge_opaque,   // the same, with the colour made opaque
  mask            // a mask in force: the masked routine of the same layer
};

struct Chain {
  static constexpr std::size_t longest = 6;
  std::array<Step, longest> steps{};

  constexpr Chain(std::initializer_list<Step> list) {
    std::size_t at = 0;
    for (Step step : list) steps[at++] = step;
  }
  constexpr bool has(Step wanted) const {
    for (Step step : steps) {
      if (step == wanted) return true;
    }
    return false;
  }
};

struct Entry {
  Layer layer;
  Kind kind;
  Variant variant;
};

struct Chain_Row {
  Layer layer;
  Any<Kind> kind;
  Any<Variant> variant;
  Chain chain;
};

namespace rules {

using enum Step;
using enum Layer;

// Flat actions of the direct colours have their own few tests and then are colorized ones.
inline constexpr Any<Variant> mapped_variants = {mapped, mapped_z};
inline constexpr Any<Variant> direct_variants = {rgb_alpha, rgb, rgb_alpha_z, rgb_z};
inline constexpr Any<Kind> shaded = {colorized, gouraud};
inline constexpr Any<Kind> all_kinds = {flat, colorized, gouraud};

inline constexpr Chain_Row chains[] = {
    {float_any, all_kinds, mapped, {standard_face, nothing}},
    {float_any, all_kinds, mapped_z, {standard_face, nothing, no_depth}},
    {float_any, flat, direct_variants, {}},
    {float_any, colorized, rgb, {alpha_bit, standard_face, nothing}},
    {float_any,
     gouraud,
     rgb,
     {standard_face, nothing}},  // no test of the alpha bit, unlike colorized
    {float_any, shaded, rgb_alpha, {standard_face, nothing}},
    {float_any, shaded, {rgb_z, rgb_alpha_z}, {standard_face, nothing, no_depth}},

    // Inside points: neither image nor count is looked at.
    {float_inside, all_kinds, mapped, {standard_face}},
    {float_inside, {flat, gouraud}, mapped_z, {standard_face}},  // the inner layer tests depth
    {float_inside, colorized, mapped_z, {standard_face, no_depth}},
    {float_inside, flat, {rgb, rgb_z}, {alpha_bit}},
    {float_inside, flat, {rgb_alpha, rgb_alpha_z}, {}},
    {float_inside, shaded, rgb, {alpha_bit, standard_face}},
    {float_inside, shaded, rgb_z, {alpha_bit, standard_face, no_depth}},
    {float_inside, shaded, rgb_alpha, {standard_face}},
    {float_inside, shaded, rgb_alpha_z, {standard_face, no_depth}},

    {int_any, all_kinds, mapped, {standard_face, nothing, mask}},
    {int_any, all_kinds, mapped_z, {standard_face, nothing, no_depth, mask}},
    {int_any, flat, rgb, {merge_opaque}},
    {int_any, flat, {rgb_z, rgb_alpha, rgb_alpha_z}, {}},
    {int_any, colorized, rgb, {alpha_bit, standard_face, nothing, mask}},
    {int_any, gouraud, rgb, {standard_face, nothing, mask}},
    {int_any, shaded, rgb_z, {edge_bit, alpha_bit, standard_face, nothing, no_depth, mask}},
    {int_any, shaded, rgb_alpha, {standard_face, nothing, mask}},
    {int_any, shaded, rgb_alpha_z, {edge_bit, standard_face, nothing, no_depth}},  // never masked

    {int_inside, all_kinds, mapped, {standard_face, mask}},
    {int_inside, all_kinds, mapped_z, {standard_face, no_depth, mask}},
    {int_inside, flat, rgb, {alpha_bit, merge_opaque}},
    {int_inside, flat, rgb_z, {alpha_bit}},
    {int_inside, flat, {rgb_alpha, rgb_alpha_z}, {}},
    {int_inside, colorized, rgb, {alpha_bit, standard_face, merge, mask}},
    {int_inside, gouraud, rgb, {alpha_bit, standard_face, mask}},
    // With both bits set a colorized call blends and a Gouraud call draws edges.
    {int_inside, colorized, rgb_z, {blend_filled, edge_bit, standard_face, no_depth, mask}},
    {int_inside, gouraud, rgb_z, {edge_bit, alpha_bit, standard_face, no_depth, mask}},
    {int_inside, shaded, rgb_alpha, {standard_face, mask}},
    {int_inside, shaded, rgb_alpha_z, {edge_bit, standard_face, no_depth}},
};

}  // namespace rules

constexpr Chain the_chain(Entry entry) {
  constexpr std::size_t count = std::size(rules::chains);
  std::size_t found = count;
  for (std::size_t i = 0; i < count; ++i) {
    const Chain_Row& row = rules::chains[i];
    if (row.layer != entry.layer || !row.kind.has(entry.kind) || !row.variant.has(entry.variant)) {
      continue;
    }
    if (found != count) throw "two chains for one entry";
    found = i;
  }
  if (found == count) throw "no chain for an entry";
  return rules::chains[found].chain;
}

}  // namespace zbuffer
