// The routines of the polytriangle family, by layer, variant and kind. Each variant's file
// instantiates its own; a call that is taken elsewhere on its way reaches them by name.
#pragma once

#include "module/triangles/strip.h"

namespace zbuffer {

/// An action's routine at one layer: the entry chain, then the layer's own work.
template <Layer layer, Variant variant, Kind kind>
void enter(const Strip_At<layer>& strip);

/// The masked twins of the two integer layers, reached when a mask is in force.
template <Variant variant, Kind kind>
void draw_anywhere_masked(const Strip& strip);
template <Variant variant, Kind kind>
void draw_inside_masked(const Strip& strip);

/// Scan conversion, past all entry tests.
template <Variant variant, Kind kind, Masking masking>
void scan(const Strip& strip);

}  // namespace zbuffer
