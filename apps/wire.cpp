#include "apps/wire.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace kv {
namespace {

enum class Kind : std::uint32_t { model = 0x4b4d, refusal = 0x4b52 };

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
  const std::uint32_t vertices = reader.number();
  const std::uint32_t indices = reader.number();
  mesh.vertices = reader.all<Vertex>(vertices);
  mesh.indices = reader.all<std::uint32_t>(indices);
  return mesh;
}

Model read_model(Reader& reader) {
  Model model;
  model.materials = reader.all<Material>(reader.number());
  const std::uint32_t meshes = reader.number();
  for (std::uint32_t i = 0; i < meshes; ++i) model.meshes.push_back(read_mesh(reader));
  return model;
}

}  // namespace

Bytes encode_refusal(std::string_view reason) {
  Writer writer;
  writer.number(static_cast<std::size_t>(Kind::refusal));
  writer.number(reason.size());
  writer.all(std::span<const char>(reason));
  return writer.take();
}

Bytes encode_head(const std::vector<Material>& materials, std::size_t mesh_count) {
  Writer writer;
  writer.number(static_cast<std::size_t>(Kind::model));
  writer.number(materials.size());
  writer.all(std::span<const Material>(materials));
  writer.number(mesh_count);
  return writer.take();
}

Bytes encode_mesh(const Mesh& mesh) {
  Writer writer;
  writer.number(mesh.material);
  writer.number(mesh.has_normals ? 1 : 0);
  writer.number(mesh.vertices.size());
  writer.number(mesh.indices.size());
  writer.all(std::span<const Vertex>(mesh.vertices));
  writer.all(std::span<const std::uint32_t>(mesh.indices));
  return writer.take();
}

Loader_Answer decode_answer(std::span<const std::byte> bytes) {
  Reader reader(bytes);
  Loader_Answer answer;
  switch (static_cast<Kind>(reader.number())) {
    case Kind::model:
      answer.model = read_model(reader);
      break;
    case Kind::refusal: {
      const std::vector<char> text = reader.all<char>(reader.number());
      answer.refusal.assign(text.begin(), text.end());
      if (answer.refusal.empty()) answer.refusal = "no reason given";
      break;
    }
    default:
      throw std::runtime_error("the answer is of no known kind");
  }
  if (!reader.at_end()) throw std::runtime_error("the answer goes on after its end");
  return answer;
}

}  // namespace kv
