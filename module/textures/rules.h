// Every rule by which like members of the textured family differ, as tables.
//
// A member is a routine by set, road and form. The family has one set a variant with depth, and
// two for `Mapped_Z`: one for each answer to `alpha_blending()`.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

#include "module/core/rule_table.h"
#include "module/triangles/rules.h"

namespace zbuffer::textures {

enum class Set : std::uint8_t { mapped_z, cut_out, rgb_z, rgb_alpha_z };
enum class Road : std::uint8_t { plain, modulated, lit };
enum class Form : std::uint8_t { scan, clipped };
/// The rows of a triangle up to the middle corner, and those from it on.
enum class Half : std::uint8_t { upper, lower };

constexpr bool is_indexed(Set set) {
  return set == Set::mapped_z || set == Set::cut_out;
}

struct Member {
  Set set;
  Road road;
  Form form;
};

struct Where {
  Any<Set> set{};
  Any<Road> road{};
  Any<Form> form{};

  constexpr bool covers(Member m) const {
    return set.has(m.set) && road.has(m.road) && form.has(m.form);
  }
};

/// What becomes of a pixel whose texel, or whose product with the colours, has an alpha of 0.
enum class Transparent : std::uint8_t {
  ordinary,    // alpha is not looked at
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

/// Whether spans of one and two pixels work straight from the edges.
enum class Short_Spans : std::uint8_t { none, one_and_two };

/// Where the second pixel of a two-pixel span takes its line of the image from.
enum class Line_From : std::uint8_t { left, mean };

/// The depth that a pixel stores; what it is tested with is another matter.
enum class Depth_From : std::uint8_t {
  left,
  mean,
  left_or_mean,    // the left edge's for an alpha of 255, the mean for a blended pixel
  left_or_running  // the left edge's for an alpha of 255, the running depth for a blended pixel
};

struct Two_Pixel_Rule {
  Line_From second_line;
  Depth_From second_depth;
  Depth_From first_depth;
};

struct Half_Of_Member {
  Set set;
  Road road;
  Half half;
};

struct Where_Half {
  Any<Set> set{};
  Any<Road> road{};
  Any<Half> half{};

  constexpr bool covers(Half_Of_Member m) const {
    return set.has(m.set) && road.has(m.road) && half.has(m.half);
  }
};

namespace rules {

using enum Set;
using enum Road;
using enum Form;
using enum Half;

template <class Rule>
using Row = Rule_Row<Where, Rule>;

inline constexpr Row<Transparent> transparent_rules[] = {
    {{.set = {mapped_z, rgb_z}}, Transparent::ordinary},
    {{.set = cut_out}, Transparent::dropped},
    {{.set = rgb_alpha_z, .form = scan}, Transparent::dropped},
    // At the hard clip depth goes in before alpha is looked at.
    {{.set = rgb_alpha_z, .form = clipped}, Transparent::keeps_color},
};

inline constexpr Row<Channel_Scale> channel_scales[] = {
    {{.road = plain}, Channel_Scale::none},
    {{.road = lit}, Channel_Scale::none},
    {{.set = {mapped_z, cut_out}, .road = modulated}, Channel_Scale::cube},
    {{.set = rgb_z, .road = modulated}, Channel_Scale::byte_256},
    {{.set = rgb_alpha_z, .road = modulated, .form = scan}, Channel_Scale::byte_257},
    // An opaque texel and a white vertex make 254 here, which is blended.
    {{.set = rgb_alpha_z, .road = modulated, .form = clipped}, Channel_Scale::byte_256},
};

inline constexpr Row<Short_Spans> short_span_rules[] = {
    {{.set = {mapped_z, cut_out}}, Short_Spans::none},
    {{.set = {rgb_z, rgb_alpha_z}, .form = scan}, Short_Spans::one_and_two},
    {{.set = {rgb_z, rgb_alpha_z}, .form = clipped}, Short_Spans::none},
};

// The column of the second pixel is always that of the means, its tests always take the means.
inline constexpr Line_From left_line = Line_From::left;
inline constexpr Line_From mean_line = Line_From::mean;
inline constexpr Depth_From left_depth = Depth_From::left;
inline constexpr Depth_From mean_depth = Depth_From::mean;
inline constexpr Rule_Row<Where_Half, Two_Pixel_Rule> two_pixel_rules[] = {
    // Plain members take the line from the left edge in the upper half, `RGB_Z` the depth too.
    {{rgb_z, plain, upper}, {left_line, left_depth, left_depth}},
    {{rgb_z, plain, lower}, {mean_line, mean_depth, left_depth}},
    {{rgb_z, modulated, {}}, {mean_line, mean_depth, left_depth}},
    {{rgb_alpha_z, plain, upper}, {left_line, mean_depth, left_depth}},
    {{rgb_alpha_z, plain, lower}, {mean_line, mean_depth, left_depth}},
    // Blended pixels store what the latest wider span left, opaque ones the left edge's depth.
    {{rgb_alpha_z, modulated, {}},
     {mean_line, Depth_From::left_or_mean, Depth_From::left_or_running}},
};

}  // namespace rules

// Heads: the tests in front of an action or of a layer below it, in order; the first that holds
// takes the call elsewhere.
enum class Step : std::uint8_t {
  none,
  edge_bit,   // edges asked for: the strip is drawn as lines
  alpha_bit,  // blending asked for: the same action or layer of `RGB_Alpha_Z`
  ready,      // no image, or fewer than two points: nothing
  depth       // depth is not enabled: the general routine, without floats and vectors
};

using Head = std::array<Step, 2>;

/// An action, by set and layer, or a layer of a road below it.
struct Place {
  Set set;
  Layer layer;
  Road road{};
};

struct Where_Place {
  Any<Set> set{};
  Any<Layer> layer{};
  Any<Road> road{};

  constexpr bool covers(Place p) const {
    return set.has(p.set) && layer.has(p.layer) && road.has(p.road);
  }
};

/// What the gate does with a primitive that asks for light.
enum class Light_Rule : std::uint8_t { standard, lit_road };
/// Whether a missing list of colours leads to the plain road.
enum class Colors_Rule : std::uint8_t { trusted, tested };

struct Gate_Rule {
  Light_Rule light;
  Colors_Rule colors;
};

namespace rules {

using enum Layer;
using enum Step;

inline constexpr Any<Set> indexed_sets = {mapped_z, cut_out};
inline constexpr Any<Layer> any_layers = {float_any, int_any};           // 2D, 2DI
inline constexpr Any<Layer> inside_layers = {float_inside, int_inside};  // DC, DCI

inline constexpr Rule_Row<Where_Place, Head> action_heads[] = {
    {{.set = indexed_sets}, {}},
    {{.set = rgb_z}, {edge_bit, alpha_bit}},
    {{.set = rgb_alpha_z, .layer = inside_layers}, {edge_bit}},
    {{.set = rgb_alpha_z, .layer = any_layers}, {}},
};

inline constexpr Rule_Row<Where_Place, Head> layer_heads[] = {
    {{.set = indexed_sets, .layer = int_any}, {ready, depth}},
    {{.set = indexed_sets, .layer = {float_any, float_inside, int_inside}}, {}},
    {{.set = rgb_z, .layer = inside_layers}, {alpha_bit}},
    {{.set = rgb_z, .layer = int_any}, {ready}},
    {{.set = rgb_z, .layer = float_any}, {}},
    // The plain layer does not ask for edges: such a strip is drawn filled.
    {{.set = rgb_alpha_z, .layer = int_any, .road = plain}, {ready}},
    {{.set = rgb_alpha_z, .layer = int_any, .road = modulated}, {edge_bit, ready}},
    {{.set = rgb_alpha_z, .layer = {float_any, float_inside, int_inside}}, {}},
};

inline constexpr Rule_Row<Where_Place, Gate_Rule> gate_rules[] = {
    {{.set = mapped_z, .layer = inside_layers}, {Light_Rule::lit_road, Colors_Rule::trusted}},
    {{.set = mapped_z, .layer = any_layers}, {Light_Rule::standard, Colors_Rule::trusted}},
    {{.set = {cut_out, rgb_z}}, {Light_Rule::standard, Colors_Rule::trusted}},
    {{.set = rgb_alpha_z, .layer = inside_layers}, {Light_Rule::standard, Colors_Rule::tested}},
    {{.set = rgb_alpha_z, .layer = any_layers}, {Light_Rule::standard, Colors_Rule::trusted}},
};

}  // namespace rules

}  // namespace zbuffer::textures
