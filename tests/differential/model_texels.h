// Reference model, the scan of textured triangles: edges, spans, texels, stores.
#pragma once

#include "tests/differential/model_textures.h"

namespace model {

enum class Road { plain, modulated, lit };

struct Textured_Strip {
  int count = 0;
  const KT_DCI_Point* points = nullptr;
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  int parameter_width = 1;
  const KT_Vector* vectors = nullptr;

  Textured_Strip part(int first, int points_taken) const {
    return {points_taken,
            points + first,
            colors ? colors + first : nullptr,
            parameters + first * parameter_width,
            parameter_width,
            vectors ? vectors + first : nullptr};
  }
};

/// The scan routines of one road of one variant.
struct Texel_Routine {
  State& state;
  const KT_Rendition_Data& rendition;
  const Texture& texture;
  const Textured_Call& call;
  Variant variant{};
  Road road{};
  std::vector<Light_Asked>& light_asked;

  /// A strip inside the hard clip.
  void scan(const Textured_Strip& strip);
  /// One triangle, wherever it lies.
  void clipped_triangle(const Textured_Strip& strip);
};

}  // namespace model
