// Each material of the file is up to three of the model: with its texture, without it for meshes
// that have no coordinates, and a layer of the light that it gives off.
#include "apps/load/material_importer.h"

#include <assimp/GltfMaterial.h>

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::uint32_t no_material = ~std::uint32_t{0};

float to_display(float linear) {
  const float x = std::clamp(linear, 0.0f, 1.0f);
  return x <= 0.0031308f ? 12.92f * x : 1.055f * std::pow(x, 1 / 2.4f) - 0.055f;
}

float greatest(const Color& color) {
  return std::max({color.red, color.green, color.blue});
}

Color diffuse_of(const aiMaterial& source, Format format) {
  aiString name;
  // What has no material is white in every format.
  if (format == Format::obj && source.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS &&
      name == aiString(AI_DEFAULT_MATERIAL_NAME))
    return {};
  aiColor4D diffuse(0.6f, 0.6f, 0.6f, 1.0f);
  if (source.Get(AI_MATKEY_BASE_COLOR, diffuse) != aiReturn_SUCCESS) {
    source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
    float opacity = 1;
    if (source.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS) diffuse.a = opacity;
  }
  return color_of(diffuse, format);
}

Color emission_of(const aiMaterial& source, Format format) {
  aiColor3D emission(0, 0, 0);
  source.Get(AI_MATKEY_COLOR_EMISSIVE, emission);
  return color_of({emission.r, emission.g, emission.b, 1}, format);
}

// In glTF alpha counts as the material says.
float opacity_of(float alpha, const Alpha_Use& use) {
  using Kind = Alpha_Use::Kind;
  if (use.kind == Kind::kept) return alpha;
  return use.kind == Kind::opaque || alpha >= use.least_shown ? 1.0f : 0.0f;
}

bool is_unlit(const aiMaterial& source, Format format) {
  int model = 0;
  return format == Format::gltf && source.Get(AI_MATKEY_SHADING_MODEL, model) == aiReturn_SUCCESS &&
         model == aiShadingMode_Unlit;
}

// Blended over a surface, a colour with its greatest channel as alpha adds to dark parts and
// does not go beyond full light in bright ones.
Color as_layer(const Color& light) {
  const float most = greatest(light);
  return {light.red / most, light.green / most, light.blue / most, most};
}

}  // namespace

Color color_of(const aiColor4D& color, Format format) {
  if (format != Format::gltf) return {color.r, color.g, color.b, color.a};
  return {to_display(color.r), to_display(color.g), to_display(color.b), color.a};
}

Material_Importer::Material_Importer(const aiScene& scene, Format format,
                                     Texture_Importer* textures)
    : format_(format) {
  for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
    const aiMaterial& file_material = *scene.mMaterials[i];
    const Alpha_Use alpha = alpha_use_of(file_material, format == Format::gltf);
    Material material;
    material.diffuse = diffuse_of(file_material, format);
    material.unlit = is_unlit(file_material, format) ? 1 : 0;
    Material plain = material;
    plain.diffuse.alpha = opacity_of(plain.diffuse.alpha, alpha);
    plain.emission = emission_of(file_material, format);
    Source& source = sources_.emplace_back();
    if (textures) source.mapping = textures->add_texture(material, file_material);
    if (alpha.kind != Alpha_Use::Kind::kept) material.diffuse.alpha = 1;
    source.layer = layer_for(file_material, source.layer_mapping, textures);
    if (source.layer != no_material && list_[source.layer].texture != no_texture)
      plain.emission = Material{}.emission;
    source.textured = add(material);
    source.plain = add(plain);
    source.vertex_alpha = alpha.kind == Alpha_Use::Kind::kept;
  }
  white_ = add({});
}

std::uint32_t Material_Importer::add(const Material& material) {
  list_.push_back(material);
  return static_cast<std::uint32_t>(list_.size() - 1);
}

std::uint32_t Material_Importer::layer_for(const aiMaterial& source, Texture_Mapping& mapping,
                                           Texture_Importer* textures) {
  if (!textures) return no_material;
  Color light = emission_of(source, format_);
  Material layer;
  layer.layer = layer.unlit = 1;
  mapping = textures->add_emission(layer, source);
  // Without a word about the colour it is that of the texture.
  if (layer.texture != no_texture && format_ != Format::gltf && greatest(light) <= 0) light = {};
  if (greatest(light) <= 0) return no_material;
  layer.diffuse = as_layer(light);
  return add(layer);
}

bool Material_Importer::has_texture(const aiMesh& mesh) const {
  if (mesh.mMaterialIndex >= sources_.size()) return false;
  const Source& source = sources_[mesh.mMaterialIndex];
  return list_[source.textured].texture != no_texture &&
         mesh.HasTextureCoords(source.mapping.channel);
}

Look Material_Importer::look_of(const aiMesh& mesh) const {
  if (mesh.mMaterialIndex >= sources_.size()) return {white_};
  const Source& source = sources_[mesh.mMaterialIndex];
  if (has_texture(mesh)) return {source.textured, &source.mapping, source.vertex_alpha};
  return plain_look_of(mesh);
}

Look Material_Importer::plain_look_of(const aiMesh& mesh) const {
  if (mesh.mMaterialIndex >= sources_.size()) return {white_};
  const Source& source = sources_[mesh.mMaterialIndex];
  // Outside glTF the colours of vertices replace the material's.
  if (mesh.HasVertexColors(0) && format_ != Format::gltf) return {white_};
  return {source.plain, nullptr, source.vertex_alpha};
}

std::optional<Look> Material_Importer::layer_of(const aiMesh& mesh) const {
  if (mesh.mMaterialIndex >= sources_.size()) return std::nullopt;
  const Source& source = sources_[mesh.mMaterialIndex];
  if (source.layer == no_material) return std::nullopt;
  if (list_[source.layer].texture == no_texture) {
    // The light of a plain material is part of its colour.
    if (!has_texture(mesh)) return std::nullopt;
    return Look{source.layer};
  }
  if (!mesh.HasTextureCoords(source.layer_mapping.channel)) return std::nullopt;
  return Look{source.layer, &source.layer_mapping};
}

}  // namespace kv
