#include "tests/lines/line_frame.h"

#include <algorithm>
#include <stdexcept>

Line_Frame::Line_Frame(const Configuration& configuration, int width, int height) {
  std::string error;
  if (!module_.load(LINE_TEST_MODULE, error)) throw std::runtime_error(error);
  renderer_ = module_.make_renderer(nullptr);
  renderer_->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  KT_Renderer_Options& options = renderer_->options();
  options.set_window({0, 0}, {width, height});
  options.set_local_coordinates(true);
  options.set_color_system(configuration.colors);
  options.set_buffer_depth(configuration.depth ? 16 : 0);
  options.set_alpha_blending(configuration.alpha);
  options.set_palette(KD_Cube_Palette());
  renderer_->establish();
  rendition_ = KD_Default_Rendition({0, width - 1, 0, height - 1});
  clear();
}

void Line_Frame::create_frame_buffer(void* object, int width, int height,
                                     const KT_Image_Format* format, KT_Shared_Image* image) {
  auto& self = *static_cast<Line_Frame*>(object);
  const bool is_depth = *format == KT_Image_Format::depth;
  const int bytes = is_depth ? 2 : *format == KT_Image_Format::mapped ? 1 : 4;
  *image = KT_Shared_Image(width, height, *format, width * bytes, nullptr, false);
  (is_depth ? self.depth_ : self.color_) = *image;
}

void Line_Frame::set_antialiased() {
  rendition_.set_advanced_options({KT_Advanced_Options::antialias_bit}, false);
}

void Line_Frame::set_depth(std::uint8_t write, unsigned test) {
  const auto setter = [&](const wchar_t* name) {
    return renderer_->option_table().find(KT_String(name))->value->pointer();
  };
  reinterpret_cast<void (*)(KT_Renderer_Data*, std::uint8_t)>(setter(L"ZBuffer Write"))(
      renderer_.get(), write);
  reinterpret_cast<void (*)(KT_Renderer_Data*, const unsigned*)>(setter(L"ZBuffer Test"))(
      renderer_.get(), &test);
}

void Line_Frame::clear() {
  std::fill_n(color_->scan_lines[0], std::ptrdiff_t{color_->row_bytes} * color_->height,
              static_cast<std::uint8_t>(paper));
  if (depth_) {
    std::fill_n(reinterpret_cast<std::uint16_t*>(depth_->scan_lines[0]),
                std::ptrdiff_t{depth_->width} * depth_->height, far);
  }
}

std::vector<std::string> Line_Frame::picture(const KT_Int_Rectangle& of) const {
  std::vector<std::string> rows;
  for (int y = of.top; y >= of.bottom; --y) {
    std::string& row = rows.emplace_back();
    for (int x = of.left; x <= of.right; ++x) row += color(x, y) == paper ? '.' : '#';
  }
  return rows;
}
