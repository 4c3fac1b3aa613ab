// kvdraw join: tiles that were drawn one by one, on as many machines as one likes, become one
// picture.

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/commands/command_line.h"
#include "apps/commands/commands.h"
#include "apps/common/errors.h"
#include "apps/draw/tiles.h"
#include "apps/files/png_reader.h"

namespace kv {
namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& what,
                         const std::string& hint = {}) {
  throw Failure(Exit_Code::input, path, what, hint);
}

// Calls `read` and reports what it throws as a fault of the file.
template <class Read>
auto of_file(const std::string& path, Read read) {
  try {
    return read();
  } catch (const std::runtime_error& error) {
    refuse(path, error.what(), "draw this tile anew with --tile-index");
  }
}

Tile_Note note_of(const std::string& path) {
  return of_file(path, [&] {
    const Png_Reader reader(path, Png_Pixels::rgb);
    const Tile_Note note = parse_tile_note(reader.note(tile_note_key));
    if (reader.size() != note.grid.size(note.index))
      throw std::runtime_error("the picture does not have the size of its tile");
    return note;
  });
}

Picture read_tile(const std::string& path, const Size& size) {
  return of_file(path, [&] {
    Png_Reader reader(path, Png_Pixels::rgb);
    if (reader.size() != size) throw std::runtime_error("the file was changed meanwhile");
    Picture picture(size.width, size.height);
    for (int y = 0; y < size.height; ++y) reader.row(picture.row(y));
    return picture;
  });
}

// The files of a picture's tiles, by index.
struct Tile_Files {
  Tile_Grid grid;
  std::vector<std::string> paths;
};

Tile_Files sorted_tiles(const std::vector<std::string>& paths) {
  Tile_Files files;
  for (const std::string& path : paths) {
    const Tile_Note note = note_of(path);
    if (files.paths.empty()) {
      files.grid = note.grid;
      files.paths.resize(static_cast<std::size_t>(note.grid.count()));
    }
    if (note.grid != files.grid)
      refuse(path,
             "this is tile " + words_of(note) + ", but " + paths.front() +
                 " belongs to another picture",
             "join tiles of one --size and --tile");
    std::string& place = files.paths[static_cast<std::size_t>(note.index)];
    if (!place.empty())
      refuse(path, "this is tile " + std::to_string(note.index) + " again, after " + place,
             "leave one of them out");
    place = path;
  }
  return files;
}

void check_complete(const std::string& picture, const Tile_Files& files) {
  constexpr int most_named = 8;
  int missing = 0;
  std::string names;
  for (std::size_t i = 0; i < files.paths.size(); ++i) {
    if (!files.paths[i].empty()) continue;
    if (++missing <= most_named) names += (names.empty() ? "" : ", ") + std::to_string(i);
  }
  if (missing == 0) return;
  if (missing > most_named) names += ", ...";
  refuse(picture,
         std::to_string(missing) + " of " + std::to_string(files.paths.size()) +
             " tiles are missing: " + names,
         "draw them with --tile-index");
}

}  // namespace

int join_command(int argc, char** argv) {
  std::vector<std::string> tiles;
  std::string picture;
  CLI::App app("Puts the tiles of a picture together, which kvdraw --tile-index drew.",
               "kvdraw join");
  app.add_option("TILE", tiles, "files of all tiles, in any order")->required()->type_name("");
  app.add_option("-o,--output", picture, "picture to write, PNG")->required()->type_name("FILE");
  if (!parse_command_line(app, argc, argv)) return 0;
  const Tile_Files files = sorted_tiles(tiles);
  check_complete(picture, files);
  write_tiles(picture, files.grid, [&](int index) {
    return read_tile(files.paths[static_cast<std::size_t>(index)], files.grid.size(index));
  });
  return 0;
}

}  // namespace kv
