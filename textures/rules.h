// Every rule by which like members of the textured family differ, as tables.
//
// A member is a routine by set, road and form. The family has one set a variant with depth, and
// two for `Mapped_Z`: one for each answer to `alpha_blending()`.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

#include "core/rule_table.h"
#include "triangles/rules.h"

namespace zbuffer::textures {

enum class Set : std::uint8_t { mapped_z, cut_out, rgb_z, rgb_alpha_z };
enum class Road : std::uint8_t { plain, modulated, lit };
enum class Form : std::uint8_t { scan, clipped };
/// The rows of a triangle up to the middle corner, and those from it on.
enum class Half : std::uint8_t { upper, lower };

constexpr bool is_indexed(Set set) { return set == Set::mapped_z || set == Set::cut_out; }

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
  left_or_mean,     // the left edge's for an alpha of 255, the mean for a blended pixel
  left_or_running   // the left edge's for an alpha of 255, the running depth for a blended pixel
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

struct Action_Head {
  Any<Set> set;
  Any<Layer> layer;
  Head steps;
};

struct Layer_Head {
  Any<Set> set;
  Any<Road> road;
  Any<Layer> layer;
  Head steps;
};

/// What the gate does with a primitive that asks for light.
enum class Light_Rule : std::uint8_t { standard, lit_road };
/// Whether a missing list of colours leads to the plain road.
enum class Colors_Rule : std::uint8_t { trusted, tested };

struct Gate_Rule {
  Light_Rule light;
  Colors_Rule colors;
};

struct Gate_Row {
  Any<Set> set;
  Any<Layer> layer;
  Gate_Rule rule;
};

namespace rules {

using enum Layer;
using enum Step;

inline constexpr Any<Set> indexed_sets = {mapped_z, cut_out};
inline constexpr Any<Layer> any_layers = {float_any, int_any};           // 2D, 2DI
inline constexpr Any<Layer> inside_layers = {float_inside, int_inside};  // DC, DCI

inline constexpr Action_Head action_heads[] = {
    {indexed_sets, {}, {}},
    {rgb_z, {}, {edge_bit, alpha_bit}},
    {rgb_alpha_z, inside_layers, {edge_bit}},
    {rgb_alpha_z, any_layers, {}},
};

inline constexpr Layer_Head layer_heads[] = {
    {indexed_sets, {}, int_any, {ready, depth}},
    {indexed_sets, {}, {float_any, float_inside, int_inside}, {}},
    {rgb_z, {}, inside_layers, {alpha_bit}},
    {rgb_z, {}, int_any, {ready}},
    {rgb_z, {}, float_any, {}},
    // The plain layer does not ask for edges: such a strip is drawn filled.
    {rgb_alpha_z, plain, int_any, {ready}},
    {rgb_alpha_z, {modulated, lit}, int_any, {edge_bit, ready}},
    {rgb_alpha_z, {}, {float_any, float_inside, int_inside}, {}},
};

inline constexpr Gate_Row gate_rules[] = {
    {mapped_z, inside_layers, {Light_Rule::lit_road, Colors_Rule::trusted}},
    {mapped_z, any_layers, {Light_Rule::standard, Colors_Rule::trusted}},
    {{cut_out, rgb_z}, {}, {Light_Rule::standard, Colors_Rule::trusted}},
    {rgb_alpha_z, inside_layers, {Light_Rule::standard, Colors_Rule::tested}},
    {rgb_alpha_z, any_layers, {Light_Rule::standard, Colors_Rule::trusted}},
};

}  // namespace rules

namespace rules_detail {

/// The one of `rows` for which `covers` holds.
template <class Row, std::size_t count, class Covers>
constexpr const Row& the_row(const Row (&rows)[count], Covers covers) {
  std::size_t found = count;
  for (std::size_t i = 0; i < count; ++i) {
    if (!covers(rows[i])) continue;
    if (found != count) throw "two rows for one member";
    found = i;
  }
  if (found == count) throw "no row for a member";
  return rows[found];
}

}  // namespace rules_detail

constexpr Head action_head(Set set, Layer layer) {
  return rules_detail::the_row(rules::action_heads, [=](const Action_Head& row) {
           return row.set.has(set) && row.layer.has(layer);
         }).steps;
}

constexpr Head layer_head(Set set, Road road, Layer layer) {
  return rules_detail::the_row(rules::layer_heads, [=](const Layer_Head& row) {
           return row.set.has(set) && row.road.has(road) && row.layer.has(layer);
         }).steps;
}

constexpr Gate_Rule gate_rule(Set set, Layer layer) {
  return rules_detail::the_row(rules::gate_rules, [=](const Gate_Row& row) {
           return row.set.has(set) && row.layer.has(layer);
         }).rule;
}

}  // namespace zbuffer::textures
