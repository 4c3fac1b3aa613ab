// Material objects: the framework's two defaults, and those that a host makes.
#include "host/material.h"

#include <algorithm>
#include <cmath>

#include "host/application.h"

namespace {

/// The 32nd power, by products alone, which round in the same way everywhere.
float shine_of(float diffuse) {
  double power = diffuse;
  for (int n = 0; n < 5; ++n) power *= power;
  return static_cast<float>(power);
}

/// What all materials have in common: no texture, and the light of a lamp beside the viewer, who
/// looks along z.
class Default_Material : public KT_Material_Object {
 public:
  Default_Material() { std::fill_n(specular_color, 3, 1.0F); }

  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    result.release();
    return result;
  }

  void shade(float result[3], const KT_Rendition& rendition, const KT_Vector& vector, int, int, int,
             int, int) override {
    KT_Vector normal = vector;
    normal.normalize();
    // With lamp and viewer in one place, half way between them is the same direction again. A
    // surface seen from behind is lit no less.
    const float diffuse = std::abs(normal.z);
    const float specular = shine_of(diffuse);
    const KT_RGB32 color = rendition->material->color;
    const std::uint8_t channels[3] = {color.red, color.green, color.blue};
    for (int n = 0; n < 3; ++n) {
      result[n] = static_cast<float>(channels[n]) / 255 * diffuse + specular_color[n] * specular;
    }
  }
};

class Basic_Material final : public Default_Material {
 public:
  KT_Counted* clone() const override { return new Basic_Material(*this); }

  KT_Point_Class classify_points(int, const KT_DCI_Point*) override {
    return {outline_width > 0 ? KT_Point_Class::outlined : 0};
  }
};

/// Takes the place of a material while its outline is drawn, so it must not have an outline itself.
class Basic_Textured_Material final : public Default_Material {
 public:
  KT_Counted* clone() const override { return new Basic_Textured_Material(*this); }

  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
};

class Image_Texture final : public KT_Texture_Source_Data {
 public:
  explicit Image_Texture(const KT_Shared_Image& image) : image_(image) {}
  KT_Counted* clone() const override { return new Image_Texture(*this); }

  KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) override {
    result = image_;
    return result;
  }

 private:
  KT_Shared_Image image_;
};

class Image_Material final : public Default_Material {
 public:
  explicit Image_Material(const KT_Texture_Source& texture) : texture_(texture) {}
  KT_Counted* clone() const override { return new Image_Material(*this); }

  KT_Point_Class classify_points(int, const KT_DCI_Point*) override { return {}; }
  KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) override {
    result = texture_;
    return result;
  }

 private:
  KT_Texture_Source texture_;
};

}  // namespace

KT_Texture_Source_Data::~KT_Texture_Source_Data() = default;

KT_Material_Object::~KT_Material_Object() = default;

KT_Basic_Material::KT_Basic_Material() : KT_Handle(new Basic_Material) {}

KT_Basic_Textured_Material::KT_Basic_Textured_Material() : KT_Handle(new Basic_Textured_Material) {}

KT_Handle<KT_Material_Object> KD_Textured_Material(const KT_Shared_Image& image,
                                                   std::uint32_t wrap_s, std::uint32_t wrap_t,
                                                   bool modulate, bool standard_only) {
  KT_Texture_Source texture(new Image_Texture(image));
  texture->wrap_s = wrap_s;
  texture->wrap_t = wrap_t;
  texture->modulate = modulate;
  texture->standard_only = standard_only;
  return KT_Handle<KT_Material_Object>(new Image_Material(texture));
}

KT_Handle<KT_Material_Object> KD_Outlined_Material(std::int32_t width,
                                                   const KT_RGB32& outline_color,
                                                   const KT_RGB32& core_color) {
  KT_Handle<KT_Material_Object> material(new Basic_Material);
  material->outline_width = width;
  material->outline_color = outline_color;
  material->core_color = core_color;
  return material;
}
