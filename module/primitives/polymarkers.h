// Polymarkers: lists of points drawn as single dots, each tested against the hard clip.
#pragma once

#include "module/core/call.h"

namespace zbuffer::primitives {

/// Walks the entry steps of a variant's polymarker, then draws it. `Mapped_Z` has none.
void enter_polymarker(Variant variant, Strip_Call& markers);

/// A call of it.
Strip_Call polymarker_call(Software_Z_Buffer& renderer, Variant variant,
                           const KT_Rendition& rendition, int count, const KT_DCI_Point* points);

}  // namespace zbuffer::primitives
