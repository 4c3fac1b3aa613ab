// Textures as files and glTF have them become images that can be drawn: their sides powers of two,
// their alpha as the material means it. Each image that cannot be had becomes a checker.
#include "apps/load/texture_importer.h"

#include <assimp/GltfMaterial.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <new>
#include <stdexcept>

#include "apps/load/image_codec.h"
#include "apps/load/image_scale.h"
#include "apps/load/texture_files.h"

namespace kv {
namespace {

constexpr std::array texture_types = {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE};

Wrap wrap_of(aiTextureMapMode mode) {
  switch (mode) {
    case aiTextureMapMode_Clamp:
    case aiTextureMapMode_Decal:
      return Wrap::clamp;
    case aiTextureMapMode_Mirror:
      return Wrap::mirror;
    default:
      return Wrap::repeat;
  }
}

std::vector<std::byte> content_of(const File& file) {
  std::vector<std::byte> content;
  std::array<std::byte, std::size_t{1} << 16> part;
  while (file) {
    const std::size_t got = std::fread(part.data(), 1, part.size(), file.get());
    content.insert(content.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(got));
    if (got < part.size()) break;
  }
  if (!file || std::ferror(file.get())) throw std::runtime_error("cannot be read");
  return content;
}

Image embedded_image(const aiTexture& source) {
  // A file of `mWidth` bytes, or texels.
  if (source.mHeight == 0)
    return decode_image({reinterpret_cast<const std::byte*>(source.pcData), source.mWidth},
                        source.CheckFormat("tga"));
  if (source.mWidth == 0) throw std::runtime_error("has no texels");
  Image image(source.mWidth, source.mHeight);
  for (std::size_t i = 0; i < image.texels.size(); ++i) {
    const aiTexel& texel = source.pcData[i];
    image.texels[i] = {texel.r, texel.g, texel.b, texel.a};
  }
  return image;
}

// The library keeps a transform of glTF, which turns around the upper left corner with t running
// down, in terms of a turn around the middle with t running up; its own way of applying that shifts
// turned and scaled textures. Here it is led back to what the file said.
Texture_Mapping mapping_of(const aiUVTransform& kept) {
  const double width = static_cast<double>(kept.mScaling.x);
  const double height = static_cast<double>(kept.mScaling.y);
  const double turn = -static_cast<double>(kept.mRotation);
  const double c = std::cos(turn), sine = std::sin(turn);
  const double across = static_cast<double>(kept.mTranslation.x) - width / 2 * (1 - c + sine);
  const double down =
      height / 2 * (sine + c - 1) + 1 - height - static_cast<double>(kept.mTranslation.y);
  // The file says that (s, 1 - t) is scaled, turned and then moved by (across, down).
  Texture_Mapping mapping;
  mapping.s = {c * width, -sine * height, across + sine * height};
  mapping.t = {sine * width, c * height, 1 - down - c * height};
  return mapping;
}

std::uint32_t texture_side(std::uint32_t side) {
  return std::min(std::bit_ceil(side), largest_texture_side);
}

// Some writers leave the alpha of a texture empty.
bool shows_nothing(const Image& image) {
  return std::all_of(image.texels.begin(), image.texels.end(),
                     [](const Texel& texel) { return texel.alpha == 0; });
}

void set_alpha(Image& image, auto alpha_of) {
  for (Texel& texel : image.texels) texel.alpha = alpha_of(texel.alpha);
}

// The alpha of an opacity map, or its brightness when it has none.
void take_opacity(Image& image, const Image& opacity) {
  const bool by_alpha = sees_through(opacity);
  const Image fitted = resized(opacity, image.width, image.height);
  for (std::size_t i = 0; i < image.texels.size(); ++i) {
    const Texel& texel = fitted.texels[i];
    image.texels[i].alpha =
        by_alpha ? texel.alpha
                 : static_cast<std::uint8_t>((texel.red + texel.green + texel.blue) / 3);
  }
}

// Each texel in its full colour, and as opaque as it is bright.
void make_light(Image& image) {
  for (Texel& texel : image.texels) {
    const int most = std::max({texel.red, texel.green, texel.blue});
    const auto full = [most](std::uint8_t channel) {
      return static_cast<std::uint8_t>(most == 0 ? 0 : channel * 255 / most);
    };
    texel = {full(texel.red), full(texel.green), full(texel.blue), static_cast<std::uint8_t>(most)};
  }
}

}  // namespace

Image checker_image() {
  constexpr std::uint32_t side = 64, cell = 8;
  Image image(side, side);
  for (std::uint32_t y = 0; y < side; ++y)
    for (std::uint32_t x = 0; x < side; ++x)
      image.texels[y * side + x] =
          (x / cell + y / cell) % 2 ? Texel{255, 0, 255, 255} : Texel{40, 40, 40, 255};
  return image;
}

Texture_Place Texture_Mapping::place(const aiVector3D& coordinates) const {
  const auto along = [&](const std::array<double, 3>& row) {
    return static_cast<float>(row[0] * static_cast<double>(coordinates.x) +
                              row[1] * static_cast<double>(coordinates.y) + row[2]);
  };
  return {along(s), along(t)};
}

Alpha_Use alpha_use_of(const aiMaterial& source, bool is_gltf) {
  using Kind = Alpha_Use::Kind;
  if (!is_gltf) return {Kind::kept};
  aiString mode;
  source.Get(AI_MATKEY_GLTF_ALPHAMODE, mode);
  if (mode == aiString("BLEND")) return {Kind::kept};
  if (mode != aiString("MASK")) return {Kind::opaque};
  float least_shown = 0.5f;
  source.Get(AI_MATKEY_GLTF_ALPHACUTOFF, least_shown);
  return {Kind::cut, least_shown};
}

Texture_Importer::Texture_Importer(const aiScene& scene, const Model_Folder& folder, bool is_gltf,
                                   Mtl_Maps maps)
    : scene_(scene), folder_(folder), is_gltf_(is_gltf), maps_(std::move(maps)) {}

Texture_Importer::Named Texture_Importer::find(const aiMaterial& source, aiTextureType type) const {
  aiString name;
  Named found;
  std::array modes = {aiTextureMapMode_Wrap, aiTextureMapMode_Wrap};
  if (source.GetTexture(type, 0, &name, nullptr, &found.mapping.channel, nullptr, nullptr,
                        modes.data()) == aiReturn_SUCCESS)
    found.name = name.C_Str();
  found.wrap_s = wrap_of(modes[0]);
  found.wrap_t = wrap_of(modes[1]);
  aiUVTransform transform;
  if (is_gltf_ && source.Get(AI_MATKEY_UVTRANSFORM(type, 0), transform) == aiReturn_SUCCESS) {
    const unsigned channel = found.mapping.channel;
    found.mapping = mapping_of(transform);
    found.mapping.channel = channel;
  }
  source.Get(AI_MATKEY_NAME, name);
  if (const auto map = maps_.find({name.C_Str(), type}); map != maps_.end()) {
    const Mtl_Map& moved = map->second;
    found.name = moved.file;
    found.mapping.s = {moved.scale[0], 0, moved.offset[0]};
    found.mapping.t = {0, moved.scale[1], moved.offset[1]};
  }
  return found;
}

Texture_Mapping Texture_Importer::set(Material& material, const Named& found, const Use& use) {
  material.texture = index_of(found.name, use);
  material.wrap_s = found.wrap_s;
  material.wrap_t = found.wrap_t;
  return found.mapping;
}

Texture_Mapping Texture_Importer::add_texture(Material& material, const aiMaterial& source) {
  Use use{alpha_use_of(source, is_gltf_)};
  // Texels are cut by their own alpha and the material's.
  if (use.alpha.kind == Alpha_Use::Kind::cut && material.diffuse.alpha > 0)
    use.alpha.least_shown /= material.diffuse.alpha;
  const Named opacity = is_gltf_ ? Named{} : find(source, aiTextureType_OPACITY);
  use.opacity = opacity.name;
  for (const aiTextureType type : texture_types) {
    const Named found = find(source, type);
    if (found.name.empty()) continue;
    // Black would hide the texture; in such files it means that the texture alone counts.
    Color& diffuse = material.diffuse;
    if (diffuse.red + diffuse.green + diffuse.blue <= 0) diffuse = {1, 1, 1, diffuse.alpha};
    return set(material, found, use);
  }
  if (opacity.name.empty()) return {};
  Named holes = opacity;
  holes.name.clear();  // white, with that opacity
  return set(material, holes, use);
}

Texture_Mapping Texture_Importer::add_emission(Material& layer, const aiMaterial& source) {
  const Named found = find(source, aiTextureType_EMISSIVE);
  if (found.name.empty()) return {};
  Use use;
  use.as_light = true;
  return set(layer, found, use);
}

std::string Texture_Importer::Use::text() const {
  return std::to_string(static_cast<int>(alpha.kind)) + " " + std::to_string(alpha.least_shown) +
         (as_light ? " light " : " ") + std::to_string(opacity.size()) + " " + opacity + " ";
}

std::uint32_t Texture_Importer::index_of(const std::string& name, const Use& use) {
  // One file may be a texture of its own for each use; it is missing only once.
  const auto [entry, is_new] = known_.try_emplace(use.text() + name, checker_);
  if (!is_new) return entry->second;
  const char* const instead = "a checker stands in its place";
  try {
    Image image = prepared(image_of(name, use), use);
    if (texels_ + image.texels.size() > most_texels)
      throw std::runtime_error("leaves too little memory");
    texels_ += image.texels.size();
    images_.push_back(std::move(image));
    entry->second = static_cast<std::uint32_t>(images_.size() - 1);
  } catch (const std::bad_alloc&) {
    warn(name, "needs too much memory", instead);
    entry->second = checker_index();
  } catch (const std::exception& error) {
    warn(name, error.what(), instead);
    entry->second = checker_index();
  }
  return entry->second;
}

std::uint32_t Texture_Importer::checker_index() {
  if (checker_ == no_texture) {
    images_.push_back(checker_image());
    checker_ = static_cast<std::uint32_t>(images_.size() - 1);
  }
  return checker_;
}

Image Texture_Importer::read(const std::string& name) const {
  if (const aiTexture* embedded = scene_.GetEmbeddedTexture(name.c_str()))
    return embedded_image(*embedded);
  const Reference found = find_texture(folder_, name);
  if (!found.readable()) throw std::runtime_error(words_of(found.state));
  return decode_image(content_of(folder_.open(found)), is_named_tga(found.path.string()));
}

Image Texture_Importer::image_of(const std::string& name, const Use& use) {
  Image image;
  if (!name.empty()) image = read(name);
  if (use.opacity.empty()) return image;
  try {
    const Image opacity = read(use.opacity);
    if (name.empty()) image = Image(opacity.width, opacity.height);
    if (name.empty())
      std::fill(image.texels.begin(), image.texels.end(), Texel{255, 255, 255, 255});
    take_opacity(image, opacity);
  } catch (const std::runtime_error& error) {
    warn(use.opacity, error.what(), "its material is drawn without it");
    if (name.empty()) image = Image(1, 1), image.texels[0] = {255, 255, 255, 255};
  }
  return image;
}

Image Texture_Importer::prepared(Image image, const Use& use) const {
  using Kind = Alpha_Use::Kind;
  const Alpha_Use& alpha = use.alpha;
  if (alpha.kind == Kind::opaque || shows_nothing(image))
    set_alpha(image, [](std::uint8_t) { return std::uint8_t{255}; });
  if (use.as_light) make_light(image);
  image = resized(image, texture_side(image.width), texture_side(image.height));
  if (alpha.kind == Kind::cut)
    set_alpha(image, [&](std::uint8_t byte) {
      return static_cast<std::uint8_t>(byte / 255.0f >= alpha.least_shown ? 255 : 0);
    });
  return image;
}

void Texture_Importer::warn(const std::string& name, const std::string& what,
                            const std::string& instead) {
  const std::string shown =
      name.starts_with('*') ? "embedded texture " + name.substr(1) : "texture '" + name + "'";
  const std::string warning = shown + " " + what + "; " + instead;
  if (std::find(warnings_.begin(), warnings_.end(), warning) == warnings_.end())
    warnings_.push_back(warning);
}

}  // namespace kv
