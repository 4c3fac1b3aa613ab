// Messages of counted items, as they lie in memory. The reader checks each count against the bytes
// that are left before it allocates.
#include "apps/load/wire.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace kv {
namespace {

enum class Kind : std::uint32_t { model = 0x4b4d, image = 0x4b49, refusal = 0x4b52 };

class Writer {
 public:
  void number(std::size_t value) {
    const auto small = static_cast<std::uint32_t>(value);
    if (small != value) throw std::length_error("a count does not fit the stream");
    all(std::span<const std::uint32_t>(&small, 1));
  }

  template <class Item>
  void all(std::span<const Item> items) {
    static_assert(std::is_trivially_copyable_v<Item>);
    const auto raw = std::as_bytes(items);
    bytes_.insert(bytes_.end(), raw.begin(), raw.end());
  }

  template <class Item>
  void counted(std::span<const Item> items) {
    number(items.size());
    all(items);
  }

  Bytes take() { return std::move(bytes_); }

 private:
  Bytes bytes_;
};

class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : rest_(bytes) {}

  std::uint32_t number() {
    std::uint32_t value = 0;
    std::memcpy(&value, part(sizeof value).data(), sizeof value);
    return value;
  }

  template <class Item>
  std::vector<Item> all(std::size_t count) {
    // Checked before anything is allocated, and by division, which cannot overflow.
    if (count > rest_.size() / sizeof(Item)) throw std::runtime_error("the answer is cut short");
    std::vector<Item> items(count);
    const auto raw = part(count * sizeof(Item));
    if (count > 0) std::memcpy(items.data(), raw.data(), raw.size());
    return items;
  }

  template <class Item>
  std::vector<Item> counted() {
    return all<Item>(number());
  }

  std::string text() {
    const std::vector<char> letters = counted<char>();
    return {letters.begin(), letters.end()};
  }

  bool at_end() const { return rest_.empty(); }

 private:
  std::span<const std::byte> part(std::size_t size) {
    if (size > rest_.size()) throw std::runtime_error("the answer is cut short");
    const auto taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
  }

  std::span<const std::byte> rest_;
};

Mesh read_mesh(Reader& reader) {
  Mesh mesh;
  mesh.material = reader.number();
  mesh.has_normals = reader.number() != 0;
  mesh.vertices = reader.counted<Vertex>();
  mesh.indices = reader.counted<std::uint32_t>();
  mesh.face_sizes = reader.counted<std::uint32_t>();
  return mesh;
}

Loose read_loose(Reader& reader) {
  Loose loose;
  loose.material = reader.number();
  loose.has_normals = reader.number() != 0;
  loose.vertices = reader.counted<Vertex>();
  loose.points = reader.counted<std::uint32_t>();
  loose.lines = reader.counted<std::uint32_t>();
  return loose;
}

Image read_image(Reader& reader) {
  Image image;
  image.width = reader.number();
  image.height = reader.number();
  if (image.width < 1 || image.height < 1) throw std::runtime_error("an image has no texels");
  image.texels = reader.all<Texel>(std::size_t{image.width} * image.height);
  return image;
}

Model read_model(Reader& reader) {
  Model model;
  model.materials = reader.counted<Material>();
  const std::uint32_t warnings = reader.number();
  const std::uint32_t textures = reader.number();
  const std::uint32_t meshes = reader.number();
  const std::uint32_t loose = reader.number();
  model.up_is_z = reader.number() != 0;
  for (std::uint32_t i = 0; i < warnings; ++i) model.warnings.push_back(reader.text());
  for (std::uint32_t i = 0; i < textures; ++i) {
    Texture& texture = model.textures.emplace_back();
    texture.image = read_image(reader);
    texture.sees_through = sees_through(texture.image);
  }
  for (std::uint32_t i = 0; i < meshes; ++i) model.meshes.push_back(read_mesh(reader));
  for (std::uint32_t i = 0; i < loose; ++i) model.loose.push_back(read_loose(reader));
  return model;
}

void write_kind(Writer& writer, Kind kind) {
  writer.number(static_cast<std::size_t>(kind));
}

}  // namespace

Bytes encode_refusal(std::string_view reason) {
  Writer writer;
  write_kind(writer, Kind::refusal);
  writer.counted(std::span<const char>(reason));
  return writer.take();
}

Bytes encode_head(const Model_Head& head) {
  Writer writer;
  write_kind(writer, Kind::model);
  writer.counted(std::span<const Material>(head.materials));
  writer.number(head.warnings.size());
  writer.number(head.texture_count);
  writer.number(head.mesh_count);
  writer.number(head.loose_count);
  writer.number(head.up_is_z ? 1 : 0);
  for (const std::string& warning : head.warnings) writer.counted(std::span<const char>(warning));
  return writer.take();
}

Bytes encode_image_head() {
  Writer writer;
  write_kind(writer, Kind::image);
  return writer.take();
}

Bytes encode_image(const Image& image) {
  Writer writer;
  writer.number(image.width);
  writer.number(image.height);
  writer.all(std::span<const Texel>(image.texels));
  return writer.take();
}

Bytes encode_mesh(const Mesh& mesh) {
  Writer writer;
  writer.number(mesh.material);
  writer.number(mesh.has_normals ? 1 : 0);
  writer.counted(std::span<const Vertex>(mesh.vertices));
  writer.counted(std::span<const std::uint32_t>(mesh.indices));
  writer.counted(std::span<const std::uint32_t>(mesh.face_sizes));
  return writer.take();
}

Bytes encode_loose(const Loose& loose) {
  Writer writer;
  writer.number(loose.material);
  writer.number(loose.has_normals ? 1 : 0);
  writer.counted(std::span<const Vertex>(loose.vertices));
  writer.counted(std::span<const std::uint32_t>(loose.points));
  writer.counted(std::span<const std::uint32_t>(loose.lines));
  return writer.take();
}

Loader_Answer decode_answer(std::span<const std::byte> bytes) {
  Reader reader(bytes);
  Loader_Answer answer;
  switch (static_cast<Kind>(reader.number())) {
    case Kind::model:
      answer.model = read_model(reader);
      break;
    case Kind::image:
      answer.image = read_image(reader);
      break;
    case Kind::refusal:
      answer.refusal = reader.text();
      if (answer.refusal.empty()) answer.refusal = "no reason given";
      break;
    default:
      throw std::runtime_error("the answer is of no known kind");
  }
  if (!reader.at_end()) throw std::runtime_error("the answer goes on after its end");
  return answer;
}

}  // namespace kv
