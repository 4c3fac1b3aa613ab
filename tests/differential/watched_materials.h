// Materials and a texture that write down what a module asks of them.
#pragma once

#include <algorithm>
#include <vector>

#include "host/framework.h"
#include "tests/differential/model_textures.h"

namespace fuzz {

/// A call that reached one of the general routines.
struct Standard_Call {
  KT_Action action{};
  int count = 0;
  const void* points = nullptr;
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  int parameter_width = 0;
  const float* extra_floats = nullptr;
  const KT_Vector* vectors = nullptr;
  bool operator==(const Standard_Call&) const = default;
};

/// What the module did besides drawing.
struct Witness {
  std::vector<Standard_Call> standard;
  std::vector<std::vector<KT_DCI_Point>> polylines;
  std::vector<model::Light_Asked> light;
  int texture_asked = 0;
  bool wrong_arguments = false;    // of a question to a material or a texture
  bool strange_rendition = false;  // that light was asked under
};
inline Witness witness;

/// What the primitive is drawn with.
inline const KT_Rendition* drawn_rendition = nullptr;
/// Of each material that the module makes.
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

/// A material that the module makes for itself.
class Lamp : public KT_Material_Object {
 public:
  static inline int living = 0;
  Lamp() {
    ++living;
    std::copy_n(default_specular_color.begin(), 3, specular_color);
  }
  Lamp(const Lamp& other) : KT_Material_Object(other) { ++living; }
  ~Lamp() override { --living; }
  KT_Counted* clone() const override { return new Lamp(*this); }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    result.release();
    return result;
  }
  void shade(float result[3], const KT_Rendition& r, const KT_Vector& v, int a, int b, int c, int d,
             int e) override {
    witness.wrong_arguments |= a != 0 || b != 0 || c != 0 || d != 1 || e != 0;
    const KT_Rendition_Data& before = **drawn_rendition;
    const KT_Material& m = *r->material;
    witness.strange_rendition |= m.basic_material.get() != this ||
                                 m.textured_material.get() != this ||
                                 m.contrast_color != before.material->contrast_color ||
                                 m.lighting != before.material->lighting || r.get() == &before ||
                                 r->misc_attributes.get() != before.misc_attributes.get() ||
                                 r->display_context.get() != before.display_context.get();
    const model::Light specular{specular_color[0], specular_color[1], specular_color[2]};
    witness.light.push_back({m.color, specular, v});
    const model::Light light = fuzz::shade(m.color, specular, v);
    std::copy_n(light.begin(), 3, result);
  }
};

class Watched_Texture : public KT_Texture_Source_Data {
 public:
  KT_Shared_Image held;
  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int a, int b, int c) override {
    witness.wrong_arguments |= a != 0 || b != 0 || c != 0;
    result = held;
    return result;
  }
};

/// The material of the primitive: it has a texture and no light of its own.
class Textured_Material : public KT_Material_Object {
 public:
  KT_Texture_Source source;
  KT_Counted* clone() const override { return nullptr; }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int a, int b, int c) override {
    ++witness.texture_asked;
    witness.wrong_arguments |= a != 0 || b != 0 || c != 0;
    result = source;
    return result;
  }
  void shade(float*, const KT_Rendition&, const KT_Vector&, int, int, int, int, int) override {
    witness.strange_rendition = true;
  }
};

}  // namespace fuzz
