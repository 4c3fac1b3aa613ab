// Tiles are drawn from one content of the whole picture, in its device coordinates: of it, each
// tile draws what may reach it, so that no tile depends on those before.
#include "apps/draw/tile_renderer.h"

#include <algorithm>
#include <utility>

#include "apps/files/picture_file.h"

namespace kv {

Size frame_size(const Tile_Grid& grid) {
  constexpr int margin = part_alignment - 1;
  return {std::min(grid.tile.width, grid.picture.width) + margin,
          std::min(grid.tile.height, grid.picture.height) + margin};
}

void write_in_tiles(const std::string& path, Host_Session& session, Content content,
                    const Tile_Grid& grid, std::optional<int> one_tile, int line_width) {
  Tile_Renderer renderer(session, std::move(content), grid, line_width);
  if (!one_tile) return write_tiles(path, grid, [&](int index) { return renderer.draw(index); });
  const Picture tile = renderer.draw(*one_tile);
  const Png_Notes notes = {{tile_note_key, words_of({grid, *one_tile})}};
  write_picture_file(path, grid.size(*one_tile), notes, [&](Png_Writer& writer) {
    for (int y = 0; y < tile.height; ++y) writer.row(tile.row(y));
  });
}

Tile_Renderer::Tile_Renderer(Host_Session& session, Content content, const Tile_Grid& grid,
                             int line_width)
    : session_(session),
      content_(std::move(content)),
      strips_(content_.faces.strips()),
      lines_(std::move(content_.lines)),
      grid_(grid),
      margin_(static_cast<float>(line_width) + 8) {
  for (const Device_Strip& strip : strips_) strip_reaches_.push_back(reach(strip));
}

Tile_Renderer::Reach Tile_Renderer::reach(const Device_Strip& strip) const {
  const auto points = content_.faces.points(strip);
  const auto [left, right] = std::minmax_element(
      points.begin(), points.end(), [](const auto& a, const auto& b) { return a.x < b.x; });
  const auto [bottom, top] = std::minmax_element(
      points.begin(), points.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
  return {left->x, right->x, bottom->y, top->y};
}

Tile_Renderer::Reach Tile_Renderer::reach(const Device_Line& line) {
  const auto [left, right] = std::minmax(line.points[0].x, line.points[1].x);
  const auto [bottom, top] = std::minmax(line.points[0].y, line.points[1].y);
  return {static_cast<float>(left), static_cast<float>(right), static_cast<float>(bottom),
          static_cast<float>(top)};
}

bool Tile_Renderer::meets(const Reach& reach, const KT_Int_Rectangle& part) const {
  return reach.right >= static_cast<float>(part.left) - margin_ &&
         reach.left <= static_cast<float>(part.right) + margin_ &&
         reach.top >= static_cast<float>(part.bottom) - margin_ &&
         reach.bottom <= static_cast<float>(part.top) + margin_;
}

Picture Tile_Renderer::draw(int index) {
  const KT_Int_Rectangle part = grid_.part(index);
  std::vector<Device_Strip> met;
  for (std::size_t i = 0; i < strips_.size(); ++i)
    if (meets(strip_reaches_[i], part)) met.push_back(strips_[i]);
  content_.faces.show_only(std::move(met));
  content_.lines.clear();
  for (const Device_Line& line : lines_)
    if (meets(reach(line), part)) content_.lines.push_back(line);
  session_.show_part(part, grid_.picture);
  session_.draw(content_);
  return session_.read_picture();
}

}  // namespace kv
