// A picture cut into tiles, and the way from tiles to one file.
//
//   tile 0 | tile 1 | 2      Tiles are counted in rows from the top left corner. Those in the last
//   -------+--------+--      column and in the last row are as large as what is left there.
//   tile 3 | tile 4 | 5
#pragma once

#include <functional>
#include <string>

#include "apps/common/option_text.h"
#include "apps/files/picture.h"
#include "host/types.h"

namespace kv {

struct Tile_Grid {
  Size picture, tile;

  int columns() const { return (picture.width - 1) / tile.width + 1; }
  int rows() const { return (picture.height - 1) / tile.height + 1; }
  int count() const { return columns() * rows(); }

  int left(int index) const { return index % columns() * tile.width; }
  int top(int index) const { return index / columns() * tile.height; }  // from above
  Size size(int index) const;
  // In device coordinates of the picture, where y points up.
  KT_Int_Rectangle part(int index) const;

  friend bool operator==(const Tile_Grid& a, const Tile_Grid& b) = default;
};

// The note in the file of a single tile: which tile of which picture it is.
inline constexpr const char* tile_note_key = "kvdraw tile";
struct Tile_Note {
  Tile_Grid grid;
  int index = 0;
};
std::string words_of(const Tile_Note& note);
// Throws std::runtime_error when the text is not the note of a tile.
Tile_Note parse_tile_note(const std::string& words);

using Tile_Source = std::function<Picture(int index)>;

// Writes the picture as its tiles come in, one by one in their order. What is held is
// one row of tiles: three bytes times the width of the picture and the height of a tile.
void write_tiles(const std::string& path, const Tile_Grid& grid, const Tile_Source& tile);

}  // namespace kv
