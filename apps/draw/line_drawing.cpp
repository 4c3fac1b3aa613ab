// Lines and dots in device coordinates, y upward, as calls of the module.
#include "apps/draw/line_drawing.h"

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

}  // namespace

void draw_lines(const Canvas& canvas, const std::vector<Device_Line>& lines) {
  if (lines.empty()) return;
  Strip_Calls calls(canvas);
  const KT_Rendition rendition = line_rendition(calls.rendition(), canvas.configuration);
  const bool plain = in_one_color(canvas.configuration.drawing);
  for (const Device_Line& line : lines) {
    const std::span<const KT_DCI_Point> ends = line.points;
    if (plain)
      calls.call<KT_Action::Draw_2DI_Polyline, KT_Action::Draw_2DD_Polyline>(rendition, ends);
    else
      calls.call<KT_Action::Draw_2DI_Gouraud_Polyline, KT_Action::Draw_2DD_Gouraud_Polyline>(
          rendition, ends, line.colors.data());
  }
}

void draw_dots(const Canvas& canvas, const std::vector<Device_Dots>& dots) {
  for (const Device_Dots& part : dots) {
    KT_Rendition rendition = canvas.rendition;
    set_color(rendition, part.color, canvas.configuration.palette);
    canvas.renderer.call<KT_Action::Draw_2DI_Polymarker>(
        rendition, static_cast<int>(part.points.size()), part.points.data());
  }
}

}  // namespace kv
