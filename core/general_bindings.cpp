// Families that are left to the framework's general routines so far.

#include "core/bindings.h"

namespace zbuffer {

void bind_textured_polytriangles(Software_Z_Buffer& renderer, Variant) {
  bind<KT_Action::Draw_2D_Textured_Polytriangle>(renderer,
                                                 &KD_Standard_Draw_2D_Textured_Polytriangle);
  bind<KT_Action::Draw_DC_Textured_Polytriangle>(renderer,
                                                 &KD_Standard_Draw_DC_Textured_Polytriangle);
  bind<KT_Action::Draw_2DI_Textured_Polytriangle>(renderer,
                                                  &KD_Standard_Draw_2DI_Textured_Polytriangle);
  bind<KT_Action::Draw_DCI_Textured_Polytriangle>(renderer,
                                                  &KD_Standard_Draw_DCI_Textured_Polytriangle);
}

void bind_tiling_actions(Software_Z_Buffer&) {}

}  // namespace zbuffer
