// Reference model of the textured polytriangle actions: the road of a call and its pixels.
#pragma once

#include <algorithm>
#include <array>

#include "tests/differential/model_triangles.h"

namespace model {

struct Texture {
  KT_Shared_Image image;
  std::uint32_t wrap_s = 0, wrap_t = 0;
  std::uint8_t standard_only = 0, modulate = 0;
};

/// Light by colour and specular colour of a material and by the vector of a point.
using Light = std::array<float, 3>;
using Shade = Light (*)(KT_RGB32 color, const Light& specular_color, const KT_Vector&);

/// A question for light as the material gets it.
struct Light_Asked {
  KT_RGB32 color;
  Light specular_color{};
  KT_Vector vector;
};

/// One call of a textured polytriangle action. The integer layers take `points`, the float ones
/// `floats`.
struct Textured_Call {
  Layer layer{};
  int count = 0;
  std::vector<KT_Point> floats;
  std::vector<KT_DCI_Point> points;
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  int parameter_width = 1;
  const KT_Vector* vectors = nullptr;
  bool cut_out = false;  ///< a mapped renderer that was asked for alpha blending
  Shade shade = nullptr;
  Light specular_color{};  ///< of a new basic material
};

struct Textured_Outcome {
  enum { drawn, standard, edges } kind = drawn;
  bool asks_texture = false;         ///< of the material
  std::vector<KT_DCI_Point> points;  ///< of the call, whole
  std::vector<Light_Asked> light;    ///< in order
};

/// Does to the images of `state` what the call does to those of a renderer in that state.
Textured_Outcome draw(State& state, const KT_Rendition& rendition, const Texture& texture,
                      const Textured_Call& call);

}  // namespace model
