// The `2DD` actions of strips; the arguments are those of the actions.
#pragma once

#include "host/action.h"

namespace zbuffer::tiling {

korvel::Strip_Routine<KT_Point_D> draw_polytriangle;
korvel::Colorized_Routine<KT_Point_D> draw_colorized_polytriangle;
korvel::Gouraud_Routine<KT_Point_D> draw_gouraud_polytriangle;
/// Makes the floats of perspective correction when they are needed and not given.
korvel::Textured_Routine<KT_Point_D> draw_textured_polytriangle;

}  // namespace zbuffer::tiling
