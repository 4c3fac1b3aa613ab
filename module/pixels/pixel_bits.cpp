// Where the bits of a face pattern come from: the framework's table of 8 by 8 patterns, or the
// user's own pattern of any size.
#include "module/pixels/pixel_bits.h"

namespace zbuffer {
namespace {

KT_User_Pattern pattern_of(const KT_Face_Attributes& face) {
  if (face.face_pattern == KT_Face_Attributes::user) return *face.user_pattern;
  return {KORVEL.face_pattern_table[face.face_pattern], 8, 8, 1};
}

}  // namespace

Stipple_Bits::Stipple_Bits(const KT_Rendition& rendition)
    : pattern_(pattern_of(*rendition->face_attributes)),
      origin_(rendition->misc_attributes->pattern_origin) {
  const std::uint32_t options = rendition->misc_attributes->pattern_options;
  inversion_ = (options & KT_Misc_Attributes::inverted_pattern_bit) ? 255 : 0;
  opaque_ = (options & KT_Misc_Attributes::opaque_pattern_bit) != 0;
}

}  // namespace zbuffer
