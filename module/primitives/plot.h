// Plotting of single pixels: what dots and the points of polymarkers have in common.
//
// With depth only the depth test decides; mask and merge control are not used, even when they are
// in force. Without depth the mask comes first, then merge control, then the variant's own blend.
#pragma once

#include <type_traits>

#include "module/core/fixed_point.h"
#include "module/core/frame.h"
#include "module/core/variant.h"
#include "module/pixels/blend_256.h"
#include "module/pixels/depth_test.h"
#include "module/pixels/mask.h"
#include "module/pixels/merge.h"

namespace zbuffer::primitives {

template <Variant variant>
class Plotter {
 public:
  using Pixel = std::conditional_t<is_mapped(variant), std::uint8_t, std::uint32_t>;

  Plotter(const Software_Z_Buffer& renderer, const KT_Rendition& rendition)
      : renderer_(renderer),
        rendition_(rendition),
        frame_(renderer),
        comparison_(honours_settings ? comparison_setting(renderer) : Comparison::less_equal),
        write_(honours_settings ? write_setting(renderer) : Depth_Write::on_pass),
        masked_(renderer.mask_cache && rendition->display_context->complex_clip),
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

  void put(Pixel* pixel, Pixel color) const {
    if (merging_) {
      *pixel = Merge(renderer_)(*pixel, color);
    } else if constexpr (is_alpha(variant)) {
      *pixel = blended_256(*pixel, color);
    } else {
      *pixel = color;
    }
  }

 private:
  using Merge = std::conditional_t<is_mapped(variant), Mapped_Merge, Rgb_Merge>;
  // Mapped dots take the plain test and write the depth on every pass.
  static constexpr bool honours_settings = !is_mapped(variant);

  // Unlike spans, single pixels compare all 32 bits of z, with its sign.
  bool tested(std::uint16_t* depth, std::int32_t z) const {
    if (!passes(comparison_, z, std::int32_t{*depth})) return false;
    if (write_ == Depth_Write::on_pass) *depth = static_cast<std::uint16_t>(z);
    return true;
  }

  bool hidden(std::int32_t x, std::int32_t y) const {
    return masked_ && mask_in_force(renderer_, rendition_) &&
           offset(row_cursor(*renderer_.mask_cache->head, y), x).hidden();
  }

  const Software_Z_Buffer& renderer_;
  const KT_Rendition& rendition_;
  const Frame frame_;
  // What the call decides, read once: the compiler cannot know that no pixel changes it.
  const Comparison comparison_;
  const Depth_Write write_;
  const bool masked_;  // perhaps: there are a mask cache and a clip
  const bool merging_;
};

}  // namespace zbuffer::primitives
