// Tiles are counted from the top left; their parts of the picture are in device coordinates, y
// upward.
#include "apps/draw/tiles.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "apps/common/progress.h"
#include "apps/files/picture_file.h"

namespace kv {

Size Tile_Grid::size(int index) const {
  return {std::min(tile.width, picture.width - left(index)),
          std::min(tile.height, picture.height - top(index))};
}

KT_Int_Rectangle Tile_Grid::part(int index) const {
  const Size own = size(index);
  const int above = picture.height - top(index);
  return {left(index), left(index) + own.width - 1, above - own.height, above - 1};
}

std::string words_of(const Tile_Note& note) {
  const Tile_Grid& grid = note.grid;
  return std::to_string(note.index) + " of " + text_of(grid.picture) + " in " + text_of(grid.tile);
}

Tile_Note parse_tile_note(const std::string& words) {
  Tile_Note note;
  Size& picture = note.grid.picture;
  Size& tile = note.grid.tile;
  int used = 0;
  const int got = std::sscanf(words.c_str(), "%9d of %9dx%9d in %9dx%9d%n", &note.index,
                              &picture.width, &picture.height, &tile.width, &tile.height, &used);
  const auto fits = [](const Size& size, int least, int largest) {
    return std::min(size.width, size.height) >= least &&
           std::max(size.width, size.height) <= largest;
  };
  if (got != 5 || words.size() != static_cast<std::size_t>(used) ||
      !fits(picture, 1, largest_picture_side) || !fits(tile, smallest_tile_side, largest_side) ||
      note.index < 0 || note.index >= note.grid.count())
    throw std::runtime_error("this is no tile that kvdraw made");
  return note;
}

namespace {

void put(Picture& band, const Picture& tile, int left) {
  for (int y = 0; y < tile.height; ++y)
    std::copy_n(tile.row(y), 3 * tile.width, band.row(y) + 3 * left);
}

}  // namespace

void write_tiles(const std::string& path, const Tile_Grid& grid, const Tile_Source& tile) {
  Progress progress("tile", grid.count());
  write_picture_file(path, grid.picture, {}, [&](Png_Writer& writer) {
    Picture band(grid.picture.width, std::min(grid.tile.height, grid.picture.height));
    for (int index = 0; index < grid.count(); ++index) {
      put(band, tile(index), grid.left(index));
      progress.step();
      stop_if_asked();
      if ((index + 1) % grid.columns() != 0) continue;
      for (int y = 0; y < grid.size(index).height; ++y) writer.row(band.row(y));
    }
  });
}

}  // namespace kv
