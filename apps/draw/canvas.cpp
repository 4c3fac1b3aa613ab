// The configuration of a renderer: its options and the rendition that its calls begin with.
#include "apps/draw/canvas.h"

#include <cstdint>

namespace kv {
namespace {

constexpr int depth_bits = 16;

constexpr int aligned_down(int value) {
  return value - value % part_alignment;
}

std::uint8_t index_of(const KT_RGB32& color, const KT_Palette& palette) {
  return static_cast<std::uint8_t>(palette.closest_match(color, false));
}

}  // namespace

Frame Frame::of_whole(const Size& size) {
  return {size, {0, size.width - 1, 0, size.height - 1}};
}

Frame Frame::of_part(const KT_Int_Rectangle& part, const Size& picture) {
  return {picture, part, {aligned_down(part.left), aligned_down(part.bottom)}, true};
}

void configure(Renderer& renderer, const Configuration& configuration) {
  const Variant& variant = configuration.variant;
  const KT_RGB32& paper = configuration.background;
  KT_Renderer_Options& options = renderer.options();
  options.set_color_system(variant.direct_color ? KT_Color_System::direct
                                                : KT_Color_System::mapped);
  options.set_buffer_depth(variant.depth ? depth_bits : 0);
  options.set_alpha_blending(variant.alpha);
  options.set_window({0, 0}, {configuration.size.width, configuration.size.height});
  if (configuration.palette) options.set_palette(configuration.palette);
  if (configuration.drawing.merge)
    renderer.option(KT_Z_Buffer_Option::merge_background)
        .set(KT_Option_Value(paper.red, paper.green, paper.blue));
  if (configuration.drawing.clip)
    renderer.option(KT_Z_Buffer_Option::use_mask).set(KT_Option_Value(true));
  renderer.establish();
}

void turn_to(const Frame& frame, Renderer& renderer, const Configuration& configuration) {
  renderer.option(KT_Z_Buffer_Option::enable_tiling).set(KT_Option_Value(frame.in_parts));
  renderer.options().set_window(frame.origin,
                                {configuration.size.width, configuration.size.height});
  renderer.establish();
}

KT_Rendition rendition_of(const Configuration& configuration, const Frame& frame) {
  const Drawing& drawing = configuration.drawing;
  KT_Rendition rendition = KD_Default_Rendition(frame.part);
  if (drawing.merge)
    rendition.edit(&KT_Rendition_Data::misc_attributes).drawing_mode =
        KT_Misc_Attributes::merge_mode;
  KT_Display_Context& context = rendition.edit(&KT_Rendition_Data::display_context);
  context.depth_enabled = configuration.variant.depth ? 1 : 0;
  if (drawing.clip) context.complex_clip = drawing.clip.contours_in(frame.picture);
  if (drawing.pattern)
    rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern = *drawing.pattern;
  KT_Material& material = rendition.edit(&KT_Rendition_Data::material);
  material.window_color = configuration.background;
  if (configuration.palette)
    material.window_index = index_of(configuration.background, configuration.palette);
  return rendition;
}

void set_color(KT_Rendition& rendition, const KT_RGB32& color, const KT_Palette& palette) {
  rendition.set_color(color, false);
  if (palette) rendition.edit(&KT_Rendition_Data::material).color_index = index_of(color, palette);
}

}  // namespace kv
