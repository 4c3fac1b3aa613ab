// Blends: how the old pixel and a colour make the new one, functions (old, source) -> new. Those
// that are `branch_free` may also be worked out for pixels that then stay as they are.
//
// Beside these stand the blends by alpha (blend_255.h, blend_256.h) and merge control (merge.h).
#pragma once

#include "module/pixels/cursors.h"
#include "module/pixels/dither.h"
#include "module/pixels/run.h"

namespace zbuffer {

struct Replace {
  static constexpr bool branch_free = true;

  template <class Pixel>
  Pixel operator()(Pixel, Pixel source) const {
    return source;
  }
  template <class Pixel>
  void run(Pixel* to, std::ptrdiff_t count, const Constant_Cursor<Pixel>& source) const {
    fill_run(to, count, source.word);
  }
  void run(std::uint8_t* to, std::ptrdiff_t count, const Dithered_Row_Cursor& source) const {
    fill_by_address(to, count, source.row);
  }
};

/// Blends `count` pixels from `to` on with a constant source, in the blend's own way if it has one.
template <class Blend, class Pixel, class Cursor>
[[gnu::always_inline]] inline void blend_run(const Blend& blend, Pixel* to, std::ptrdiff_t count,
                                             const Cursor& source) {
  if constexpr (requires { blend.run(to, count, source); }) {
    blend.run(to, count, source);
  } else {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = blend(to[i], source.word);
  }
}

}  // namespace zbuffer
