// The renderer object: its life, and presenting.
#include "module/core/software_z_buffer.h"

#include <memory>
#include <new>

#include "module/core/fixed_point.h"
#include "module/core/options.h"

Software_Z_Buffer::Software_Z_Buffer(const KT_Renderer_Data* source)
    : KT_Renderer_Data(source),
      renderer_options(zbuffer::make_options(renderer_option_table)),
      current_option_set(zbuffer::make_options(current_option_table)),
      mask_cache(new Mask_Cache_Data),
      color_cube(KT_Int_RGB{2, 2, 2}, 1.0f, 0) {
  declared_options.set_buffer_depth(16);
  declared_options.set_backing_store(true);
  declared_options.set_supports_complex_clip(true);
  set_standard_actions(false);
  mask_cache.release();  // lives only for the construction; `establish` makes the one in use
  zbuffer::install_depth_setters(option_table());
}

Software_Z_Buffer::~Software_Z_Buffer() {
  mask_cache.release();
  depth_image.release();
  color_image.release();
}

// Here alone y up becomes the window's y down.
void Software_Z_Buffer::update(const KT_Int_Rectangle& rectangle) {
  const KT_DCI_Point start{rectangle.left, rectangle.top, 0};
  const KT_DCI_Point end{rectangle.right, rectangle.bottom, 0};
  using zbuffer::wrapped_difference, zbuffer::wrapped_sum;
  const int end_y = wrapped_sum(current_options.window_size().y, device_origin.y);
  const int target_x = wrapped_sum(device_origin.x, rectangle.left);
  const int target_y = wrapped_difference(wrapped_difference(end_y, rectangle.top), 1);
  actions.call<KT_Action::Present_Image>(&start, &end, &color_image, target_x, target_y);
}
