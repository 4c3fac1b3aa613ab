#include "apps/host_session.h"

#include <cstdint>
#include <new>
#include <utility>

#include "apps/errors.h"

namespace kv {
namespace {

constexpr int depth_bits = 16;

// What the framework says of a module, without the name that the message begins with anyway.
std::string without_name(const std::string& error, const std::string& path) {
  const std::string name = "'" + path + "': ";
  const std::size_t found = error.find(name);
  return found == std::string::npos ? error : error.substr(found + name.size());
}

std::int32_t bytes_a_pixel(KT_Image_Format format) {
  switch (format) {
    case KT_Image_Format::mapped: return 1;
    case KT_Image_Format::depth: return 2;
    default: return 4;
  }
}

}  // namespace

Host_Session::Host_Session(const std::string& module_path, const Variant& variant, int width,
                           int height)
    : module_path_(module_path), variant_(variant), width_(width), height_(height) {
  if (!variant_.direct_color) fail("the mapped variants are not available yet");
  std::string error;
  if (!module_.load(module_path_, error))
    fail(without_name(error, module_path_), "--module names another");
  renderer_ = module_.make_renderer(nullptr);
  if (!renderer_) fail("the module makes no renderer");
  rendition_ = KD_Default_Rendition({0, width_ - 1, 0, height_ - 1});
  configure();
}

void Host_Session::configure() {
  KT_Renderer_Options& options = renderer_->options();
  options.set_color_system(variant_.direct_color ? KT_Color_System::direct
                                                 : KT_Color_System::mapped);
  options.set_buffer_depth(variant_.depth ? depth_bits : 0);
  options.set_alpha_blending(variant_.alpha);
  options.set_window({0, 0}, {width_, height_});
  if (!variant_.direct_color) {
    palette_ = KD_Cube_Palette();
    options.set_palette(palette_);
  }
  renderer_->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  if (renderer_->establish_all() != 0) fail("the module refuses the configuration");
  if (out_of_memory_) throw std::bad_alloc();  // nothing may be drawn without its buffers
  rendition_.edit(&KT_Rendition_Data::display_context).depth_enabled = variant_.depth ? 1 : 0;
}

void Host_Session::create_frame_buffer(void* session, int width, int height,
                                       const KT_Image_Format* format, KT_Shared_Image* image) {
  image->release();  // first, so that the old and the new one need not fit at once
  try {
    const std::int32_t row_bytes = (width * bytes_a_pixel(*format) + 3) / 4 * 4;
    *image = KT_Shared_Image(width, height, *format, row_bytes, nullptr, false);
  } catch (const std::bad_alloc&) {
    static_cast<Host_Session*>(session)->out_of_memory_ = true;
  }
}

void Host_Session::draw(const Device_Geometry& geometry, const Color& background) {
  KT_Material& material = rendition_.edit(&KT_Rendition_Data::material);
  material.window_color = device_color(background);
  if (palette_)
    material.window_index =
        static_cast<std::uint8_t>(palette_.closest_match(material.window_color, false));
  KD_Reset_Undrawn_Count();
  renderer_->begin_picture_all(nullptr);
  call<KT_Action::Clear_Color>(rendition_);
  if (variant_.depth) {
    call<KT_Action::Clear_Depth>(rendition_);
    draw_strips(geometry);
  } else {
    draw_strips(back_to_front(geometry));
  }
  renderer_->end_picture_all();
  if (const unsigned undrawn = KD_Undrawn_Count(); undrawn > 0)
    fail("the module left " + std::to_string(undrawn) + " strips undrawn");
}

void Host_Session::draw_strips(const Device_Geometry& geometry) {
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    const auto colors = geometry.colors(strip);
    const int count = static_cast<int>(points.size());
    if (geometry.mode() == Mode::flat)
      call<KT_Action::Draw_2D_Colorized_Polytriangle>(rendition_, count, points.data(),
                                                      colors.data(), false);
    else
      call<KT_Action::Draw_2D_Gouraud_Polytriangle>(rendition_, count, points.data(),
                                                    colors.data());
  }
}

Picture Host_Session::read_picture() {
  Picture picture(width_, height_);
  KT_Shared_Image image;  // left to the module to make: what stays null was not read
  const KT_DCI_Point left_top{0, height_ - 1, 0}, right_bottom{width_ - 1, 0, 0};
  const KT_Image_Format format = KT_Image_Format::rgb32;
  call<KT_Action::Get_Image>(rendition_, &left_top, &right_bottom, &format, &image);
  if (!image || image->format != format || image->width != width_ || image->height != height_)
    fail("the module hands back no picture");
  for (int y = 0; y < height_; ++y) {
    const auto* pixel = reinterpret_cast<const KT_RGB32*>(image->scan_lines[y]);
    std::uint8_t* byte = picture.row(y);
    for (int x = 0; x < width_; ++x, ++pixel) {
      *byte++ = pixel->red;
      *byte++ = pixel->green;
      *byte++ = pixel->blue;
    }
  }
  return picture;
}

template <KT_Action action, class... Arguments>
void Host_Session::call(Arguments&&... arguments) {
  if (renderer_->actions[action].valid == 0)
    fail(std::string("the module does not offer ") + korvel::Action_Traits<action>::name);
  renderer_->actions.call<action>(std::forward<Arguments>(arguments)...);
}

void Host_Session::fail(const std::string& what, const std::string& hint) const {
  throw Failure(Exit_Code::module, module_path_, what, hint);
}

}  // namespace kv
