// Plotting of single pixels: what dots and the points of polymarkers have in common.
//
// With depth a pixel is under the depth test alone; neither mask nor merge control is asked, even
// when they are in force. Without depth the mask comes first, then merge control, then the
// variant's own store.
#pragma once

#include <type_traits>

#include "module/core/fixed_point.h"
#include "module/core/frame.h"
#include "module/core/variant.h"
#include "module/pixels/alpha_scale.h"
#include "module/pixels/depth_test.h"
#include "module/pixels/mask.h"
#include "module/pixels/merge.h"

namespace zbuffer {

/// Mapped dots take the plain test and write the depth on every pass.
constexpr Depth_Setting plot_depth_setting(Variant variant) {
  return is_mapped(variant) ? Depth_Setting::fixed : Depth_Setting::by_setting;
}

template <Variant variant>
class Plotter {
 public:
  using Pixel = std::conditional_t<is_mapped(variant), std::uint8_t, std::uint32_t>;

  Plotter(const Software_Z_Buffer& renderer, const KT_Rendition& rendition)
      : renderer_(renderer),
        rendition_(rendition),
        frame_(renderer),
        merging_(!has_depth(variant) && merge_on(renderer, rendition)) {}

  /// The pixel at `point` when it is to be drawn, else null. A pass of the depth test writes the
  /// depth.
  Pixel* open(const KT_DCI_Point& point) const {
    const std::int32_t x = wrapped_difference(point.x, frame_.origin.x);
    const std::int32_t y = row_of(point);
    if constexpr (has_depth(variant)) {
      if (!tested(frame_.depth(y, x), point.z)) return nullptr;
    } else {
      if (hidden(x, y)) return nullptr;
    }
    return frame_.template color<Pixel>(y, x);
  }

  std::int32_t row_of(const KT_DCI_Point& point) const {
    return wrapped_difference(point.y, frame_.origin.y);
  }

  void put(Pixel* pixel, Pixel ink) const {
    if (merging_) {
      put_merged(pixel, ink);
    } else if constexpr (is_alpha(variant)) {
      *pixel = blended_pixel(*pixel, ink);
    } else {
      *pixel = ink;
    }
  }

 private:
  // Unlike spans, single pixels compare all 32 bits of z, with its sign.
  bool passes(std::int32_t z, std::int32_t stored) const {
    if constexpr (plot_depth_setting(variant) == Depth_Setting::by_setting) {
      if (renderer_.zbuffer_test == 1) return z < stored;
      if (renderer_.zbuffer_test == 5) return z > stored;
    }
    return z <= stored;
  }

  bool tested(std::uint16_t* depth, std::int32_t z) const {
    if (!passes(z, *depth)) return false;
    if (plot_depth_setting(variant) == Depth_Setting::fixed || renderer_.zbuffer_write != 0) {
      *depth = static_cast<std::uint16_t>(z);
    }
    return true;
  }

  bool hidden(std::int32_t x, std::int32_t y) const {
    return mask_in_force(renderer_, rendition_) &&
           offset(row_cursor(*renderer_.mask_cache->head, y), x).hidden();
  }

  void put_merged(Pixel* pixel, Pixel ink) const {
    if constexpr (is_mapped(variant)) {
      merge_mapped(renderer_, pixel, ink);
    } else {
      merge_rgb(renderer_, pixel, ink);
    }
  }

  const Software_Z_Buffer& renderer_;
  const KT_Rendition& rendition_;
  const Frame frame_;
  const bool merging_;
};

}  // namespace zbuffer
