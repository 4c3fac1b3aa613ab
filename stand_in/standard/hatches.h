// Face patterns from 75 on: hatches of 16 by 16 pixels.
#pragma once

#include "host/rendition.h"

namespace stand_in {

/// From 75 on: wide horizontal, vertical, rising and falling lines; upright and diagonal grids;
/// paired rising lines; dashes; bricks; a basket weave; checks; dots; rings; zigzags; waves;
/// diamonds. Then over again.
const KT_User_Pattern& hatch(std::int32_t face_pattern);

/// The same rendition, but that a face pattern which renderers do not draw is a user pattern.
KT_Rendition with_drawable_pattern(const KT_Rendition& source);

}  // namespace stand_in
