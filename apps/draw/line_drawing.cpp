// Lines and dots in device coordinates, y upward, as calls of the module.
#include "apps/draw/line_drawing.h"

#include <algorithm>

#include "apps/draw/strip_calls.h"

namespace kv {
namespace {

KT_Rendition line_rendition(KT_Rendition rendition, const Configuration& configuration) {
  const Line_Drawing& lines = configuration.drawing.lines;
  KT_Line_Attributes& attributes = rendition.edit(&KT_Rendition_Data::line_attributes);
  attributes.line_weight = lines.width;
  attributes.line_pattern = lines.pattern;
  if (lines.antialias) rendition.set_advanced_options({KT_Advanced_Options::antialias_bit}, false);
  if (lines.outline) {
    KT_Basic_Material material;
    material->outline_width = 1;
    material->outline_color = configuration.background;
    material->core_color = line_color;
    rendition.edit(&KT_Rendition_Data::material).basic_material = material;
  }
  set_color(rendition, line_color, configuration.palette);
  return rendition;
}

// Others are drawn in the colours of their ends.
bool in_one_color(const Drawing& drawing) {
  return drawing.style == Style::hidden_line || drawing.lines.outline || drawing.lines.antialias;
}

// The pixels of a disc around its middle one.
std::vector<KT_Int_XY> disc_of(int size) {
  std::vector<KT_Int_XY> pixels;
  const int middle = size / 2;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      const int across = 2 * x - size + 1, up = 2 * y - size + 1;
      if (across * across + up * up <= size * size) pixels.push_back({x - middle, y - middle});
    }
  return pixels;
}

}  // namespace

void draw_lines(const Canvas& canvas, const std::vector<Device_Line>& lines) {
  if (lines.empty()) return;
  Strip_Calls calls(canvas);
  const KT_Rendition rendition = line_rendition(calls.rendition(), canvas.configuration);
  const bool plain = in_one_color(canvas.configuration.drawing);
  const bool one_color_a_line =
      canvas.configuration.drawing.lines.outline || canvas.configuration.drawing.lines.antialias;
  for (const Device_Line& line : lines) {
    const std::span<const KT_DCI_Point> ends = line.points;
    if (plain && (!line.in_own_colors || one_color_a_line)) {
      KT_Rendition own = rendition;
      if (line.in_own_colors) set_color(own, line.colors[0], canvas.configuration.palette);
      calls.call<KT_Action::Draw_2DI_Polyline, KT_Action::Draw_2DD_Polyline>(own, ends);
    } else {
      calls.call<KT_Action::Draw_2DI_Gouraud_Polyline, KT_Action::Draw_2DD_Gouraud_Polyline>(
          rendition, ends, line.colors.data());
    }
  }
}

void draw_dots(const Canvas& canvas, std::vector<Device_Dot> dots) {
  const Configuration& configuration = canvas.configuration;
  const auto word = [](const KT_RGB32& c) {
    return c.red << 24 | c.green << 16 | c.blue << 8 | c.alpha;
  };
  // With a depth buffer the dots of a colour go together.
  std::stable_sort(dots.begin(), dots.end(), [&](const Device_Dot& a, const Device_Dot& b) {
    return configuration.variant.depth ? word(a.color) < word(b.color) : a.point.z > b.point.z;
  });
  const std::vector<KT_Int_XY> disc = disc_of(configuration.drawing.point_size);
  std::vector<KT_DCI_Point> pixels;
  for (std::size_t first = 0, end = 0; first < dots.size(); first = end) {
    constexpr std::size_t most_pixels = 1 << 16;
    pixels.clear();
    for (; end < dots.size() && word(dots[end].color) == word(dots[first].color) &&
           pixels.size() < most_pixels;
         ++end) {
      const KT_DCI_Point& point = dots[end].point;
      for (const KT_Int_XY& offset : disc)
        pixels.push_back({point.x + offset.x, point.y + offset.y, point.z});
    }
    KT_Rendition rendition = canvas.rendition;
    set_color(rendition, dots[first].color, configuration.palette);
    canvas.renderer.call<KT_Action::Draw_2DI_Polymarker>(rendition, static_cast<int>(pixels.size()),
                                                         pixels.data());
  }
}

}  // namespace kv
