#include "tests/differential/setting.h"

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace fuzz {

Setting::Setting(const KT_Renderer_Module& module, const Scene& the_scene)
    : scene(the_scene), renderer(module.make_renderer(nullptr)) {
  renderer->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  KT_Renderer_Options& options = renderer->options();
  options.set_window(scene.window_origin, scene.size);
  options.set_local_coordinates(scene.local);
  options.set_color_system(model::is_mapped(scene.variant) ? KT_Color_System::mapped
                                                           : KT_Color_System::direct);
  options.set_buffer_depth(model::has_depth(scene.variant) ? 16 : 0);
  options.set_alpha_blending(model::has_alpha(scene.variant));
  options.set_palette(scene.palette);
  set(L"Use Mask", KT_Option_Value(scene.use_mask));
  set(L"Force Merge Control On", KT_Option_Value(scene.force_merge));
  set(L"Merge Control Background Color",
      KT_Option_Value(scene.merge_key[0], scene.merge_key[1], scene.merge_key[2]));
  renderer->establish();
  setter<void(KT_Renderer_Data*, std::uint8_t)>(L"ZBuffer Write")(renderer.get(),
                                                                  scene.zbuffer_write);
  setter<void(KT_Renderer_Data*, const unsigned*)>(L"ZBuffer Test")(renderer.get(),
                                                                    &scene.zbuffer_test);
  scene.fill(color);
  state.color = model::Plane(color);
  if (depth) {
    scene.fill(depth);
    state.depth = model::Plane(depth);
  }
  state.variant = scene.variant;
  state.origin = scene.origin();
  state.extent = scene.size;
  state.palette = scene.palette;
  if (scene.palette->color_cube) state.cube = *scene.palette->color_cube;
  state.zbuffer_test = scene.zbuffer_test;
  state.zbuffer_write = scene.zbuffer_write != 0;
  state.force_merge = scene.force_merge;
  state.set_merge_key(scene.merge_key);
  rasterize_mask();
}

void Setting::create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image) {
  auto& self = *static_cast<Setting*>(object);
  const bool is_depth = *format == KT_Image_Format::depth;
  const int padding = is_depth ? self.scene.depth_padding : self.scene.color_padding;
  *image = KT_Shared_Image(width, height, *format, width * pixel_bytes(*format) + padding, nullptr,
                           false);
  (is_depth ? self.depth : self.color) = *image;
}

KT_Option& Setting::option(const wchar_t* name) const {
  KT_Option* found = renderer->option_table().find(KT_String(name));
  if (!found) throw std::runtime_error("the renderer lacks an option");
  return *found;
}

void Setting::rasterize_mask() {
  const KT_Display_Context& display = *scene.rendition->display_context;
  if (!scene.use_mask || !display.complex_clip) return;
  const bool shifted = display.extent_left < 0 || display.extent_bottom < 0;
  Frame_Buffer_Mask mask;
  mask.establish_configuration(scene.size.x, scene.size.y, state.origin.x, state.origin.y);
  mask.clear_and_rasterize_mask(shifted ? scene.rendition.shifted_complex_clip()
                                        : display.complex_clip);
  state.mask = mask.image;
}

int pixel_bytes(KT_Image_Format format) {
  return format == KT_Image_Format::rgb32 ? 4 : format == KT_Image_Format::depth ? 2 : 1;
}

std::string image_difference(const char* what, const KT_Shared_Image& image,
                             const model::Plane& expected) {
  if (!image ||
      std::memcmp(expected.bytes.data(), image->scan_lines[0], expected.bytes.size()) == 0)
    return {};
  const int size = pixel_bytes(image->format);
  std::ostringstream out;
  int differing = 0;
  for (int y = 0; y < image->height; ++y) {
    const auto row = static_cast<std::ptrdiff_t>(image->height - 1 - y) * image->row_bytes;
    for (int i = 0; i < image->row_bytes; i += size) {
      const auto value = [&](const std::uint8_t* bytes) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes + row + i, static_cast<std::size_t>(size));
        return word;
      };
      const std::uint32_t wanted = value(expected.bytes.data()), got = value(image->scan_lines[0]);
      if (wanted != got && differing++ == 0)
        out << "  " << what << " (" << i / size << "," << y << ") expected " << std::hex << wanted
            << " got " << got << std::dec;
    }
  }
  out << ", " << differing << " pixels differ\n";
  return out.str();
}

}  // namespace fuzz
