// The hatches as formulas over a cell of 16 by 16, from which their bits are made at compile time.
#include "stand_in/standard/hatches.h"

#include <array>
#include <cstdlib>

namespace stand_in {
namespace {

constexpr int size = 16;

/// Whether a cell is drawn, by column and row from the bottom left one.
using Is_Drawn = bool (*)(int x, int y);

constexpr int from_centre(int v) {
  return v < size / 2 ? size / 2 - 1 - v : v - size / 2;
}

constexpr Is_Drawn hatches[] = {
    [](int, int y) { return y % 8 < 2; },
    [](int x, int) { return x % 8 < 2; },
    [](int x, int y) { return (x - y + size) % size < 2; },
    [](int x, int y) { return (x + y) % size < 2; },
    [](int x, int y) { return x == 0 || y == 0; },
    [](int x, int y) { return (x - y + size) % size == 0 || (x + y) % size == 0; },
    [](int x, int y) { return (x - y + size) % size == 0 || (x - y + size) % size == 3; },
    [](int x, int y) { return y % 8 == 0 && (x + y) % size < 10; },
    [](int x, int y) { return y % 8 == 0 || x == (y < 8 ? 0 : 8); },
    [](int x, int y) { return ((x < 8) == (y < 8) ? x : y) % 4 == 0; },
    [](int x, int y) { return (x < 8) == (y < 8); },
    [](int x, int y) { return (x + y / 8 * 4) % 8 < 2 && y % 8 < 2; },
    [](int x, int y) {
      const int square = from_centre(x) * from_centre(x) + from_centre(y) * from_centre(y);
      return square >= 18 && square < 32;
    },
    [](int x, int y) { return (y + from_centre(x)) % 8 == 0; },
    [](int x, int y) {
      return y % 8 == (from_centre(x) < 2 ? 3 : from_centre(x) < 6 ? 1 : 0);
    },
    [](int x, int y) { return from_centre(x) + from_centre(y) < 6; },
};
constexpr std::size_t hatch_count = std::size(hatches);

using Bits = std::array<std::uint8_t, size * size / 8>;

// A set bit is a hole; the least significant bit is leftmost, the bottom row comes first.
constexpr Bits bits_of(Is_Drawn is_drawn) {
  Bits bits = {};
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      if (is_drawn(x, y)) continue;
      const auto at = static_cast<std::size_t>(y * size + x);
      bits[at / 8] = static_cast<std::uint8_t>(bits[at / 8] | 1 << at % 8);
    }
  }
  return bits;
}

constexpr auto all_bits = [] {
  std::array<Bits, hatch_count> all = {};
  for (std::size_t n = 0; n < hatch_count; ++n) all[n] = bits_of(hatches[n]);
  return all;
}();

constexpr auto all_patterns = [] {
  std::array<KT_User_Pattern, hatch_count> all = {};
  for (std::size_t n = 0; n < hatch_count; ++n) {
    all[n] = {all_bits[n].data(), size, size, size / 8};
  }
  return all;
}();

}  // namespace

const KT_User_Pattern& hatch(std::int32_t face_pattern) {
  const auto number = static_cast<std::size_t>(face_pattern - KT_Face_Attributes::first_standard);
  return all_patterns[number % hatch_count];
}

KT_Rendition with_drawable_pattern(const KT_Rendition& source) {
  KT_Rendition rendition = source;
  const std::int32_t pattern = source->face_attributes->face_pattern;
  if (pattern >= KT_Face_Attributes::first_standard) {
    KT_Face_Attributes& face = rendition.edit(&KT_Rendition_Data::face_attributes);
    face.face_pattern = KT_Face_Attributes::user;
    face.user_pattern = &hatch(pattern);
  }
  return rendition;
}

}  // namespace stand_in
