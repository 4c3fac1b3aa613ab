// Convex polygons in single places of double precision, drawn through the actions of float points.
#pragma once

#include <vector>

#include "stand_in/standard/line.h"

namespace stand_in {

/// Fills a convex polygon in the colouring of the job: the first corner's colour, or one a corner.
/// The outline is used up.
void fill_convex(const Line_Job& job, std::vector<Vertex>& outline);

}  // namespace stand_in
