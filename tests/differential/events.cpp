// Calls in words.
#include "tests/differential/recorder.h"

model::Events fuzz::events;
std::function<void()> fuzz::at_next_polyline;
int fuzz::polygon_rank = 0;

namespace model {

int color_count(KT_Action action, int count, bool single) {
  using enum KT_Action;
  if (single || action >= Draw_2D_Polygon) return 1;
  if (action >= Draw_2DI_Gouraud_Polyline) return count;
  if (action >= Draw_2DI_Polyline) return count - 1;
  return action >= Draw_2D_Gouraud_Polytriangle ? count : count - 2;
}

std::string look_of(const KT_Rendition& rendition) {
  const KT_Line_Attributes& line_attributes = *rendition->line_attributes;
  const KT_Face_Attributes& face = *rendition->face_attributes;
  const KT_Misc_Attributes& misc = *rendition->misc_attributes;
  const KT_Material& material = *rendition->material;
  return line("line pattern", line_attributes.line_pattern, "weight", line_attributes.line_weight,
              "styles", line_attributes.line_end_style_a, line_attributes.line_end_style_b,
              line_attributes.line_corner_style, "flags", line_attributes.line_flag_a,
              line_attributes.line_flag_b, "face", face.face_pattern, "offset",
              face.face_depth_offset, "options", misc.pattern_options, "advanced",
              misc.advanced_options.bits, "color", material.color, material.contrast_color);
}

const char* name_of(KT_Action action) {
  static const char* const names[] = {
#define NAME(name, signature) #name,
      KORVEL_ACTIONS(NAME)
#undef NAME
  };
  return names[static_cast<int>(action)];
}

}  // namespace model
