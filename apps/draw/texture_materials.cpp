// Textures in the framework's form: rows from the top down, blue before green before red.
#include "apps/draw/texture_materials.h"

#include "apps/load/image_scale.h"
#include "apps/scene/texture_places.h"

namespace kv {
namespace {

std::uint32_t framework_wrap(Wrap wrap) {
  switch (wrap) {
    case Wrap::clamp:
      return KT_Texture_Wrap::clamp;
    case Wrap::mirror:
      return KT_Texture_Wrap::mirror;
    default:
      return KT_Texture_Wrap::tile;
  }
}

// Smooth texels are mixed by the general routines, which do not need more of them.
KT_Shared_Image drawn_image(const Image& image, Texture_Filter filter) {
  const std::uint32_t width = drawn_side(image.width), height = drawn_side(image.height);
  if (filter == Texture_Filter::linear || (width == image.width && height == image.height))
    return shared_image(image);
  return shared_image(in_blocks(image, width, height));
}

Image cut_out(Image image) {
  for (Texel& texel : image.texels) texel.alpha = texel.alpha < 128 ? 0 : 255;
  return image;
}

}  // namespace

KT_Shared_Image shared_image(const Image& image) {
  const auto width = static_cast<std::int32_t>(image.width);
  const auto height = static_cast<std::int32_t>(image.height);
  std::vector<KT_RGB32> pixels;
  pixels.reserve(image.texels.size());
  for (const Texel& texel : image.texels)
    pixels.push_back({texel.blue, texel.green, texel.red, texel.alpha});
  return {width, height, KT_Image_Format::rgb32, 4 * width, pixels.data(), false};
}

std::vector<KT_Handle<KT_Material_Object>> texture_materials(const Model& model,
                                                             Texture_Filter filter, bool blended) {
  constexpr bool modulate = true;
  std::vector<bool> is_cut(model.textures.size(), false);
  for (const Material& material : model.materials)
    if (!blended && material.layer != 0 && material.texture != no_texture)
      is_cut[material.texture] = true;
  std::vector<KT_Shared_Image> images;
  for (std::size_t i = 0; i < model.textures.size(); ++i)
    images.push_back(drawn_image(
        is_cut[i] ? cut_out(model.textures[i].image) : model.textures[i].image, filter));
  std::vector<KT_Handle<KT_Material_Object>> objects;
  for (const Material& material : model.materials) {
    KT_Handle<KT_Material_Object>& object = objects.emplace_back();
    if (material.texture == no_texture) continue;
    object = KD_Textured_Material(images[material.texture], framework_wrap(material.wrap_s),
                                  framework_wrap(material.wrap_t), modulate,
                                  filter == Texture_Filter::linear);
  }
  return objects;
}

}  // namespace kv
