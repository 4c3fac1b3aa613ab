// Outlined lines: a wide pass in the outline's colour and a pass of the line itself over it, both
// drawn by the ordinary action with a changed copy of the rendition.
#pragma once

#include "host/rendition.h"

namespace zbuffer::lines {

/// Whether the material of `rendition` asks for an outline around these points.
bool is_outlined(const KT_Rendition& rendition, int count, const KT_DCI_Point* points);

/// Sets `temporary`, a further reference on the rendition of an outlined line, up for the first
/// pass. From then on it asks for no outline.
void prepare_outline_rendition(KT_Rendition& temporary);

/// Sets `temporary`, as the first pass left it, up for the second pass.
void prepare_core_rendition(const KT_Rendition& rendition, KT_Rendition& temporary);

}  // namespace zbuffer::lines
