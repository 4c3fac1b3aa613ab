// Merge control: drawing combines with what is there. A pixel of the key colour counts as empty and
// takes the new colour; any other keeps the bits that old and new have in common. No result may be
// the key colour: the substitute colour takes its place.
#pragma once

#include "module/core/entry_steps.h"
#include "module/pixels/blend_255.h"

namespace zbuffer {

/// The rule for direct colour, over all 32 bits of a pixel.
struct Rgb_Merge {
  static constexpr bool branch_free = true;

  std::uint32_t key;
  std::uint32_t substitute;

  explicit Rgb_Merge(const Software_Z_Buffer& renderer)
      : key(renderer.merge_background_color.word()),
        substitute(renderer.merge_substitute_color.word()) {}

  std::uint32_t operator()(std::uint32_t old, std::uint32_t color) const {
    const std::uint32_t joined = (old == key ? color : old & color) | opaque_alpha;
    const std::uint32_t merged = joined == key ? substitute : joined;
    // Equal colours stay as they are, alpha too, unless both are the key.
    return old == color && old != key ? old : merged;
  }
};

/// The rule for palette indices. Only drawing on the key may give the substitute; a search that
/// ends at the key's index is taken as it comes.
struct Mapped_Merge {
  static constexpr bool branch_free = false;  // it searches the palette: for drawn pixels only

  const KT_Palette* palette;
  std::uint8_t key;
  std::uint8_t substitute;

  explicit Mapped_Merge(const Software_Z_Buffer& renderer)
      : palette(&renderer.current_options.palette()),
        key(renderer.merge_background_index),
        substitute(renderer.merge_substitute_index) {}

  std::uint8_t operator()(std::uint8_t old, std::uint8_t index) const {
    if (old == key) return index == key ? substitute : index;
    if (old == index) return old;
    const KT_Palette_Entry* entries = (*palette)->entries;
    const std::uint32_t common = entries[old].color.word() & entries[index].color.word();
    const KT_RGB32 color = KT_RGB32::from_word(common | opaque_alpha);
    return static_cast<std::uint8_t>(palette->closest_match(color, false));
  }
};

}  // namespace zbuffer
