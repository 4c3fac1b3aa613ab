// The routines of the polyline family, by layer, variant and kind. Each variant's file
// instantiates its own; a call that is taken elsewhere on its way reaches them by name.
#pragma once

#include "module/lines/polyline.h"
#include "module/lines/rules.h"

namespace zbuffer::lines {

/// An action's routine at one layer: the entry chain, then the layer's own work.
template <Layer layer, Variant variant, Kind kind>
void enter(const Polyline& line);

/// The masked form of the same, reached when a mask is in force.
template <Layer layer, Variant variant, Kind kind>
void enter_masked(const Polyline& line);

}  // namespace zbuffer::lines
