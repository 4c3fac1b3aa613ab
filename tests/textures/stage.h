// A session with a textured material, and calls of the four textured actions.
#pragma once

#include <functional>

#include "tests/support/session.h"

namespace stage {

using namespace support;

/// The four sets of routines.
enum class Set { mapped_z, cut_out, rgb_z, rgb_alpha_z };
inline constexpr Set all_sets[] = {Set::mapped_z, Set::cut_out, Set::rgb_z, Set::rgb_alpha_z};
std::string name_of(Set set);

/// What a material was asked for light with.
struct Light_Asked {
  KT_RGB32 color;
  float specular_color;  ///< red alone
  KT_Vector vector;
};

class Texture : public KT_Texture_Source_Data {
 public:
  KT_Shared_Image held;

  KT_Counted* clone() const override { return nullptr; }
  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override { return result = held; }
};

/// A material with a texture and, as the module makes it, a light.
class Material : public KT_Material_Object {
 public:
  static inline int living = 0;
  static inline float default_specular = 0;
  static inline std::vector<Light_Asked> asked;
  /// What `shade` answers from the colour, the specular colour and the vector.
  static inline std::function<float(const Light_Asked&)> light;

  KT_Texture_Source source;
  int texture_asked = 0;

  Material();
  Material(const Material& other);
  ~Material() override { --living; }
  KT_Counted* clone() const override { return new Material(*this); }
  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override;
  void shade(float result[3], const KT_Rendition& rendition, const KT_Vector& vector, int, int, int,
             int, int) override;
};

/// Calls of the general textured routines and how many of them had no floats and vectors.
inline int standard_calls = 0;
inline int standard_calls_bare = 0;

struct Vertex {
  KT_DCI_Point point;
  float s = 0, t = 0;
  KT_RGB32 color{255, 255, 255, 255};
};

struct Call {
  std::vector<Vertex> strip;
  int parameter_width = 1;
  bool with_colors = true;
  std::vector<KT_Vector> vectors{};  ///< empty: none are given
};

class Stage : public Session {
 public:
  KT_Handle<Texture> texture{new Texture};
  KT_Handle<Material> textured{new Material};

  explicit Stage(Set set, KT_Int_XY size = {12, 12}, KT_Int_XY origin = {});
  ~Stage() { Material::light = nullptr; }

  /// A texture of that size, the lowest line first in `texels`.
  void set_texture(int width, int height, const std::vector<std::uint32_t>& texels);
  /// Draws by the action of that layer; returns what the call allocated.
  long draw(Layer layer, const Call& call) const;
};

}  // namespace stage
