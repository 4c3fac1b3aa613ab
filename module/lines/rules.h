// Every rule by which like members of the polyline family differ, as tables.
//
// A member is a routine by variant, kind, road and masking. Plain lists of the direct colours are
// colorized ones in one colour once they are inside; only their clipped segments are members.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>

#include "module/core/rule_table.h"
#include "module/core/variant.h"
#include "module/pixels/depth_test.h"

namespace zbuffer::lines {

enum class Kind : std::uint8_t { plain, colorized, gouraud };
enum class Layer : std::uint8_t { any, inside };  // 2DI DCI
enum class Road : std::uint8_t { run, clipped };  // lists of inside points; one cut segment
enum class Masking : std::uint8_t { open, masked };

struct Member {
  Variant variant;
  Kind kind;
  Road road;
  Masking masking;
};

struct Where {
  Any<Variant> variant{};
  Any<Kind> kind{};
  Any<Road> road{};
  Any<Masking> masking{};

  constexpr bool covers(Member m) const {
    return variant.has(m.variant) && kind.has(m.kind) && road.has(m.road) && masking.has(m.masking);
  }
};

/// When pixels go through merge control.
enum class Merge_Rule : std::uint8_t {
  never,
  asked_ahead,  // the entry chain looks at it and takes the call to the merging form
  when_on
};

/// What becomes of a direct colour's alpha.
enum class Blending : std::uint8_t { store, blend };

/// The final point of a list with depth: which value is compared with the stored depth, which one
/// is written, and how the colour gets there.
enum class End_Depth : std::uint8_t { point, accumulator };
enum class End_Color : std::uint8_t { as_drawn, stored };
struct End_Rule {
  End_Depth compared;
  End_Depth written;
  End_Color color;
};

/// How a Gouraud segment of nearly one colour is drawn.
enum class Near_Rule : std::uint8_t {
  shaded,         // like any other
  colorized,      // by the variant's colorized action
  opaque_variant  // by the colorized action of the opaque variant
};

/// Whether a clipped segment that ends up inside at both ends goes to the inside routine, which
/// draws its far end too.
enum class Inside_Pairs : std::uint8_t { to_inside, as_clipped };

namespace rules {

using enum Variant;
using enum Kind;
using enum Road;
using enum Masking;

inline constexpr Any<Variant> no_depth = {rgb_alpha, rgb, mapped};
inline constexpr Any<Variant> with_depth = {mapped_z, rgb_alpha_z, rgb_z};
inline constexpr Any<Variant> direct_with_depth = {rgb_alpha_z, rgb_z};
inline constexpr Any<Kind> one_colored = {plain, colorized};
inline constexpr Any<Kind> all_kinds = {plain, colorized, gouraud};

template <class Rule>
using Row = Rule_Row<Where, Rule>;

// Whether both depth settings are honoured or the test is less-or-equal and a pass writes.
inline constexpr Depth_Setting fixed = Depth_Setting::fixed;
inline constexpr Depth_Setting by_setting = Depth_Setting::by_setting;
inline constexpr Row<Depth_Setting> depth_rules[] = {
    {{.variant = no_depth}, fixed},
    {{.variant = with_depth, .masking = masked}, fixed},
    {{.variant = with_depth, .kind = gouraud, .masking = open}, fixed},
    {{.variant = direct_with_depth, .kind = one_colored, .masking = open}, by_setting},
    {{.variant = mapped_z, .kind = one_colored, .road = run, .masking = open}, fixed},
    {{.variant = mapped_z, .kind = colorized, .road = clipped, .masking = open}, fixed},
    // The one routine of `Mapped_Z` that reads the settings.
    {{.variant = mapped_z, .kind = plain, .road = clipped, .masking = open}, by_setting},
};

inline constexpr Row<Merge_Rule> merge_rules[] = {
    {{.variant = with_depth}, Merge_Rule::never},
    {{.variant = no_depth, .kind = gouraud}, Merge_Rule::never},
    {{.variant = mapped, .kind = plain}, Merge_Rule::when_on},
    {{.variant = mapped, .kind = colorized}, Merge_Rule::never},
    {{.variant = {rgb_alpha, rgb}, .kind = one_colored, .road = run}, Merge_Rule::asked_ahead},
    {{.variant = {rgb_alpha, rgb}, .kind = plain, .road = clipped}, Merge_Rule::when_on},
    // Runs of a colorized list merge, its clipped segments do not.
    {{.variant = {rgb_alpha, rgb}, .kind = colorized, .road = clipped}, Merge_Rule::never},
};

inline constexpr Row<Blending> blending_rules[] = {
    {{.variant = {rgb, rgb_z, mapped, mapped_z}}, Blending::store},
    {{.variant = rgb_alpha, .kind = one_colored}, Blending::blend},
    {{.variant = rgb_alpha, .kind = gouraud, .road = clipped}, Blending::blend},
    {{.variant = rgb_alpha, .kind = gouraud, .road = run, .masking = open}, Blending::blend},
    {{.variant = rgb_alpha_z, .road = clipped}, Blending::blend},
    {{.variant = rgb_alpha_z, .road = run, .masking = open}, Blending::blend},
    // Masked runs are shared with the opaque variants, in their form.
    {{.variant = rgb_alpha, .kind = gouraud, .road = run, .masking = masked}, Blending::store},
    {{.variant = rgb_alpha_z, .road = run, .masking = masked}, Blending::store},
};

// Final points of lists. The settings have no part in them.
inline constexpr End_Rule exact_end = {End_Depth::point, End_Depth::point, End_Color::as_drawn};
inline constexpr Row<End_Rule> end_rules[] = {
    {{.variant = {rgb_alpha, rgb, mapped, rgb_z}}, exact_end},
    {{.variant = mapped_z, .kind = plain}, exact_end},
    // The depth accumulator, one step on, in place of the point's depth.
    {{.variant = mapped_z, .kind = colorized},
     {End_Depth::accumulator, End_Depth::accumulator, End_Color::as_drawn}},
    {{.variant = mapped_z, .kind = gouraud},
     {End_Depth::point, End_Depth::accumulator, End_Color::as_drawn}},
    // The last pixel of a blended list is opaque, unless it is shaded.
    {{.variant = rgb_alpha_z, .kind = one_colored},
     {End_Depth::point, End_Depth::point, End_Color::stored}},
    {{.variant = rgb_alpha_z, .kind = gouraud}, exact_end},
};

inline constexpr Row<Near_Rule> near_rules[] = {
    {{.variant = {rgb, mapped, mapped_z}}, Near_Rule::colorized},
    {{.variant = rgb_alpha, .masking = open}, Near_Rule::colorized},
    {{.variant = rgb_alpha, .masking = masked}, Near_Rule::opaque_variant},
    {{.variant = direct_with_depth}, Near_Rule::shaded},
};

inline constexpr Row<Inside_Pairs> inside_pair_rules[] = {
    {{.masking = open}, Inside_Pairs::to_inside},
    {{.kind = {colorized, gouraud}, .masking = masked}, Inside_Pairs::to_inside},
    {{.variant = no_depth, .kind = plain, .masking = masked}, Inside_Pairs::as_clipped},
    {{.variant = with_depth, .kind = plain, .masking = masked}, Inside_Pairs::to_inside},
};

}  // namespace rules

/// The tests at the head of a routine, in order; the first that holds takes the call elsewhere.
enum class Step : std::uint8_t {
  none,
  ready,      // no image or fewer than two points: nothing
  points,     // fewer than two points: nothing
  outline,    // an outlined line: two passes with changed renditions
  standard,   // a pattern or a weight: the framework's general routine
  weight,     // a weight: the general routine in one colour
  opaque,     // one colour without transparency: the opaque variant
  depth,      // depth test off: the variant without depth
  mask,       // a mask in force: the masked routine of the same layer
  merge,      // merge control on: the merging form
  antialias,  // antialiasing asked for
  shell       // always: the colorized routine in the rendition's colour, or its masked twin
};

/// What stands behind the masked form of a routine.
enum class Twin : std::uint8_t {
  none,  // there is no masked form
  own,
  colorized,   // the masked colorized one, in the rendition's colour
  of_blending  // the one of the blending variant
};

struct Entry {
  Layer layer;
  Kind kind;
  Variant variant;
};

struct Entry_Where {
  Any<Layer> layer{};
  Any<Kind> kind{};
  Any<Variant> variant{};

  constexpr bool covers(Entry e) const {
    return layer.has(e.layer) && kind.has(e.kind) && variant.has(e.variant);
  }
};

struct Chain {
  static constexpr std::size_t longest = 6;
  std::array<Step, longest> steps{};

  constexpr Chain(std::initializer_list<Step> list) {
    std::size_t at = 0;
    for (Step step : list) steps[at++] = step;
  }
};

namespace rules {

using enum Layer;
using enum Step;

inline constexpr Any<Variant> direct = {rgb_alpha, rgb, rgb_alpha_z, rgb_z};

inline constexpr Rule_Row<Entry_Where, Chain> chains[] = {
    // Antialiasing comes before the mask in one of these two, after it in the other.
    {{any, plain, rgb}, {ready, outline, standard, mask, antialias}},
    {{any, plain, rgb_alpha}, {ready, outline, standard, antialias, mask}},
    {{any, plain, mapped}, {ready, standard, mask}},
    {{any, plain, mapped_z}, {ready, standard, depth}},
    {{any, plain, direct_with_depth}, {ready, outline, standard, depth, mask}},

    // Where no mask is looked at, clipped segments ignore it.
    {{any, colorized, rgb_alpha}, {ready, opaque, standard, mask}},
    {{any, colorized, rgb}, {ready, standard, mask}},
    {{any, colorized, mapped}, {ready, standard}},
    {{any, colorized, rgb_alpha_z}, {ready, opaque, standard, depth}},
    {{any, colorized, {mapped_z, rgb_z}}, {ready, standard, depth}},

    {{any, gouraud, {rgb_alpha, rgb}}, {ready, standard, mask}},
    {{any, gouraud, mapped}, {ready, standard}},
    {{any, gouraud, mapped_z}, {ready, standard, depth}},
    // Masked, depth takes part even where it is off.
    {{any, gouraud, direct_with_depth}, {ready, standard, mask, depth}},

    {{inside, plain, direct}, {points, outline, shell}},
    {{inside, plain, mapped}, {points, standard, mask}},
    {{inside, plain, mapped_z}, {points, depth, standard, mask}},

    {{inside, colorized, rgb_alpha}, {points, opaque, standard, mask, merge, antialias}},
    {{inside, colorized, rgb}, {points, standard, mask, merge, antialias}},
    {{inside, colorized, mapped}, {points, standard}},  // a mask is ignored
    {{inside, colorized, with_depth}, {points, depth, standard, mask}},

    {{inside, gouraud, no_depth}, {points, standard, mask}},
    {{inside, gouraud, with_depth}, {points, depth, standard, mask}},
};

// Heads of the masked routines.
inline constexpr Rule_Row<Entry_Where, Chain> masked_chains[] = {
    {{any, all_kinds, {}}, {}},
    {{inside, colorized, {rgb_alpha, rgb}}, {standard, merge, antialias}},
    {{inside, plain, no_depth}, {}},
    {{inside, plain, with_depth}, {weight}},  // a pattern is not asked for
    {{inside, colorized, {mapped, mapped_z, rgb_alpha_z, rgb_z}}, {}},
    {{inside, gouraud, {}}, {}},
};

inline constexpr Rule_Row<Entry_Where, Twin> twins[] = {
    {{any, plain, no_depth}, Twin::own},
    {{any, plain, mapped_z}, Twin::none},
    {{any, plain, direct_with_depth}, Twin::colorized},
    {{any, {colorized, gouraud}, direct}, Twin::own},
    {{any, {colorized, gouraud}, {mapped, mapped_z}}, Twin::none},

    {{inside, plain, {rgb_alpha, rgb}}, Twin::colorized},
    {{inside, plain, {mapped, mapped_z, rgb_alpha_z}}, Twin::own},
    {{inside, plain, rgb_z}, Twin::of_blending},
    {{inside, colorized, {rgb_alpha, rgb, mapped_z, rgb_alpha_z}}, Twin::own},
    {{inside, colorized, mapped}, Twin::none},
    {{inside, colorized, rgb_z}, Twin::of_blending},
    {{inside, gouraud, {rgb_alpha, mapped, mapped_z, rgb_alpha_z}}, Twin::own},
    {{inside, gouraud, {rgb, rgb_z}}, Twin::of_blending},
};

}  // namespace rules

}  // namespace zbuffer::lines
