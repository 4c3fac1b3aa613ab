// The `2DD` actions of polylines; the arguments are those of the actions.
#pragma once

#include "host/action.h"

namespace zbuffer::tiling {

korvel::Strip_Routine<KT_Point_D> draw_polyline;
korvel::Colorized_Routine<KT_Point_D> draw_colorized_polyline;
korvel::Gouraud_Routine<KT_Point_D> draw_gouraud_polyline;

}  // namespace zbuffer::tiling
