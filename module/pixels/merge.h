// Merge control: drawing combines with what is there. A pixel of the key colour stands for empty
// paper and takes the new colour; any other keeps the bits that old and new have in common; and
// no result may look like empty paper.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/pixels/blend.h"

namespace zbuffer {

/// Worked out once a call. `force_merge` comes first; the rendition is read only without it.
inline bool merge_on(const Software_Z_Buffer& renderer, const KT_Rendition& rendition) {
  return renderer.force_merge != 0 ||
         rendition->misc_attributes->drawing_mode == KT_Misc_Attributes::merge_mode;
}

/// The rule for direct colour, over all 32 bits of a pixel.
struct Rgb_Merge {
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

inline void merge_rgb(const Software_Z_Buffer& renderer, std::uint32_t* pixel,
                      std::uint32_t color) {
  *pixel = Rgb_Merge(renderer)(*pixel, color);
}

inline void merge_mapped(const Software_Z_Buffer& renderer, std::uint8_t* pixel,
                         std::uint8_t index) {
  *pixel = Mapped_Merge(renderer)(*pixel, index);
}

}  // namespace zbuffer
