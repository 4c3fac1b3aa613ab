// Reference model, cutting a triangle against a rectangle.
#pragma once

#include <vector>

#include "host/framework.h"

namespace model {

struct Clipped_Point {
  KT_DCI_Point point;
  KT_RGB32 color;
};

/// The strip that is left of a triangle of `points` and `colors`, empty when nothing is.
std::vector<Clipped_Point> clip_triangle(const KT_DCI_Point (&points)[3],
                                         const KT_RGB32 (&colors)[3],
                                         const KT_Int_Rectangle& rectangle);

/// A coordinate rounded with halves upward; beyond the range of int it is the least int.
int rounded(double value);
int rounded(float value);

}  // namespace model
