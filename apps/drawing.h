// How the faces of a picture are drawn, beside their colours.
#pragma once

#include <optional>
#include <string>

#include "apps/option_text.h"
#include "host/color.h"
#include "host/contour.h"

namespace kv {

struct Drawing {
  int cube_steps = 6;          // a channel, of the palette that mapped variants draw with
  std::optional<int> pattern;  // face pattern; without one faces are solid
  double opacity = 1;
  bool circle_clip = false;
  bool merge = false;  // overlapping faces are joined as inks are, on the background as paper
};

inline constexpr int last_face_pattern = 73;

// A regular cube of colours with `steps` a channel, 2 to 6.
KT_Palette cube_palette(int steps);

// The largest circle around the middle of a window.
KT_Contour_Set circle_in(const Size& window);

}  // namespace kv
