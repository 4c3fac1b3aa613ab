// Reading of a material's texture as the general routines do it.
#pragma once

#include "host/rendition.h"

namespace stand_in {

/// What a texture shows at a place: nothing where the image does not reach.
struct Texel {
  KT_RGB32 color;
  bool exists = false;
};

class Texture {
 public:
  /// The texture of the rendition's material; may be none.
  explicit Texture(const KT_Rendition& rendition);

  explicit operator bool() const { return image_ && image_->width > 0 && image_->height > 0; }
  bool modulates() const { return source_->modulate != 0; }

  /// At a place in units of the whole image, t upward from the image's bottom row.
  Texel at(double s, double t) const { return is_smooth_ ? smooth(s, t) : nearest(s, t); }

 private:
  Texel nearest(double s, double t) const;
  Texel smooth(double s, double t) const;
  KT_RGB32 texel(std::int64_t column, std::int64_t line) const;

  KT_Texture_Source source_;
  KT_Shared_Image image_;
  bool is_smooth_ = false;  // the mean of the nearest four texels
};

}  // namespace stand_in
