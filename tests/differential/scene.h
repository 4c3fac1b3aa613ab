// A random call with everything that it depends on, all of it from one seed.
#pragma once

#include <random>
#include <string>

#include "tests/differential/model_triangles.h"

namespace fuzz {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  /// Uniform over `low` to `high`, both included.
  int range(int low, int high) {
    const auto count = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(engine_() % count));
  }
  /// True once in `n` times.
  bool once_in(int n) { return range(1, n) == 1; }
  template <class Value>
  Value pick(std::initializer_list<Value> values) {
    return values.begin()[range(0, static_cast<int>(values.size()) - 1)];
  }

 private:
  std::mt19937_64 engine_;
};

struct Scene {
  std::uint64_t seed = 0;
  model::Variant variant{};
  KT_Int_XY window_origin, size;
  bool local = false, use_mask = false, force_merge = false;
  int color_padding = 0, depth_padding = 0;  ///< bytes behind the pixels of a row
  int merge_key[3] = {255, 255, 255};
  unsigned zbuffer_test = 2;
  std::uint8_t zbuffer_write = 1;
  KT_Palette palette;
  KT_User_Pattern pattern;
  std::vector<std::uint8_t> pattern_bytes;
  KT_Rendition rendition;
  model::Call call;

  explicit Scene(std::uint64_t seed);
  Scene(const Scene&) = delete;

  KT_Int_XY origin() const { return local ? KT_Int_XY{} : window_origin; }
  /// Overwrites an image with what the call shall meet, padding included.
  void fill(const KT_Shared_Image& image) const;
  std::string action() const;
  std::string variant_name() const;
  /// The features that the call makes use of, each followed by a comma.
  std::string features() const;
  std::string describe() const;
};

}  // namespace fuzz
