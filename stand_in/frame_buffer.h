// The framework's own side of the action table.
#pragma once

#include "host/action.h"

namespace stand_in {

/// Makes a zeroed image of `width` by `height` in `image`, with rows on multiples of 4 bytes. A
/// format without a pixel size, a size that is no size or is too large leaves the handle null.
void create_frame_buffer(void* object, int width, int height, const KT_Image_Format* format,
                         KT_Shared_Image* image);

/// The target of a renderer that has no window: pictures are read back from the renderer. A host
/// with a window binds a routine of its own in place of this one.
void present_to_no_window(void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
                          const KT_Shared_Image* image, int target_x, int target_y);

}  // namespace stand_in
