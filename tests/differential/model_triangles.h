// Reference model of the polytriangle actions: the road of a call and its pixels.
#pragma once

#include <algorithm>
#include <optional>

#include "tests/differential/model_pixels.h"

namespace model {

enum class Layer { p2d, dc, p2di, dci };

/// One call of a polytriangle action. The integer layers take `points`, the float ones `floats`.
struct Call {
  Kind kind{};
  Layer layer{};
  std::vector<KT_Point> floats;
  std::vector<KT_DCI_Point> points;
  std::vector<KT_RGB32> colors;
  bool single_color = false;
  int count() const { return static_cast<int>(std::max(floats.size(), points.size())); }
};

struct Outcome {
  bool edges = false;          ///< the strip is drawn as lines; the images are not modelled
  bool standard = false;       ///< the standard routine of `kind` in the call's layer draws
  bool through_table = false;  ///< the whole strip goes on through the action table
  Kind kind{};
  std::optional<KT_RGB32> flat_color;  ///< what a flat action hands on as its one colour
};

/// Does to the images of `state` what the call does to those of a renderer in that state.
Outcome draw(State& state, const KT_Rendition& rendition, const Call& call);

}  // namespace model
