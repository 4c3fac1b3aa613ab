// Reference model of the textured polytriangle actions.
#pragma once

#include "tests/differential/events.h"
#include "tests/differential/model_raster.h"

namespace model {

/// Light by colour and specular colour of a material and by the vector of a point.
using Light = std::array<float, 3>;
using Shade = Light (*)(KT_RGB32 color, const Light& specular_color, const KT_Vector&);

struct Texture {
  KT_Shared_Image image;
  std::uint32_t wrap_s = 0, wrap_t = 0;
  std::uint8_t standard_only = 0, modulate = 0;
};

/// One call of a textured polytriangle action.
struct Textured_Call {
  Strip_Points points;
  int count = 0;  ///< of the points, those that are drawn
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  int parameter_width = 1;
  const float* extra_floats = nullptr;
  const KT_Vector* vectors = nullptr;
  bool cut_out = false;  ///< a mapped renderer with alpha blending on
  Shade shade = nullptr;
  Light specular_color{};  ///< of a new basic material
};

KT_Action action_of(Layer);
// Events beside general routines: the first question for the texture, each question for light.
std::string texture_line();
std::string light_line(KT_RGB32 color, const Light& specular_color, const KT_Vector&);

/// Does to the images of `state` what the call does to those of a renderer in that state; gives
/// what passes to the host.
Events draw_textured(State& state, const KT_Rendition& rendition, const Texture& texture,
                     const Textured_Call& call);

}  // namespace model
