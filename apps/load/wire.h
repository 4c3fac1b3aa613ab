// The byte stream from the loader process to its parent. Both are the same program, so numbers
// travel as they lie in memory; but the sender may have been damaged by what it read, so the reader
// trusts no length and no count.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/load/model.h"

namespace kv {

using Bytes = std::vector<std::byte>;

Bytes encode_refusal(std::string_view reason);
// A model travels as its head and then each of its textures, meshes and loose parts.
struct Model_Head {
  std::vector<Material> materials;
  std::vector<std::string> warnings;
  std::size_t texture_count = 0, mesh_count = 0, loose_count = 0;
  bool up_is_z = false;
};
Bytes encode_head(const Model_Head& head);
Bytes encode_image(const Image& image);
Bytes encode_mesh(const Mesh& mesh);
Bytes encode_loose(const Loose& loose);
// An image alone is an answer of its own.
Bytes encode_image_head();

struct Loader_Answer {
  std::string refusal;  // why there is no model or image; empty when there is one
  Model model;
  Image image;
};

// Throws std::runtime_error when the bytes are not an answer. The contents are not checked here.
Loader_Answer decode_answer(std::span<const std::byte> bytes);

}  // namespace kv
