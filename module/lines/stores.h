// Stores: how a source's value and the old pixel make the new one. `run` does it for many pixels
// of one value; `take` gets a store ready for another constant colour.
#pragma once

#include "module/pixels/alpha_scale.h"
#include "module/pixels/merge.h"
#include "module/pixels/run.h"

namespace zbuffer::lines {

/// old + ((source - old) * factor >> 8) in blue, green and red at once, for a factor from 0 to
/// 256; alpha becomes 255.
///
/// The same as (source * factor + old * (256 - factor)) >> 8, where no channel's sum reaches the
/// next one: at most 255 * 256.
constexpr std::uint32_t mixed(std::uint32_t old, std::uint32_t source, std::uint32_t factor) {
  constexpr std::uint32_t outer = 0xFF00FF;
  constexpr std::uint32_t inner = 0x00FF00;
  const std::uint32_t rest = 256 - factor;
  return opaque_alpha | (((source & outer) * factor + (old & outer) * rest) >> 8 & outer) |
         (((source & inner) * factor + (old & inner) * rest) >> 8 & inner);
}

struct Replace {
  void take(KT_RGB32) {}
  template <class Pixel>
  Pixel operator()(Pixel, Pixel source) const {
    return source;
  }
  template <class Pixel>
  void run(Pixel* to, std::ptrdiff_t count, Pixel source) const {
    fill_run(to, count, source);
  }
};

/// A constant colour blended by its alpha.
struct Constant_Blend {
  std::uint32_t factor = 0;

  void take(KT_RGB32 color) { factor = alpha_scale[color.alpha]; }
  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return mixed(old, source, factor);
  }
  void run(std::uint32_t* to, std::ptrdiff_t count, std::uint32_t source) const {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = mixed(to[i], source, factor);
  }
};

/// Colours blended each by its own alpha.
struct Source_Blend {
  void take(KT_RGB32) {}
  std::uint32_t operator()(std::uint32_t old, std::uint32_t source) const {
    return mixed(old, source, alpha_scale[alpha_of(source)]);
  }
};

/// Merge control, for direct colours or indices.
template <class Merge>
struct Merge_Store {
  Merge merge;

  void take(KT_RGB32) {}
  template <class Pixel>
  Pixel operator()(Pixel old, Pixel source) const {
    return merge(old, source);
  }
  template <class Pixel>
  void run(Pixel* to, std::ptrdiff_t count, Pixel source) const {
    for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = merge(to[i], source);
  }
};

}  // namespace zbuffer::lines
