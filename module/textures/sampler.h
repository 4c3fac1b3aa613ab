// The sampler: a texture as it is drawn here, one image of 32-bit texels, read at whole
// coordinates.
//
//   column = u & (width - 1)
//   line   = (height - 1) - (v & (height - 1))      v = 0 is the last line in memory
//
// Masks do all the work, so sizes other than powers of two read what the masks give. A coordinate
// beyond the image wraps when its direction tiles; otherwise the pixel is not drawn.
#pragma once

#include "host/framework.h"
#include "module/core/fixed_point.h"
#include "module/pixels/quad.h"

namespace zbuffer::textures {

class Sampler {
 public:
  static constexpr std::uint32_t tile = 2;  ///< of `wrap_s` and `wrap_t`

  Sampler(const KT_Texture_Source_Data& source, const KT_Shared_Image_Data& image)
      : lines_(image.scan_lines),
        column_mask_(as_word(image.width - 1)),
        line_mask_(as_word(image.height - 1)),
        outside_mask_s_(source.wrap_s == tile ? 0 : ~column_mask_),
        outside_mask_t_(source.wrap_t == tile ? 0 : ~line_mask_) {}

  /// Where running coordinates lie in the image or wrap round it.
  template <class Number>
  Number contains(Number u, Number v) const {
    return is_zero(((v >> 16) & outside_mask_t_) | ((u >> 16) & outside_mask_s_));
  }

  std::uint32_t texel(Word u, Word v) const { return at(column(u), line(v)); }
  Quad texel(Quad u, Quad v) const {
    const Quad columns = column(u);
    const Quad lines = line(v);
    return Quad{at(columns[0], lines[0]), at(columns[1], lines[1]), at(columns[2], lines[2]),
                at(columns[3], lines[3])};
  }

 private:
  template <class Number>
  Number column(Number u) const {
    return (u >> 16) & column_mask_;
  }
  template <class Number>
  Number line(Number v) const {
    return line_mask_ - ((v >> 16) & line_mask_);
  }
  std::uint32_t at(Word column, Word line) const {
    std::uint32_t texel;
    std::memcpy(&texel, lines_[line] + std::size_t{column} * sizeof texel, sizeof texel);
    return texel;
  }

  const std::uint8_t* const* lines_;
  Word column_mask_;
  Word line_mask_;
  Word outside_mask_s_;  // bits of a coordinate that lie outside
  Word outside_mask_t_;
};

/// The texture of a rendition's material, held for as long as it is drawn with.
struct Held_Texture {
  KT_Texture_Source source;
  KT_Shared_Image image;

  explicit Held_Texture(const KT_Rendition& rendition) {
    rendition->material->basic_material->texture(source, 0, 0, 0);
    source->image(image, 0, 0, 0);
  }

  /// Without an image of at least one texel there is nothing to draw with.
  bool usable() const { return image && image->width > 0 && image->height > 0; }
  Sampler sampler() const { return Sampler(*source, *image); }
};

}  // namespace zbuffer::textures
