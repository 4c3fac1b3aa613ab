// A material and a texture that write down the calls of a module.
#pragma once

#include "tests/differential/model_textures.h"
#include "tests/differential/recorder.h"

namespace fuzz {

/// Of each material that the module makes for itself.
inline model::Light default_specular_color{};

/// Diffuse light in x, specular light in z, and how both change from channel to channel in y.
inline model::Light shade(KT_RGB32 color, const model::Light& specular_color, const KT_Vector& v) {
  const float channels[3] = {float(color.red), float(color.green), float(color.blue)};
  model::Light result;
  for (std::size_t k = 0; k < 3; ++k)
    result[k] = channels[k] / 255 * (v.x + static_cast<float>(k) * v.y) +
                specular_color[k] * (v.z - static_cast<float>(k) * v.y);
  return result;
}

class Watched_Material : public KT_Material_Object {
 public:
  KT_Texture_Source source;  ///< null: none
  bool asked = false;
  KT_Counted* clone() const override { return new Watched_Material(*this); }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    if (!std::exchange(asked, true)) events.push_back(model::texture_line());
    return result = source;
  }
  void shade(float result[3], const KT_Rendition& r, const KT_Vector& v, int, int, int, int,
             int) override {
    const model::Light specular{specular_color[0], specular_color[1], specular_color[2]};
    events.push_back(model::light_line(r->material->color, specular, v));
    std::copy_n(fuzz::shade(r->material->color, specular, v).begin(), 3, result);
  }
};

class Watched_Texture : public KT_Texture_Source_Data {
 public:
  KT_Shared_Image held;
  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override { return result = held; }
};

}  // namespace fuzz
