// Brings a renderer into the state of a scene and compares its images with those of the model, the
// bytes after the pixels of a row included.
#include "tests/differential/setting.h"

#include <cstring>
#include <stdexcept>

namespace fuzz {
namespace {

int pixel_bytes(KT_Image_Format format) {
  return format == KT_Image_Format::rgb32 ? 4 : format == KT_Image_Format::depth ? 2 : 1;
}

}  // namespace

Setting::Setting(KT_Handle<KT_Renderer_Data> new_renderer, const Scene& the_scene)
    : scene(the_scene), renderer(std::move(new_renderer)) {
  renderer->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  KT_Renderer_Options& options = renderer->options();
  options.set_window(scene.window_origin, scene.size);
  options.set_local_coordinates(scene.local);
  options.set_color_system(model::is_mapped(scene.variant) ? KT_Color_System::mapped
                                                           : KT_Color_System::direct);
  options.set_buffer_depth(model::has_depth(scene.variant) ? 16 : 0);
  options.set_alpha_blending(model::has_alpha(scene.variant));
  options.set_palette(scene.palette);
  option(L"Use Mask").set(KT_Option_Value(scene.use_mask));
  option(L"Force Merge Control On").set(KT_Option_Value(scene.force_merge));
  const auto& key = scene.merge_key;
  option(L"Merge Control Background Color").set(KT_Option_Value(key[0], key[1], key[2]));
  renderer->establish();
  call_setter<std::uint8_t>(L"ZBuffer Write", scene.zbuffer_write);
  call_setter<const unsigned*>(L"ZBuffer Test", &scene.zbuffer_test);
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
  make_mask();
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

void Setting::make_mask() {
  const KT_Display_Context& display = *scene.rendition->display_context;
  if (!scene.use_mask || !display.complex_clip) return;
  const bool shifted = display.extent_left < 0 || display.extent_bottom < 0;
  Frame_Buffer_Mask mask;
  mask.establish_configuration(scene.size.x, scene.size.y, state.origin.x, state.origin.y);
  mask.clear_and_rasterize_mask(shifted ? scene.rendition.shifted_complex_clip()
                                        : display.complex_clip);
  state.mask = mask.image;
}

std::string image_difference(const char* what, const KT_Shared_Image& image,
                             const model::Plane& expected) {
  if (!image) return {};
  const std::uint8_t* const got = image->scan_lines[0];
  if (std::memcmp(expected.bytes.data(), got, expected.bytes.size()) == 0) return {};
  const auto size = static_cast<std::size_t>(pixel_bytes(image->format));
  std::string first;
  int differing = 0;
  for (int y = 0; y < image->height; ++y)
    for (int x = 0; x < image->row_bytes / static_cast<int>(size); ++x) {
      const std::ptrdiff_t at = expected.row(y) + x * static_cast<std::ptrdiff_t>(size);
      std::uint32_t pixels[2] = {0, 0};
      std::memcpy(&pixels[0], expected.bytes.data() + at, size);
      std::memcpy(&pixels[1], got + at, size);
      if (pixels[0] == pixels[1] || differing++ != 0) continue;
      const auto text = [&](std::uint32_t pixel) {
        return size == 4 ? model::line("", KT_RGB32::from_word(pixel)) : model::line("", pixel);
      };
      first =
          model::line(what, KT_Int_XY{x, y}, "expected", text(pixels[0]), "got", text(pixels[1]));
    }
  return model::line(" ", first, "pixels that differ:", differing, "\n");
}

}  // namespace fuzz
