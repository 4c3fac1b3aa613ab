// Filling of device rectangles.
#include <algorithm>

#include "host/renderer.h"
#include "host/standard.h"
#include "stand_in/standard/undrawn.h"

namespace {

KT_Int_Rectangle intersection(const KT_Int_Rectangle& a, const KT_Int_Rectangle& b) {
  return {std::max(a.left, b.left), std::min(a.right, b.right), std::max(a.bottom, b.bottom),
          std::min(a.top, b.top)};
}

/// A rendition that fills: without depth, without edges in place of faces, and clipped to `area`.
KT_Rendition filling(const KT_Rendition& source, const KT_Int_Rectangle& area) {
  KT_Rendition rendition = source;
  rendition.set_hard_clip_unrestricted(area, false);
  rendition.edit(&KT_Rendition_Data::display_context).depth_enabled = 0;
  KT_Advanced_Options options = source->misc_attributes->advanced_options;
  options.bits &= ~KT_Advanced_Options::edge_bit;
  rendition.set_advanced_options(options, false);
  return rendition;
}

}  // namespace

void KD_Span_DC_Rectangle(KT_Renderer_Data* renderer, const KT_Rendition& rendition, int left,
                          int right, int bottom, int top) {
  const KT_Int_Rectangle area =
      intersection({left, right, bottom, top}, rendition->display_context->hard_clip);
  if (area.left > area.right || area.bottom > area.top) return;
  if (renderer->actions[KT_Action::Draw_2DI_Polytriangle].valid == 0) {
    stand_in::report_undrawn("KD_Span_DC_Rectangle");
    return;
  }
  // Triangles leave out their top row and right column; the clip cuts off what goes beyond.
  const int beyond_right = std::min(area.right, INT32_MAX - 1) + 1;
  const int beyond_top = std::min(area.top, INT32_MAX - 1) + 1;
  const KT_DCI_Point corners[4] = {{area.left, area.bottom, 0},
                                   {beyond_right, area.bottom, 0},
                                   {area.left, beyond_top, 0},
                                   {beyond_right, beyond_top, 0}};
  renderer->actions.call<KT_Action::Draw_2DI_Polytriangle>(filling(rendition, area), 4, corners);
}
