#include "tests/textures/stage.h"

// These stand in front of the framework's operations of the same names.
KT_Basic_Material::KT_Basic_Material() : KT_Handle(new stage::Material) {}

#define COUNT_STANDARD(name, Point)                                                             \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int, const Point*,            \
                          const KT_RGB32*, const KT_Parameter*, int, const float* extra_floats, \
                          const KT_Vector* vectors) {                                           \
    ++stage::standard_calls;                                                                    \
    if (!extra_floats && !vectors) ++stage::standard_calls_bare;                                \
  }
COUNT_STANDARD(Draw_2D_Textured_Polytriangle, KT_Point)
COUNT_STANDARD(Draw_DC_Textured_Polytriangle, KT_Point)
COUNT_STANDARD(Draw_2DI_Textured_Polytriangle, KT_DCI_Point)
COUNT_STANDARD(Draw_DCI_Textured_Polytriangle, KT_DCI_Point)

namespace stage {
namespace {

Configuration configuration_of(Set set, KT_Int_XY size, KT_Int_XY origin) {
  constexpr Variant variants[] = {Variant::mapped_z, Variant::mapped_z, Variant::rgb_z,
                                  Variant::rgb_alpha_z};
  Configuration configuration;
  configuration.variant = variants[static_cast<int>(set)];
  configuration.size = size;
  configuration.origin = origin;
  return configuration;
}

}  // namespace

std::string name_of(Set set) {
  static const char* const names[] = {"Mapped_Z", "Mapped_Z cut-out", "RGB_Z", "RGB_Alpha_Z"};
  return names[static_cast<int>(set)];
}

Material::Material() {
  ++living;
  specular_color[0] = specular_color[1] = specular_color[2] = default_specular;
}

Material::Material(const Material& other) : KT_Material_Object(other), source(other.source) {
  ++living;
}

KT_Texture_Source& Material::texture(KT_Texture_Source& result, int, int, int) {
  ++texture_asked;
  return result = source;
}

void Material::shade(float result[3], const KT_Rendition& rendition, const KT_Vector& vector, int,
                     int, int, int, int) {
  asked.push_back({rendition->material->color, specular_color[0], vector});
  result[0] = result[1] = result[2] = light ? light(asked.back()) : 0;
}

Stage::Stage(Set set, KT_Int_XY size, KT_Int_XY origin)
    : Session(configuration_of(set, size, origin)) {
  if (set == Set::cut_out) {
    options().set_alpha_blending(true);
    establish();
  }
  texture->wrap_s = texture->wrap_t = 2;
  set_texture(1, 1, {0xFFFFFFFF});
  textured->source.reset(texture.get());
  material().basic_material.reset(textured.get());
  clear();
  Material::asked.clear();
  standard_calls = standard_calls_bare = 0;
}

void Stage::set_texture(int width, int height, const std::vector<std::uint32_t>& texels) {
  texture->held = KT_Shared_Image(width, height, KT_Image_Format::rgb32, width * 4, nullptr, false);
  for (int i = 0; i < width * height; ++i) {
    texture->held->row<std::uint32_t>(i / width)[i % width] = texels[static_cast<std::size_t>(i)];
  }
}

long Stage::draw(Layer layer, const Call& call) const {
  std::vector<KT_DCI_Point> points;
  std::vector<KT_Point> floats;
  std::vector<KT_RGB32> colors;
  std::vector<KT_Parameter> parameters;
  for (const Vertex& vertex : call.strip) {
    const KT_DCI_Point& p = vertex.point;
    points.push_back(p);
    floats.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
    colors.push_back(vertex.color);
    parameters.push_back({vertex.s, vertex.t, 77});
    for (int i = 1; i < call.parameter_width; ++i) parameters.push_back({-9, -9, -9});
  }
  const auto ask = [&]<KT_Action action>(const auto* at) {
    const float extra_floats[1] = {};
    actions().call<action>(rendition, static_cast<int>(points.size()), at,
                           call.with_colors ? colors.data() : nullptr, parameters.data(),
                           call.parameter_width, extra_floats,
                           call.vectors.empty() ? nullptr : call.vectors.data());
  };
  using enum KT_Action;
  const long before = heap::allocated();
  switch (layer) {
    case Layer::float_any:
      ask.operator()<Draw_2D_Textured_Polytriangle>(floats.data());
      break;
    case Layer::float_inside:
      ask.operator()<Draw_DC_Textured_Polytriangle>(floats.data());
      break;
    case Layer::int_any:
      ask.operator()<Draw_2DI_Textured_Polytriangle>(points.data());
      break;
    case Layer::int_inside:
      ask.operator()<Draw_DCI_Textured_Polytriangle>(points.data());
      break;
  }
  return heap::allocated() - before;
}

}  // namespace stage
