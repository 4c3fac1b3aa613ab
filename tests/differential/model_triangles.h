// Reference model of the flat, colorized and Gouraud polytriangle actions.
#pragma once

#include "tests/differential/events.h"
#include "tests/differential/model_raster.h"

namespace model {

struct Strip_Call {
  Kind kind{};
  Strip_Points points;
  std::vector<KT_RGB32> colors;  // of a colorized or Gouraud strip
  bool single_color = false;
};

/// The action that draws such a strip, or a textured one.
KT_Action action_of(Kind, Layer);

/// Does to the images of `state` what the call does to those of a renderer in that state; gives
/// what passes to the host.
Events draw_strip(State& state, const KT_Rendition& rendition, const Strip_Call& call);

}  // namespace model
