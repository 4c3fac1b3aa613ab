// Every rule by which like members of the textured family differ, as tables.
//
// A member is a scan by set, texturing and path. The family has one set a variant with depth, and
// two for `Mapped_Z`: one for each value of `alpha_blending()`.
#pragma once

#include "module/core/entry_steps.h"
#include "module/raster/span_start.h"

namespace zbuffer::textures {

/// Textured routines exist once for each of these: the variants with depth, and `Mapped_Z` with
/// alpha blending, which leaves out transparent texels.
enum class Texture_Set : std::uint8_t { mapped_z, cut_out, rgb_z, rgb_alpha_z };
/// What the texture does with the colours, decided in the action.
enum class Texturing : std::uint8_t { undecided, plain, modulated, lit };
/// The rows of a triangle below the middle corner, and those from it on.
enum class Half : std::uint8_t { low, high };

}  // namespace zbuffer::textures

namespace zbuffer {
template <>
inline constexpr std::size_t value_count<textures::Texture_Set> = 4;
template <>
inline constexpr std::size_t value_count<textures::Texturing> = 4;
template <>
inline constexpr std::size_t value_count<textures::Half> = 2;
}  // namespace zbuffer

namespace zbuffer::textures {

constexpr bool is_indexed(Texture_Set set) {
  return set == Texture_Set::mapped_z || set == Texture_Set::cut_out;
}

/// The variant that a set belongs to.
constexpr Variant variant_of(Texture_Set set) {
  if (is_indexed(set)) return Variant::mapped_z;
  return set == Texture_Set::rgb_z ? Variant::rgb_z : Variant::rgb_alpha_z;
}

struct Member {
  Texture_Set set;
  Texturing texturing;
  Path path;

  constexpr auto properties() const { return std::tuple(set, texturing, path); }
};
using Where = Members<Texture_Set, Texturing, Path>;

/// The two-pixel spans of one half of a member's triangles.
struct Half_Member {
  Texture_Set set;
  Texturing texturing;
  Half half;

  constexpr auto properties() const { return std::tuple(set, texturing, half); }
};

/// A routine of the family: an action, as long as the texturing is undecided, or a layer below it.
class Textured_Routine : public Place<Texture_Set, Layer, Texturing> {
 public:
  constexpr Textured_Routine(Texture_Set set, Layer layer,
                             Texturing texturing = Texturing::undecided)
      : Place(set, layer, texturing) {}

  constexpr Texture_Set set() const { return property<Texture_Set>(); }
  constexpr Layer layer() const { return property<Layer>(); }
  constexpr Texturing texturing() const { return property<Texturing>(); }

  constexpr Textured_Routine at(Layer other) const { return with(*this, other); }
  constexpr Textured_Routine in(Texture_Set other) const { return with(*this, other); }
  constexpr Textured_Routine textured(Texturing other) const { return with(*this, other); }
};
using Textured_Routines = Textured_Routine::Places;

/// How a pixel is drawn whose texel, or whose product with the colours, has an alpha of 0.
enum class Transparent : std::uint8_t {
  ordinary,    // alpha is not used
  dropped,     // neither colour nor depth is written
  keeps_color  // the colour stays and the depth is written all the same
};

/// What a channel of a vertex colour starts from on an edge.
enum class Channel_Scale : std::uint8_t {
  none,
  cube,      // (byte * scale of the cube) * 256 + 128
  byte_256,  // byte * 256 + 128: full is a little below 1
  byte_257   // byte * 257 + 1: full is 1
};

/// Where the second pixel of a two-pixel span takes its line of the image from.
enum class Line_From : std::uint8_t { left, mean };

/// The depth that a pixel stores. It may be tested with another one.
enum class Depth_From : std::uint8_t {
  left,
  mean,
  left_or_mean,   // the left edge's for an alpha of 255, the mean for a blended pixel
  left_or_latest  // the left edge's for an alpha of 255, for a blended pixel the latest depth that
                  // a span of two or more pixels ended with
};

struct Two_Pixel_Rule {
  Line_From second_line;
  Depth_From second_depth;
  Depth_From first_depth;
};

/// What an action does with a primitive that is to be lit.
enum class Light_Rule : std::uint8_t { standard, lit };
/// Whether a missing list of colours makes a modulated primitive a plain one.
enum class Colors_Rule : std::uint8_t { trusted, tested };

namespace rules {

using enum Texture_Set;
using enum Texturing;
using enum Path;
using enum Half;
using enum Layer;

inline constexpr Any<Texture_Set> indexed = mapped_z | cut_out;
inline constexpr Any<Texture_Set> direct = rgb_z | rgb_alpha_z;
inline constexpr Any<Texturing> decided = plain | modulated | lit;
inline constexpr Any<Layer> inside_layers = float_inside | int_inside;
inline constexpr Any<Layer> any_layers = float_any | int_any;

// At the hard clip `RGB_Alpha_Z` writes depth before it looks at alpha.
inline constexpr auto transparent =
    rule_table<Where>(Transparent::ordinary, {{{cut_out}, Transparent::dropped},
                                              {{rgb_alpha_z, inside}, Transparent::dropped},
                                              {{rgb_alpha_z, clipped}, Transparent::keeps_color}});

// An opaque texel and a white vertex make 254 at the hard clip of `RGB_Alpha_Z`, which is blended.
inline constexpr auto channel_scale = rule_table<Where>(
    Channel_Scale::none, {{{indexed, modulated}, Channel_Scale::cube},
                          {{rgb_z, modulated}, Channel_Scale::byte_256},
                          {{rgb_alpha_z, modulated, inside}, Channel_Scale::byte_257},
                          {{rgb_alpha_z, modulated, clipped}, Channel_Scale::byte_256}});

inline constexpr auto short_spans =
    rule_table<Where>(Short_Spans::none, {{{direct, inside}, Short_Spans::one_and_two}});

// The column of the second pixel is always that of the means, its tests always take the means.
// Plain members take the line from the left edge in the low half, `RGB_Z` the depth too.
inline constexpr auto two_pixels = rule_table<Members<Texture_Set, Texturing, Half>>(
    Two_Pixel_Rule{Line_From::mean, Depth_From::mean, Depth_From::left},
    {{{rgb_z, plain, low}, {Line_From::left, Depth_From::left, Depth_From::left}},
     {{rgb_alpha_z, plain, low}, {Line_From::left, Depth_From::mean, Depth_From::left}},
     {{rgb_alpha_z, modulated},
      {Line_From::mean, Depth_From::left_or_mean, Depth_From::left_or_latest}}});

// Rules of routines.

inline constexpr auto light = rule_table<Textured_Routines>(
    Light_Rule::standard, {{{mapped_z, inside_layers}, Light_Rule::lit}});

inline constexpr auto colors = rule_table<Textured_Routines>(
    Colors_Rule::trusted, {{{rgb_alpha_z, inside_layers}, Colors_Rule::tested}});

using enum Entry_Step;
inline constexpr auto entry_steps = rule_table<Textured_Routines>(
    Entry_Steps{missing_image},
    {
        // Actions.
        {{indexed, undecided}, {kept_standard}},
        {{rgb_z, undecided}, {kept_standard, edges, blending}},
        {{rgb_alpha_z, inside_layers, undecided}, {kept_standard, edges}},
        {{rgb_alpha_z, any_layers, undecided}, {kept_standard}},

        // Layers below them.
        {{indexed, int_any, decided}, {nothing_to_draw, depth_off_standard, missing_image}},
        {{rgb_z, inside_layers, decided}, {blending, missing_image}},
        {{rgb_z, int_any, decided}, {nothing_to_draw, missing_image}},
        // Plain, a strip is filled even with the edge bit.
        {{rgb_alpha_z, int_any, plain}, {nothing_to_draw, missing_image}},
        {{rgb_alpha_z, int_any, modulated}, {edges, nothing_to_draw, missing_image}},
    });

}  // namespace rules

inline constexpr auto entry_steps = rules::entry_steps.all();

}  // namespace zbuffer::textures
