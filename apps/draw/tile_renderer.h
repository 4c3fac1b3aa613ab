// Draws a picture that is larger than a frame buffer, one tile at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/draw/host_session.h"
#include "apps/draw/tiles.h"

namespace kv {

// The size of the session that the tiles are drawn in.
Size frame_size(const Tile_Grid& grid);

// Draws the picture into a file, or one of its tiles alone with a note of its place.
void write_in_tiles(const std::string& path, Host_Session& session, Content content,
                    const Tile_Grid& grid, std::optional<int> one_tile, int line_width);

class Tile_Renderer {
 public:
  // `content` is that of the whole picture.
  Tile_Renderer(Host_Session& session, Content content, const Tile_Grid& grid, int line_width);

  // The same picture whichever tiles were drawn before.
  Picture draw(int index);

 private:
  // Where something reaches, in device coordinates.
  struct Reach {
    float left, right, bottom, top;
  };
  Reach reach(const Device_Strip& strip) const;
  static Reach reach(const Device_Line& line);
  bool meets(const Reach& reach, const KT_Int_Rectangle& part) const;

  Host_Session& session_;
  Content content_;  // of its faces and lines, those of the tile in hand
  std::vector<Device_Strip> strips_;
  std::vector<Device_Line> lines_;
  std::vector<Reach> strip_reaches_;
  Tile_Grid grid_;
  float margin_;  // what lies so far outside may still show
};

}  // namespace kv
