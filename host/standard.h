// The framework's general routines: each draws what a renderer's own routine of the same action
// does not, with the arguments of the action unchanged, and comes back through the action table.
#pragma once

#include "host/action.h"

#define KORVEL_DECLARE_STANDARD(name, signature) KORVEL_EXPORT signature KD_Standard_##name;
KORVEL_STANDARD_ACTIONS(KORVEL_DECLARE_STANDARD)
#undef KORVEL_DECLARE_STANDARD

/// Fills a device rectangle (inclusive) with the face pattern of the rendition.
KORVEL_EXPORT void KD_Span_DC_Rectangle(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                        int left, int right, int bottom, int top);
