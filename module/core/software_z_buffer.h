// The renderer object: options, frame images and what draw routines read of them.
//
// `establish` chooses a routine for every action from the current options; after that no routine
// tests colour system, buffer depth or alpha blending again.
#pragma once

#include <array>

#include "host/framework.h"
#include "module/core/mask_cache.h"
#include "module/core/variant.h"

class Software_Z_Buffer final : public KT_Renderer_Data {
 public:
  /// Places in the two arrays of option pointers.
  enum Option_Slot {
    margin,
    color_buffer,
    depth_buffer,
    mask_cache_option,
    try_mmx,
    use_mask,
    clip_phase,
    enable_tiling,
    merge_control_background_color,
    force_merge_control_on,
    zbuffer_write_option,
    zbuffer_test_option,
    option_slot_count
  };
  using Option_Set = std::array<KT_Option*, option_slot_count>;

  Option_Set renderer_options;    ///< the options as made in `renderer_option_table`
  Option_Set current_option_set;  ///< the same options as made in `current_option_table`
  KT_Shared_Image color_image;    ///< format 1 or 2; null until the first `establish`
  KT_Shared_Image depth_image;    ///< format 3; null when the buffer depth is below 1
  Mask_Cache mask_cache;          ///< null unless "Use Mask" is on
  KT_Int_XY device_origin;        ///< device coordinates of buffer row 0, column 0
  KT_Int_XY window_extent;        ///< width and height from the last `establish`
  KT_Color_Cube color_cube;       ///< of the palette, at first the 2 by 2 by 2 cube
  std::uint8_t byte_before_zbuffer_write = 0;
  std::uint8_t zbuffer_write = 1;  ///< changed only through the setter in "ZBuffer Write"
  std::int32_t zbuffer_test = 2;   ///< 1 less, 5 greater, any other less or equal; likewise
  /// Non-zero while a strip's edges are drawn: the depth offset that polygons then take.
  std::int32_t edge_depth_offset = 0;
  std::uint8_t merge_background_index = 255;
  std::uint8_t merge_substitute_index = 0;
  KT_RGB32 merge_background_color{0, 0, 0, 253};
  KT_RGB32 merge_substitute_color{1, 0, 0, 253};
  std::uint8_t force_merge = 0;                      ///< "Force Merge Control On"
  zbuffer::Variant variant = zbuffer::Variant::rgb;  ///< of the last `establish`
  /// All bits or none: of a variant, by `index_of`, whether its routines lack an image that they
  /// draw into, and as one more, whether there is no depth image. All while `establish` is at work.
  std::array<std::uint32_t, zbuffer::variant_count + 1> missing_images{};

  explicit Software_Z_Buffer(const KT_Renderer_Data* source);
  ~Software_Z_Buffer() override;

  Software_Z_Buffer* clone() const override { return nullptr; }  // a renderer is not copied
  const KT_Renderer_Options& options() const override { return options_owner->current_options; }
  KT_Renderer_Options& options() override { return options_owner->current_options; }
  KT_Option_Table& option_table() override { return options_owner->current_option_table; }
  int establish() override;
  void begin_picture(KT_Document_Info*) override {}
  void end_picture() override {}
  void update(const KT_Int_Rectangle& rectangle) override;

 private:
  void establish_color_image();
  void establish_depth_image();
  void establish_missing_images();
  void establish_mask_cache();
  void establish_merge_colors();
};

/// The renderer that the first argument of an action is.
inline Software_Z_Buffer& renderer_of(KT_Renderer_Data* object) {
  return static_cast<Software_Z_Buffer&>(*object);
}

namespace zbuffer {

/// Whether routines of `variant` lack an image: it was not made, or the routine is one that an
/// earlier configuration has bound.
inline bool lacks_image(const Software_Z_Buffer& renderer, Variant variant) {
  return renderer.missing_images[static_cast<std::size_t>(index_of(variant))] != 0;
}
inline bool lacks_depth_image(const Software_Z_Buffer& renderer) {
  return renderer.missing_images[variant_count] != 0;
}

}  // namespace zbuffer
