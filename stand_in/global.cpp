// The framework's two global objects: the dither table and the face patterns.
#include "host/global.h"

#include <array>

#include "stand_in/bayer.h"

namespace {

using Tile = std::array<std::uint8_t, 8>;

constexpr int first_hatch = 65;
constexpr int pattern_count = 74;

// What is drawn of each hatch, most significant bit leftmost and top row first, as it looks.
constexpr std::array<Tile, pattern_count - first_hatch> hatch_pictures = {{
    // Horizontal, vertical.
    {0b11111111, 0, 0, 0, 0b11111111, 0, 0, 0},
    {0b10001000, 0b10001000, 0b10001000, 0b10001000, 0b10001000, 0b10001000, 0b10001000,
     0b10001000},
    // Rising and falling diagonals.
    {0b00000001, 0b00000010, 0b00000100, 0b00001000, 0b00010000, 0b00100000, 0b01000000,
     0b10000000},
    {0b10000000, 0b01000000, 0b00100000, 0b00010000, 0b00001000, 0b00000100, 0b00000010,
     0b00000001},
    // Upright and diagonal crosses.
    {0b11111111, 0b10001000, 0b10001000, 0b10001000, 0b11111111, 0b10001000, 0b10001000,
     0b10001000},
    {0b10000001, 0b01000010, 0b00100100, 0b00011000, 0b00011000, 0b00100100, 0b01000010,
     0b10000001},
    // Bricks, checks, scales.
    {0b11111111, 0b10000000, 0b10000000, 0b10000000, 0b11111111, 0b00001000, 0b00001000,
     0b00001000},
    {0b11110000, 0b11110000, 0b11110000, 0b11110000, 0b00001111, 0b00001111, 0b00001111,
     0b00001111},
    {0b00011000, 0b00100100, 0b01000010, 0b10000001, 0b10000001, 0b00000000, 0b00000000,
     0b00000000},
}};

// Entry n has n drawn cells; a set bit is a hole.
constexpr Tile ramp_tile(int drawn_cells) {
  Tile tile = {};
  for (int y = 0; y < 8; ++y) {
    int row = 0;
    for (int x = 0; x < 8; ++x) {
      if (stand_in::bayer_rank(x, y) >= drawn_cells) row |= 1 << x;
    }
    tile[static_cast<std::size_t>(y)] = static_cast<std::uint8_t>(row);
  }
  return tile;
}

// Inverts a picture: holes for drawn pixels, bottom row first, least significant bit leftmost.
constexpr Tile hatch_tile(const Tile& picture) {
  Tile tile = {};
  for (std::size_t y = 0; y < 8; ++y) {
    int row = 0;
    for (int x = 0; x < 8; ++x) {
      if ((picture[7 - y] >> (7 - x) & 1) == 0) row |= 1 << x;
    }
    tile[y] = static_cast<std::uint8_t>(row);
  }
  return tile;
}

constexpr auto tiles = [] {
  std::array<Tile, pattern_count> all = {};
  for (int n = 0; n < first_hatch; ++n) all[static_cast<std::size_t>(n)] = ramp_tile(n);
  for (std::size_t n = 0; n < hatch_pictures.size(); ++n) {
    all[first_hatch + n] = hatch_tile(hatch_pictures[n]);
  }
  return all;
}();

// A channel of 255 falls short of the top step of a cube of n steps by (n - 1) * 256 parts of
// 65536, as cube scales are whole numbers. With every threshold at least 5 * 256, full channels
// come out pure in cubes of up to 6 steps. The range is kept symmetric, so that the mean stays.
constexpr int lowest_threshold = 5 * 256;
constexpr int highest_threshold = 65536 - lowest_threshold;

constexpr Korvel_Shared make_shared_constants() {
  Korvel_Shared shared = {};
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      const int rank = stand_in::bayer_rank(x, y);
      shared.dither_table[y * 8 + x] = static_cast<std::uint16_t>(
          lowest_threshold + rank * (highest_threshold - lowest_threshold) / 63);
    }
  }
  return shared;
}

}  // namespace

Korvel_Global::Korvel_Global() {
  for (std::size_t n = 0; n < tiles.size(); ++n) face_pattern_table[n] = tiles[n].data();
}

Korvel_Global KORVEL;
constinit const Korvel_Shared SHARED = make_shared_constants();
