// Reference model, cutting a triangle against the range in which edges may be walked.
#pragma once

#include <span>
#include <vector>

#include "host/framework.h"

namespace model {

/// A corner of a triangle with all that it may carry.
struct Corner {
  KT_DCI_Point point;
  KT_RGB32 color;
  KT_Parameter parameter{};
  KT_Vector vector{};
};

/// The strip that is left of a triangle within -4000 to 28760, the triangle itself when all of it
/// lies there. Parameters are linear: what is in perspective is not drawn by renderers.
std::vector<Corner> clip_triangle(std::span<const Corner> corners);

/// A coordinate rounded with halves upward; beyond the range of int it is the least int.
int rounded(double value);
int rounded(float value);
/// Truncated, with the same rule.
int truncated(double value);
/// The nearest float, in a way that no optimization leaves out.
float to_float(double value);

}  // namespace model
