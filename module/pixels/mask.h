// Clip masks: whether one is in force, and walking its bits. The first pixel of a byte is its most
// significant bit; a set bit hides the pixel.
#pragma once

#include "module/core/software_z_buffer.h"

namespace zbuffer {

/// A place in mask bits: a byte and a bit from 0, the most significant one, to 7.
struct Bit_Cursor {
  const std::uint8_t* byte;
  int bit;

  bool hidden() const { return (*byte & (128 >> bit)) != 0; }
};

/// Moves by `n` bits in either direction.
inline void advance(Bit_Cursor& cursor, std::ptrdiff_t n) {
  const std::ptrdiff_t bit = cursor.bit + n;
  cursor.byte += bit >> 3;
  cursor.bit = static_cast<int>(bit & 7);
}

inline Bit_Cursor offset(Bit_Cursor cursor, std::ptrdiff_t n) {
  advance(cursor, n);
  return cursor;
}

/// Returns the cursor as it stands and moves it on by a bit.
inline Bit_Cursor post_increment(Bit_Cursor& cursor) {
  const Bit_Cursor before = cursor;
  advance(cursor, 1);
  return before;
}

/// Returns the cursor as it stands and moves it back by a bit.
inline Bit_Cursor post_decrement(Bit_Cursor& cursor) {
  const Bit_Cursor before = cursor;
  advance(cursor, -1);
  return before;
}

/// Bit 0 of buffer row `row`.
inline Bit_Cursor row_cursor(const Frame_Buffer_Mask& mask, std::int32_t row) {
  return {mask.image->rows[row], 0};
}

/// Whether `mask` is that of `clip` for a window of that size. Renderers of other sizes may share
/// the cache.
inline bool is_mask_of(const Frame_Buffer_Mask& mask, const KT_Contour_Set& clip, int width,
                       int height) {
  return mask.contour_id == clip->id && mask.image->width == width && mask.image->height == height;
}

/// Makes the mask of `clip` the head of the cache; always true. A full cache gives up the one used
/// least recently.
bool select_mask(Mask_Cache_Data& cache, const KT_Contour_Set& clip, int width, int height, int x,
                 int y);

/// Whether a complex clip is to be honoured; its mask is then the head of the renderer's cache.
inline bool mask_in_force(const Software_Z_Buffer& renderer, const KT_Rendition& rendition) {
  if (!renderer.mask_cache) return false;
  const KT_Display_Context& context = *rendition->display_context;
  const KT_Contour_Set* clip = &context.complex_clip;
  if (*clip && (context.extent_left < 0 || context.extent_bottom < 0)) {
    clip = &rendition.shifted_complex_clip();
  }
  if (!*clip) return false;
  Mask_Cache_Data& cache = *renderer.mask_cache;
  const KT_Int_XY size = renderer.window_extent;
  if (cache.head && is_mask_of(*cache.head, *clip, size.x, size.y)) return true;
  return select_mask(cache, *clip, size.x, size.y, renderer.device_origin.x,
                     renderer.device_origin.y);
}

}  // namespace zbuffer
