// Writing to renditions, and the rendition that a host application begins with.
#include "host/rendition.h"

#include "host/application.h"

namespace {

/// Takes the place of the record that only the framework reads.
class Framework_Attributes : public KT_Attributes<Framework_Attributes> {};

constexpr KT_RGB32 black = {0, 0, 0, 255};
constexpr KT_RGB32 white = {255, 255, 255, 255};
// Their places in the palette of `KD_Cube_Palette`.
constexpr std::uint32_t black_index = 0;
constexpr std::uint32_t white_index = 6 * 6 * 6 - 1;

KT_Handle<KT_Display_Context> default_context(const KT_Int_Rectangle& window) {
  KT_Handle<KT_Display_Context> context(new KT_Display_Context);
  context->extent_left = window.left;
  context->extent_bottom = window.bottom;
  context->hard_clip = window;
  context->depth_enabled = 1;
  return context;
}

KT_Handle<KT_Material> default_material() {
  KT_Handle<KT_Material> material(new KT_Material);
  material->color = white;
  material->color_index = white_index;
  material->contrast_color = black;
  material->contrast_index = black_index;
  material->window_color = black;
  material->window_index = black_index;
  material->basic_material = KT_Basic_Material();
  material->textured_material = KT_Basic_Textured_Material();
  return material;
}

}  // namespace

// The setters write the colour alone: a rendition has no palette that an index could come from.
void KT_Rendition::set_color(const KT_RGB32& color, bool) {
  edit(&KT_Rendition_Data::material).color = color;
}

void KT_Rendition::set_contrast_color(const KT_RGB32& color, bool) {
  edit(&KT_Rendition_Data::material).contrast_color = color;
}

void KT_Rendition::set_hard_clip_unrestricted(const KT_Int_Rectangle& rectangle, bool) {
  edit(&KT_Rendition_Data::display_context).hard_clip = rectangle;
}

void KT_Rendition::set_advanced_options(const KT_Advanced_Options& options, bool) {
  edit(&KT_Rendition_Data::misc_attributes).advanced_options = options;
}

KT_Rendition KD_Default_Rendition(const KT_Int_Rectangle& window) {
  KT_Rendition rendition(new KT_Rendition_Data);
  rendition->display_context = default_context(window);
  rendition->material = default_material();
  rendition->line_attributes.reset(new KT_Line_Attributes);
  rendition->line_attributes->line_weight = 1;
  rendition->face_attributes.reset(new KT_Face_Attributes);
  rendition->marker_attributes.reset(new KT_Marker_Attributes);
  rendition->framework_attributes.reset(new Framework_Attributes);
  rendition->misc_attributes.reset(new KT_Misc_Attributes);
  return rendition;
}
