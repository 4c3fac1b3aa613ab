// Entry steps: the tests that a routine begins with, in order. The first that holds takes the call
// elsewhere; which tests there are and in which order differs from routine to routine, and is a row
// of a table in each family.
//
// Most tests look at the rendition and the renderer alone. Their outcomes are worked out once a
// call, as a set of bits, and handed down from layer to layer.
#pragma once

#include <bit>
#include <initializer_list>

#include "module/core/routine.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer {

enum class Entry_Step : std::uint8_t {
  none,

  // What is not drawn at all.
  nothing_to_draw,  ///< no colour image, or fewer than two points
  too_few_points,   ///< fewer than two points
  no_points,        ///< no point
  missing_image,    ///< an image that the routine draws into

  // What the framework's general routine draws.
  standard_pattern,    ///< faces: a pattern that is not handled here
  standard_line,       ///< lines: a pattern or a weight
  wide_line,           ///< lines: a weight, in one colour
  standard_marker,     ///< markers: a symbol that is not a dot
  depth_off_standard,  ///< textures: no depth, without floats and vectors
  kept_standard,       ///< textures: an action kept from a configuration with depth

  // What another variant draws, same layer and kind.
  blending,         ///< the blending bit: the blending variant
  blending_filled,  ///< the same, past that variant's edge step
  depth_off,        ///< depth not enabled: the variant without depth
  opaque_color,     ///< one opaque colour: the variant without blending
  merging,          ///< merge control on: the blending variant or the merging form
  merging_opaque,   ///< the same, with the colour made opaque

  // What is drawn in another way.
  edges,         ///< strips: the edge bit, drawn as lines
  mask,          ///< a mask in force: the masked routine
  outline,       ///< lines: an outlined line, two passes with changed renditions
  antialias,     ///< lines: the antialiasing bit
  opaque_image,  ///< images: alpha is to be ignored
  as_colorized,  ///< always: the colorized routine in the rendition's colour
  as_blending    ///< always: the routine of the blending variant
};

/// A set of entry steps.
struct Entry_Step_Set {
  std::uint32_t bits = 0;

  constexpr void add(Entry_Step step) { bits |= bit(step); }
  constexpr bool has(Entry_Step step) const { return (bits & bit(step)) != 0; }
  constexpr bool empty() const { return bits == 0; }
  /// Of a set that is not empty. (A population count would be a function call.)
  constexpr bool is_single() const { return (bits & (bits - 1)) == 0; }
  constexpr Entry_Step first() const { return static_cast<Entry_Step>(std::countr_zero(bits)); }
  friend constexpr Entry_Step_Set operator&(Entry_Step_Set a, Entry_Step_Set b) {
    return {a.bits & b.bits};
  }

 private:
  static constexpr std::uint32_t bit(Entry_Step step) { return 1u << static_cast<unsigned>(step); }
};

/// The steps of one routine.
struct Entry_Steps {
  static constexpr std::size_t longest = 7;
  std::array<Entry_Step, longest> list{};
  Entry_Step_Set set;

  constexpr Entry_Steps() = default;
  constexpr Entry_Steps(std::initializer_list<Entry_Step> steps) {
    std::size_t at = 0;
    for (const Entry_Step step : steps) {
      list[at++] = step;
      set.add(step);
    }
  }
};

/// Merge control, on by the option or by the rendition's drawing mode.
inline bool merge_on(const Software_Z_Buffer& renderer, const KT_Rendition& rendition) {
  return renderer.force_merge != 0 ||
         rendition->misc_attributes->drawing_mode == KT_Misc_Attributes::merge_mode;
}

/// The steps of `relevant` that hold for a call, or may hold: those whose test costs more, or looks
/// at colours or points, are tested in their turn. `variant` is the action's.
template <Entry_Step_Set relevant>
Entry_Step_Set held_steps(const Software_Z_Buffer& renderer, Variant variant,
                          const KT_Rendition& rendition, int point_count) {
  using enum Entry_Step;
  const KT_Rendition_Data& data = *rendition;
  Entry_Step_Set held;
  // What is not relevant costs nothing: its test is not compiled. Of the rest hardly any holds, so
  // that branches are fewer instructions than bits put together.
  const auto add_if = [&]<class Test>(Entry_Step step, Test test) {
    if (relevant.has(step)) {
      if (test()) [[unlikely]]
        held.add(step);
    }
  };
  const auto add_if_advanced = [&](Entry_Step step, std::uint32_t bit) {
    add_if(step, [&] { return (data.misc_attributes->advanced_options.bits & bit) != 0; });
  };
  const auto no_depth = [&] { return data.display_context->depth_enabled == 0; };
  const auto merge = [&] { return merge_on(renderer, rendition); };
  const auto always = [] { return true; };

  Entry_Step_Set without_image;  // taken without a branch, which would be one more in each action
  for (const Entry_Step step : {nothing_to_draw, missing_image, kept_standard}) {
    without_image.add(step);
  }
  held.bits =
      without_image.bits & renderer.missing_images[static_cast<std::size_t>(index_of(variant))];
  add_if(nothing_to_draw, [&] { return point_count < 2; });
  add_if(too_few_points, [&] { return point_count < 2; });
  add_if(no_points, [&] { return point_count < 1; });
  add_if(standard_pattern,
         [&] { return data.face_attributes->face_pattern >= KT_Face_Attributes::first_standard; });
  add_if(standard_line, [&] {
    return data.line_attributes->line_pattern != 0 || data.line_attributes->line_weight > 1;
  });
  add_if(wide_line, [&] { return data.line_attributes->line_weight > 1; });
  add_if(standard_marker, [&] { return data.marker_attributes->marker_symbol != 0; });
  add_if(depth_off_standard, no_depth);
  add_if_advanced(blending, KT_Advanced_Options::alpha_bit);
  add_if_advanced(blending_filled, KT_Advanced_Options::alpha_bit);
  add_if(depth_off, no_depth);
  add_if(opaque_color, always);
  add_if(merging, merge);
  add_if(merging_opaque, merge);
  add_if_advanced(edges, KT_Advanced_Options::edge_bit);
  add_if(mask, [&] { return static_cast<bool>(renderer.mask_cache); });
  add_if(outline, [&] { return static_cast<bool>(data.material->basic_material); });
  add_if_advanced(antialias, KT_Advanced_Options::antialias_bit);
  add_if_advanced(opaque_image, KT_Advanced_Options::opaque_image_bit);
  add_if(as_colorized, always);
  add_if(as_blending, always);
  return held;
}

/// Whether a step of missing images, which may hold for the action's variant, does for the one that
/// has been entered. Other steps hold.
inline bool image_step_holds(Entry_Step step, const Software_Z_Buffer& renderer, Variant variant,
                             int point_count = 0) {
  switch (step) {
    case Entry_Step::nothing_to_draw:
      return point_count < 2 || !renderer.color_image;
    case Entry_Step::missing_image:
      return lacks_image(renderer, variant);
    default:
      return true;
  }
}

/// All steps that are in some row of a family's table.
template <std::size_t count>
constexpr Entry_Step_Set steps_in(const std::array<Entry_Steps, count>& table) {
  Entry_Step_Set all;
  for (const Entry_Steps& steps : table) all.bits |= steps.set.bits;
  return all;
}

/// Tests the steps of a routine that may hold, in order, and draws unless one takes the call.
template <class Family, auto draw, class Family_Routine, class Family_Call>
[[gnu::noinline]] void walk_steps(const Entry_Steps& steps, Family_Routine routine,
                                  Family_Call& call) {
  for (const Entry_Step step : steps.list) {
    if (call.held.has(step) && Family::holds(step, routine, call)) {
      return Family::take(step, routine, call);
    }
  }
  draw(routine, call);
}

/// The same for a single step, which has no order.
template <class Family, auto draw, class Family_Routine, class Family_Call>
[[gnu::noinline]] void try_step(Entry_Step step, Family_Routine routine, Family_Call& call) {
  if (Family::holds(step, routine, call)) return Family::take(step, routine, call);
  draw(routine, call);
}

/// Enters a routine: one of its steps takes the call, or else `draw(routine, call)` does the
/// routine's own work. Mostly no step can hold, which costs one comparison.
///
///   Family::holds(step, routine, call) whether a step that may hold does
///   Family::take(step, routine, call)  does what a step does whose test holds
template <class Family, auto draw, class Family_Routine, class Family_Call>
void enter_by(const Entry_Steps& steps, Family_Routine routine, Family_Call& call) {
  const Entry_Step_Set possible = steps.set & call.held;
  if (possible.empty()) [[likely]]
    return draw(routine, call);
  if (possible.is_single()) return try_step<Family, draw>(possible.first(), routine, call);
  walk_steps<Family, draw>(steps, routine, call);
}

}  // namespace zbuffer
