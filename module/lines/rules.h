// Every rule by which like members of the polyline family differ, as tables.
//
// A member is a scan by variant, kind, path and masking. Flat lists of direct colour are colorized
// ones in one colour once they are inside; only their clipped segments are members of their own.
#pragma once

#include "module/core/entry_steps.h"
#include "module/pixels/depth_test.h"

namespace zbuffer::lines {

struct Member {
  Variant variant;
  Kind kind;
  Path path;
  Masking masking;

  constexpr auto properties() const { return std::tuple(variant, kind, path, masking); }
};
using Where = Members<Variant, Kind, Path, Masking>;

/// When pixels go through merge control.
enum class Merge_Rule : std::uint8_t {
  never,
  by_entry_step,  // the entry step takes the call to the merging form
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
  colorized,      // by the variant's colorized routine
  opaque_variant  // by the colorized routine of the opaque variant
};

/// Whether a clipped segment that ends up inside at both ends goes to the inside routine, which
/// draws its far end too.
enum class Inside_Pairs : std::uint8_t { to_inside, as_clipped };

namespace rules {

using enum Variant;
using enum Kind;
using enum Layer;
using enum Path;
using enum Masking;

inline constexpr Any<Variant> direct = rgb_alpha | rgb | rgb_alpha_z | rgb_z;
inline constexpr Any<Variant> no_depth = rgb_alpha | rgb | mapped;
inline constexpr Any<Variant> with_depth = mapped_z | rgb_alpha_z | rgb_z;
inline constexpr Any<Kind> one_colored = flat | colorized;

// Whether both depth settings are honoured. One routine of `Mapped_Z` reads them.
inline constexpr auto depth = rule_table<Where>(
    settings_ignored, {{{rgb_alpha_z | rgb_z, one_colored, open}, settings_honoured},
                       {{mapped_z, flat, clipped, open}, settings_honoured}});

// Runs of a colorized list merge, its clipped segments do not.
inline constexpr auto merge = rule_table<Where>(
    Merge_Rule::never, {{{mapped, flat}, Merge_Rule::when_on},
                        {{rgb_alpha | rgb, one_colored, inside}, Merge_Rule::by_entry_step},
                        {{rgb_alpha | rgb, flat, clipped}, Merge_Rule::when_on}});

// Masked lists inside are shared with the opaque variants, in their form, but for those of
// `RGB_Alpha` in one colour.
inline constexpr auto alpha =
    rule_table<Where>(Blending::store, {{{rgb_alpha, one_colored}, Blending::blend},
                                        {{rgb_alpha, gouraud, clipped}, Blending::blend},
                                        {{rgb_alpha, gouraud, inside, open}, Blending::blend},
                                        {{rgb_alpha_z, clipped}, Blending::blend},
                                        {{rgb_alpha_z, inside, open}, Blending::blend}});

// Final points of lists. The depth settings are not used. The accumulator is one step on; the last
// pixel of a blended list is opaque, unless it is shaded.
inline constexpr auto ends = rule_table<Where>(
    End_Rule{End_Depth::point, End_Depth::point, End_Color::as_drawn},
    {{{mapped_z, colorized}, {End_Depth::accumulator, End_Depth::accumulator, End_Color::as_drawn}},
     {{mapped_z, gouraud}, {End_Depth::point, End_Depth::accumulator, End_Color::as_drawn}},
     {{rgb_alpha_z, one_colored}, {End_Depth::point, End_Depth::point, End_Color::stored}}});

inline constexpr auto near = rule_table<Where>(
    Near_Rule::colorized,
    {{{rgb_alpha, masked}, Near_Rule::opaque_variant}, {{rgb_alpha_z | rgb_z}, Near_Rule::shaded}});

inline constexpr auto inside_pairs = rule_table<Where>(
    Inside_Pairs::to_inside, {{{no_depth, flat, masked}, Inside_Pairs::as_clipped}});

inline constexpr auto exists = rule_table<Where>(
    Exists::yes, {{{direct, flat, inside}, Exists::no},
                  {{mapped | rgb_z, colorized, inside, masked}, Exists::no},
                  {{rgb | rgb_z, gouraud, inside, masked}, Exists::no},
                  {{with_depth, flat, clipped, masked}, Exists::no},
                  {{mapped | mapped_z, colorized | gouraud, clipped, masked}, Exists::no}});

using enum Entry_Step;
inline constexpr auto entry_steps = rule_table<Routines>(
    Entry_Steps{missing_image},
    {
        // Antialiasing comes before the mask in one of these two, after it in the other.
        {{int_any, flat, rgb, open},
         {nothing_to_draw, outline, standard_line, missing_image, mask, antialias}},
        {{int_any, flat, rgb_alpha, open},
         {nothing_to_draw, outline, standard_line, missing_image, antialias, mask}},
        {{int_any, flat, mapped, open}, {nothing_to_draw, standard_line, missing_image, mask}},
        {{int_any, flat, mapped_z, open},
         {nothing_to_draw, standard_line, depth_off, missing_image}},
        {{int_any, flat, rgb_alpha_z | rgb_z, open},
         {nothing_to_draw, outline, standard_line, depth_off, missing_image, mask}},

        // Where there is no mask step, clipped segments ignore the mask.
        {{int_any, colorized, rgb_alpha, open},
         {nothing_to_draw, opaque_color, standard_line, missing_image, mask}},
        {{int_any, colorized, rgb, open}, {nothing_to_draw, standard_line, missing_image, mask}},
        {{int_any, colorized, mapped, open}, {nothing_to_draw, standard_line, missing_image}},
        {{int_any, colorized, rgb_alpha_z, open},
         {nothing_to_draw, opaque_color, standard_line, depth_off, missing_image}},
        {{int_any, colorized, mapped_z | rgb_z, open},
         {nothing_to_draw, standard_line, depth_off, missing_image}},

        {{int_any, gouraud, rgb_alpha | rgb, open},
         {nothing_to_draw, standard_line, missing_image, mask}},
        {{int_any, gouraud, mapped, open}, {nothing_to_draw, standard_line, missing_image}},
        {{int_any, gouraud, mapped_z, open},
         {nothing_to_draw, standard_line, depth_off, missing_image}},
        // Masked, depth takes part even where it is off.
        {{int_any, gouraud, rgb_alpha_z | rgb_z, open},
         {nothing_to_draw, standard_line, mask, depth_off, missing_image}},

        {{int_inside, flat, direct, open}, {too_few_points, outline, mask}},
        {{int_inside, flat, mapped, open}, {too_few_points, standard_line, missing_image, mask}},
        {{int_inside, flat, mapped_z, open},
         {too_few_points, depth_off, standard_line, missing_image, mask}},

        {{int_inside, colorized, rgb_alpha, open},
         {too_few_points, opaque_color, standard_line, missing_image, mask, merging, antialias}},
        {{int_inside, colorized, rgb, open},
         {too_few_points, standard_line, missing_image, mask, merging, antialias}},
        {{int_inside, colorized, mapped, open},
         {too_few_points, standard_line, missing_image}},  // never masked
        {{int_inside, colorized, with_depth, open},
         {too_few_points, depth_off, standard_line, missing_image, mask}},

        {{int_inside, gouraud, no_depth, open},
         {too_few_points, standard_line, missing_image, mask}},
        {{int_inside, gouraud, with_depth, open},
         {too_few_points, depth_off, standard_line, missing_image, mask}},

        // Masked routines, many of which are another one. A wide line's pattern is not tested.
        {{int_any, flat, rgb_alpha_z | rgb_z, masked}, {as_colorized}},
        {{int_inside, flat, mapped_z, masked}, {wide_line, missing_image}},
        {{int_inside, flat, rgb_alpha_z, masked}, {wide_line, missing_image}},
        {{int_inside, colorized, rgb_alpha | rgb, masked},
         {standard_line, missing_image, merging, antialias}},
        {{int_inside, one_colored, rgb_z, masked}, {as_blending}},
        {{int_inside, gouraud, rgb | rgb_z, masked}, {as_blending}},
    });

}  // namespace rules

inline constexpr auto entry_steps = rules::entry_steps.all();

}  // namespace zbuffer::lines
