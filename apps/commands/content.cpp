// Which faces, lines and dots of a scene each style shows.
#include "apps/commands/content.h"

#include "apps/scene/device_geometry.h"
#include "apps/scene/device_lines.h"

namespace kv {
namespace {

Mode mode_of(const Drawing& drawing) {
  if (drawing.polygons) return Mode::polygons;
  return drawing.style == Style::shaded ? Mode::shaded : Mode::flat;
}

// Faces that are only to hide others show no texture.
bool shows_textures(Style style) {
  return style == Style::shaded || style == Style::flat;
}

template <class Item>
void append(std::vector<Item>& items, const std::vector<Item>& more) {
  items.insert(items.end(), more.begin(), more.end());
}

}  // namespace

Load_Choices load_choices(const Options& options) {
  return {options.textures && shows_textures(options.drawing.style), options.drawing.polygons};
}

Content content_of(const Scene& scene, View& view, const Drawing& drawing) {
  const auto opacity = static_cast<float>(drawing.opacity);
  const Style style = drawing.style;
  if (style == Style::hidden_line) view.leave_depth(greatest_hiding_offset);
  Content content;
  if (shows_faces(style)) content.faces = device_geometry(scene, view, mode_of(drawing), opacity);
  if (shows_lines(style)) content.lines = device_lines(scene, view, drawing.lines.edges, opacity);
  if (style == Style::points) content.dots = device_dots(scene, view, opacity);
  append(content.lines, loose_lines(scene, view, opacity));
  append(content.dots, loose_dots(scene, view, opacity));
  return content;
}

}  // namespace kv
