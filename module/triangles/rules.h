// Every rule by which like members of the polytriangle family differ, as tables.
//
// A member is a scan by variant, kind, path, masking and filling. Flat strips of direct colour are
// colorized ones in the rendition's colour, so that a row for colorized ones serves both. Two rules
// stand elsewhere: the near-flat tests (raster/near_flat.h) and the strip that is dithered in the
// colour of its first triangle (`scan_dithered` in scan.h).
#pragma once

#include "module/core/entry_steps.h"
#include "module/core/points.h"
#include "module/pixels/blend_255.h"
#include "module/pixels/depth_test.h"
#include "module/raster/span_start.h"

namespace zbuffer::triangles {

/// Whether faces have a pattern.
enum class Filling : std::uint8_t { solid, patterned };

struct Member {
  Variant variant;
  Kind kind;
  Path path;
  Masking masking;
  Filling filling;

  constexpr auto properties() const { return std::tuple(variant, kind, path, masking, filling); }
};

}  // namespace zbuffer::triangles

namespace zbuffer {
template <>
inline constexpr std::size_t value_count<triangles::Filling> = 2;
}

namespace zbuffer::triangles {

using Where = Members<Variant, Kind, Path, Masking, Filling>;

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

/// Whether rows outside the window are passed over.
enum class Row_Rule : std::uint8_t { trusted, guarded };

/// What a scan does with the first colour before it draws.
enum class First_Color : std::uint8_t {
  as_given,
  /// A single colour of alpha 0 draws nothing at all, also where it would merge. With merge control
  /// on the first colour is made opaque; later ones keep their alpha.
  tested
};

/// How a strip that lies inside as a whole goes on to the inner layer: by a call, or through the
/// action record, so that whoever has bound a routine of his own there sees it.
enum class Whole_Strip : std::uint8_t { by_call, by_action };

namespace rules {

using enum Variant;
using enum Kind;
using enum Layer;
using enum Path;
using enum Masking;
using enum Filling;

// Depth settings honoured: by colorized routines of direct colour alone, and by `RGB_Alpha_Z` only
// the write setting. Patterned and clipped, a pass writes depth whatever the write setting says.
inline constexpr auto depth = rule_table<Where>(
    settings_ignored, {{{rgb_z, colorized, inside, open}, settings_honoured},
                       {{rgb_z, colorized, clipped, open, solid}, settings_honoured},
                       {{rgb_z, colorized, clipped, open, patterned}, test_honoured},
                       {{rgb_alpha_z, colorized, inside, open}, write_honoured},
                       {{rgb_alpha_z, colorized, clipped, open, solid}, write_honoured}});

inline constexpr auto merge = rule_table<Where>(
    Merge_Rule::never, {{{mapped, flat}, Merge_Rule::all},
                        {{mapped, colorized, clipped}, Merge_Rule::ordinary},
                        {{rgb_alpha, colorized, inside, open}, Merge_Rule::opaque_triangles},
                        {{rgb_alpha, colorized, inside, masked}, Merge_Rule::all},
                        {{rgb_alpha, colorized, clipped}, Merge_Rule::all}});

// The inside scan of `RGB_Alpha` stores the contrast colour unblended, that of `RGB_Alpha_Z` and
// all clipped spans blend it. Under a mask a blended pixel of `RGB_Alpha` keeps its alpha byte.
inline constexpr Alpha_Rule store = Alpha_Rule::store;
inline constexpr Alpha_Rule blend = Alpha_Rule::blend;
inline constexpr Alpha_Rule by_alpha = Alpha_Rule::by_alpha;
inline constexpr Alpha_Rule keeping = Alpha_Rule::by_alpha_keeping;
inline constexpr auto alpha = rule_table<Where>(
    Alpha_Rules{store, store}, {{{rgb_alpha, colorized, inside, open}, {blend, store}},
                                {{rgb_alpha, gouraud, inside, open}, {by_alpha, store}},
                                {{rgb_alpha, clipped, open}, {by_alpha, by_alpha}},
                                {{rgb_alpha, masked}, {keeping, keeping}},
                                {{rgb_alpha_z, colorized, inside}, {blend, blend}},
                                {{rgb_alpha_z, gouraud, inside}, {by_alpha, by_alpha}},
                                {{rgb_alpha_z, clipped}, {by_alpha, by_alpha}}});

// Masked spans of direct colour have no short form.
inline constexpr auto short_spans = rule_table<Where>(
    Short_Spans::none, {{{inside, open, solid}, Short_Spans::one_and_two},
                        {{mapped | mapped_z, inside, masked, solid}, Short_Spans::one_and_two}});

inline constexpr auto rows = rule_table<Where>(
    Row_Rule::trusted, {{{rgb_alpha, colorized, inside, open, solid}, Row_Rule::guarded}});

inline constexpr auto first_color = rule_table<Where>(
    First_Color::as_given, {{{rgb_alpha, colorized, inside}, First_Color::tested}});

// Flat scans are there in mapped colour alone, and none of `RGB_Alpha_Z` are masked.
inline constexpr auto exists =
    rule_table<Where>(Exists::yes, {{{rgb_alpha | rgb | rgb_alpha_z | rgb_z, flat}, Exists::no},
                                    {{rgb_alpha_z, colorized | gouraud, masked}, Exists::no}});

// Rules of routines, by layer, kind, variant and masking.

inline constexpr auto whole_strips =
    rule_table<Routines>(Whole_Strip::by_call, {{{int_any, rgb_z, open}, Whole_Strip::by_action}});

// Variants without depth leave z of points that are inside alone: nothing reads it there.
inline constexpr auto point_z = rule_table<Routines>(
    Point_Z::rounded, {{{float_inside, rgb_alpha | rgb | mapped}, Point_Z::left_out}});

// Flat actions of direct colour have their own few steps and then are colorized ones. With points
// inside the count is not looked at. Whether an image is missing is tested where points are whole,
// after depth has been. Masked routines come after these tests; only `RGB` may still blend there.
inline constexpr Any<Kind> shaded = colorized | gouraud;
using enum Entry_Step;
inline constexpr auto entry_steps = rule_table<Routines>(
    Entry_Steps{},
    {
        {{float_any, mapped, open}, {standard_pattern, nothing_to_draw}},
        {{float_any, mapped_z, open}, {standard_pattern, nothing_to_draw, depth_off}},
        {{float_any, colorized, rgb, open}, {blending, standard_pattern, nothing_to_draw}},
        {{float_any, gouraud, rgb, open}, {standard_pattern, nothing_to_draw}},  // never blends
        {{float_any, shaded, rgb_alpha, open}, {standard_pattern, nothing_to_draw}},
        {{float_any, shaded, rgb_z | rgb_alpha_z, open},
         {standard_pattern, nothing_to_draw, depth_off}},

        {{float_inside, mapped, open}, {standard_pattern}},
        {{float_inside, flat | gouraud, mapped_z, open}, {standard_pattern}},  // DCI tests depth
        {{float_inside, colorized, mapped_z, open}, {standard_pattern, depth_off}},
        {{float_inside, flat, rgb | rgb_z, open}, {blending}},
        {{float_inside, shaded, rgb, open}, {blending, standard_pattern}},
        {{float_inside, shaded, rgb_z, open}, {blending, standard_pattern, depth_off}},
        {{float_inside, shaded, rgb_alpha, open}, {standard_pattern}},
        {{float_inside, shaded, rgb_alpha_z, open}, {standard_pattern, depth_off}},

        {{int_any, mapped, open}, {standard_pattern, nothing_to_draw, missing_image, mask}},
        {{int_any, mapped_z, open},
         {standard_pattern, nothing_to_draw, depth_off, missing_image, mask}},
        {{int_any, flat, rgb, open}, {merging_opaque}},
        {{int_any, colorized, rgb, open},
         {blending, standard_pattern, nothing_to_draw, missing_image, mask}},
        {{int_any, gouraud, rgb, open}, {standard_pattern, nothing_to_draw, missing_image, mask}},
        {{int_any, shaded, rgb_z, open},
         {edges, blending, standard_pattern, nothing_to_draw, depth_off, missing_image, mask}},
        {{int_any, shaded, rgb_alpha, open},
         {standard_pattern, nothing_to_draw, missing_image, mask}},
        {{int_any, shaded, rgb_alpha_z, open},  // never masked
         {edges, standard_pattern, nothing_to_draw, depth_off, missing_image}},

        {{int_inside, mapped, open}, {standard_pattern, missing_image, mask}},
        {{int_inside, mapped_z, open}, {standard_pattern, depth_off, missing_image, mask}},
        {{int_inside, flat, rgb, open}, {blending, merging_opaque}},
        {{int_inside, flat, rgb_z, open}, {blending}},
        {{int_inside, colorized, rgb, open},
         {blending, standard_pattern, missing_image, merging, mask}},
        {{int_inside, gouraud, rgb, open}, {blending, standard_pattern, missing_image, mask}},
        // With both bits set a colorized call blends and a Gouraud call draws edges.
        {{int_inside, colorized, rgb_z, open},
         {blending_filled, edges, standard_pattern, depth_off, missing_image, mask}},
        {{int_inside, gouraud, rgb_z, open},
         {edges, blending, standard_pattern, depth_off, missing_image, mask}},
        {{int_inside, shaded, rgb_alpha, open}, {standard_pattern, missing_image, mask}},
        {{int_inside, shaded, rgb_alpha_z, open},
         {edges, standard_pattern, depth_off, missing_image}},

        {{int_inside, colorized, rgb, masked}, {blending, merging}},
        {{int_inside, gouraud, rgb, masked}, {blending}},
    });

}  // namespace rules

inline constexpr auto entry_steps = rules::entry_steps.all();

}  // namespace zbuffer::triangles
