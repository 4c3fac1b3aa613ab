// Reference model, cutting a triangle against a rectangle.
#pragma once

#include <vector>

#include "host/framework.h"

namespace model {

struct Clipped_Point {
  KT_DCI_Point point;
  KT_RGB32 color;
  KT_Parameter parameter{};
};

/// The strip that is left of a triangle of `points`, `colors` and, when not null, three
/// `parameters`; empty when nothing is.
std::vector<Clipped_Point> clip_triangle(const KT_DCI_Point (&points)[3],
                                         const KT_RGB32 (&colors)[3],
                                         const KT_Int_Rectangle& rectangle,
                                         const KT_Parameter* parameters = nullptr);

/// A coordinate rounded with halves upward; beyond the range of int it is the least int.
int rounded(double value);
int rounded(float value);

}  // namespace model
