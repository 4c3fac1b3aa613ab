// The general routines of a fuzz program: they stand before the framework's and draw nothing, but
// write down their calls.
#pragma once

#include <functional>

#include "tests/differential/events.h"

namespace fuzz {

/// What has passed since the last call was begun.
extern model::Events events;
/// Runs once when the next general polyline is called.
extern std::function<void()> at_next_polyline;
/// What `KD_Rank_Polygon` says of the polygons of the call.
extern int polygon_rank;

}  // namespace fuzz
