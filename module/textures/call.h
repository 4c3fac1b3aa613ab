// A call of a textured polytriangle routine, with all its arguments in one value.
#pragma once

#include "module/core/call.h"
#include "module/textures/rules.h"

namespace zbuffer::textures {

/// A strip whose colours, if any, come one a point; of each point's `parameter_width` records the
/// first is its texture coordinate. Floats and vectors are for the general routines and, the
/// vectors, for light.
struct Textured_Call : Strip_Call {
  const KT_Parameter* parameters;
  int parameter_width;
  const float* extra_floats;
  const KT_Vector* vectors;

  /// `length` points from point `first` on.
  Textured_Call part(int first, int length) const {
    Textured_Call call(*this);
    call.count = length;
    call.points += first;
    if (call.colors) call.colors += first;
    call.parameters += std::ptrdiff_t{first} * parameter_width;
    return call;
  }
};

}  // namespace zbuffer::textures
