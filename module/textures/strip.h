// A call of a textured polytriangle routine, with all its arguments in one value.
#pragma once

#include <type_traits>

#include "module/core/software_z_buffer.h"
#include "module/textures/rules.h"

namespace zbuffer::textures {

/// A strip of `count` points. Colours come one a point; of each point's `parameter_width` records
/// the first is its texture coordinate. Floats and vectors are for the general routines and, the
/// vectors, for light.
template <class Point>
struct Strip_Of {
  Software_Z_Buffer& renderer;
  const KT_Rendition& rendition;
  int count;
  const Point* points;
  const KT_RGB32* colors;
  const KT_Parameter* parameters;
  int parameter_width;
  const float* extra_floats;
  const KT_Vector* vectors;

  const KT_Face_Attributes& face() const { return *rendition->face_attributes; }
  const KT_Material& material() const { return *rendition->material; }
  const KT_Display_Context& display_context() const { return *rendition->display_context; }
  std::uint32_t advanced_bits() const { return rendition->misc_attributes->advanced_options.bits; }

  /// The same call with other points.
  template <class Other>
  Strip_Of<Other> with_points(const Other* other) const {
    return {renderer,   rendition,       count,        other,  colors,
            parameters, parameter_width, extra_floats, vectors};
  }
  /// `length` points from point `first` on.
  Strip_Of piece(int first, int length) const {
    Strip_Of cut = *this;
    cut.count = length;
    cut.points += first;
    if (cut.colors) cut.colors += first;
    cut.parameters += std::ptrdiff_t{first} * parameter_width;
    return cut;
  }
};

using Strip = Strip_Of<KT_DCI_Point>;
using Float_Strip = Strip_Of<KT_Point>;

constexpr bool is_float(Layer layer) {
  return layer == Layer::float_any || layer == Layer::float_inside;
}

template <Layer layer>
using Strip_At = std::conditional_t<is_float(layer), Float_Strip, Strip>;

}  // namespace zbuffer::textures
