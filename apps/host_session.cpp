#include "apps/host_session.h"

#include <cstdint>
#include <new>
#include <utility>

#include "apps/errors.h"

namespace kv {
namespace {

constexpr int depth_bits = 16;
constexpr KT_RGB32 line_color{0x30, 0x26, 0x20, 255};

// What the framework says of a module, without the name that the message begins with anyway.
std::string without_name(const std::string& error, const std::string& path) {
  const std::string name = "'" + path + "': ";
  const std::size_t found = error.find(name);
  return found == std::string::npos ? error : error.substr(found + name.size());
}

std::int32_t bytes_a_pixel(KT_Image_Format format) {
  switch (format) {
    case KT_Image_Format::mapped:
      return 1;
    case KT_Image_Format::depth:
      return 2;
    default:
      return 4;
  }
}

}  // namespace

Host_Session::Host_Session(const std::string& module_path, const Variant& variant, const Size& size,
                           const Drawing& drawing, const Color& background)
    : module_path_(module_path),
      variant_(variant),
      size_(size),
      drawing_(drawing),
      background_(device_color(background)) {
  std::string error;
  if (!module_.load(module_path_, error))
    fail(without_name(error, module_path_), "--module names another");
  renderer_ = module_.make_renderer(nullptr);
  if (!renderer_) fail("the module makes no renderer");
  rendition_ = KD_Default_Rendition({0, size_.width - 1, 0, size_.height - 1});
  configure();
}

void Host_Session::configure() {
  KT_Renderer_Options& options = renderer_->options();
  options.set_color_system(variant_.direct_color ? KT_Color_System::direct
                                                 : KT_Color_System::mapped);
  options.set_buffer_depth(variant_.depth ? depth_bits : 0);
  options.set_alpha_blending(variant_.alpha);
  options.set_window({0, 0}, {size_.width, size_.height});
  if (!variant_.direct_color) configure_palette();
  if (drawing_.merge) configure_merging();
  if (drawing_.circle_clip) option(L"Use Mask").set(KT_Option_Value(true));
  renderer_->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  if (renderer_->establish_all() != 0) fail("the module refuses the configuration");
  if (out_of_memory_) throw std::bad_alloc();  // nothing may be drawn without its buffers
  configure_rendition();
}

void Host_Session::configure_palette() {
  palette_ = cube_palette(drawing_.cube_steps);
  renderer_->options().set_palette(palette_);
}

// The background stands for empty paper.
void Host_Session::configure_merging() {
  option(L"Merge Control Background Color")
      .set(KT_Option_Value(background_.red, background_.green, background_.blue));
  rendition_.edit(&KT_Rendition_Data::misc_attributes).drawing_mode =
      KT_Misc_Attributes::merge_mode;
}

void Host_Session::configure_rendition() {
  KT_Display_Context& context = rendition_.edit(&KT_Rendition_Data::display_context);
  context.depth_enabled = variant_.depth ? 1 : 0;
  if (drawing_.circle_clip) context.complex_clip = circle_in(size_);
  if (drawing_.pattern)
    rendition_.edit(&KT_Rendition_Data::face_attributes).face_pattern = *drawing_.pattern;
  KT_Material& material = rendition_.edit(&KT_Rendition_Data::material);
  material.window_color = background_;
  if (palette_)
    material.window_index = static_cast<std::uint8_t>(palette_.closest_match(background_, false));
}

KT_Option& Host_Session::option(const wchar_t* name) {
  KT_Option* found = renderer_->option_table().find(KT_String(name));
  if (!found) {
    std::string plain;
    for (const wchar_t* c = name; *c; ++c) plain += static_cast<char>(*c);
    fail("the module has no option '" + plain + "'");
  }
  return *found;
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

void Host_Session::draw(const Content& content) {
  KD_Reset_Undrawn_Count();
  renderer_->begin_picture_all(nullptr);
  clear();
  if (drawing_.style == Style::hidden_line)
    draw_hiding_faces(content.faces);
  else
    draw_faces(content.faces);
  draw_lines(content.lines);
  draw_dots(content.dots);
  renderer_->end_picture_all();
  if (const unsigned undrawn = KD_Undrawn_Count(); undrawn > 0)
    fail("the framework left " + std::to_string(undrawn) + " primitives undrawn");
}

// The whole window, whatever the faces' pattern.
void Host_Session::clear() {
  KT_Rendition solid = rendition_;
  solid.edit(&KT_Rendition_Data::face_attributes).face_pattern = KT_Face_Attributes::solid;
  call<KT_Action::Clear_Color>(solid);
  if (variant_.depth) call<KT_Action::Clear_Depth>(solid);
}

void Host_Session::draw_faces(const Device_Geometry& geometry) {
  KT_Rendition rendition = rendition_;
  std::uint32_t bits = rendition->misc_attributes->advanced_options.bits;
  const bool blends = variant_.direct_color && geometry.translucent();
  if (blends) bits |= KT_Advanced_Options::alpha_bit;
  if (drawing_.faces_as_edges) {
    bits |= KT_Advanced_Options::edge_bit;
    rendition.set_color(line_color, false);
  }
  rendition.set_advanced_options({bits}, false);
  if (variant_.depth && !blends)
    draw_strips(rendition, geometry);
  else
    draw_strips(rendition, back_to_front(geometry));
}

// Faces that show nothing but hide what is behind them; without a depth buffer there is nothing
// that they could hide.
void Host_Session::draw_hiding_faces(const Device_Geometry& geometry) {
  if (!variant_.depth) return;
  KT_Rendition rendition = rendition_;
  rendition.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = hidden_line_offset;
  set_color(rendition, background_);
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    call<KT_Action::Draw_2D_Polytriangle>(rendition, static_cast<int>(points.size()),
                                          points.data());
  }
}

void Host_Session::draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry) {
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    const auto colors = geometry.colors(strip);
    const int count = static_cast<int>(points.size());
    if (geometry.mode() == Mode::flat)
      call<KT_Action::Draw_2D_Colorized_Polytriangle>(rendition, count, points.data(),
                                                      colors.data(), false);
    else
      call<KT_Action::Draw_2D_Gouraud_Polytriangle>(rendition, count, points.data(),
                                                    colors.data());
  }
}

KT_Rendition Host_Session::line_rendition() const {
  KT_Rendition rendition = rendition_;
  const Line_Drawing& lines = drawing_.lines;
  KT_Line_Attributes& attributes = rendition.edit(&KT_Rendition_Data::line_attributes);
  attributes.line_weight = lines.width;
  attributes.line_pattern = lines.pattern;
  if (lines.antialias) rendition.set_advanced_options({KT_Advanced_Options::antialias_bit}, false);
  if (lines.outline) {
    KT_Basic_Material material;
    material->outline_width = 1;
    material->outline_color = background_;
    material->core_color = line_color;
    rendition.edit(&KT_Rendition_Data::material).basic_material = material;
  }
  return rendition;
}

// Plain lines where their style asks for it, else in the colours of their ends.
void Host_Session::draw_lines(const std::vector<Device_Line>& lines) {
  if (lines.empty()) return;
  KT_Rendition rendition = line_rendition();
  set_color(rendition, line_color);
  const bool plain = drawing_.style == Style::hidden_line || drawing_.lines.outline ||
                     drawing_.lines.antialias;
  for (const Device_Line& line : lines) {
    if (plain)
      call<KT_Action::Draw_2DI_Polyline>(rendition, 2, line.points.data());
    else
      call<KT_Action::Draw_2DI_Gouraud_Polyline>(rendition, 2, line.points.data(),
                                                 line.colors.data());
  }
}

void Host_Session::draw_dots(const std::vector<Device_Dots>& dots) {
  for (const Device_Dots& part : dots) {
    KT_Rendition rendition = rendition_;
    set_color(rendition, part.color);
    call<KT_Action::Draw_2DI_Polymarker>(rendition, static_cast<int>(part.points.size()),
                                         part.points.data());
  }
}

void Host_Session::set_color(KT_Rendition& rendition, const KT_RGB32& color) const {
  rendition.set_color(color, false);
  if (palette_)
    rendition.edit(&KT_Rendition_Data::material).color_index =
        static_cast<std::uint32_t>(palette_.closest_match(color, false)) & 255;
}

Picture Host_Session::read_picture() {
  Picture picture(size_.width, size_.height);
  const auto own = variant_.direct_color ? KT_Image_Format::rgb32 : KT_Image_Format::mapped;
  KT_Shared_Image image;  // left to the module to make: what stays null was not read
  const KT_DCI_Point left_top{0, size_.height - 1, 0}, right_bottom{size_.width - 1, 0, 0};
  call<KT_Action::Get_Image>(rendition_, &left_top, &right_bottom, &own, &image);
  if (!image || image->format != own || image->width != size_.width ||
      image->height != size_.height)
    fail("the module hands back no picture");
  for (int y = 0; y < size_.height; ++y) {
    const std::uint8_t* row = image->scan_lines[y];
    std::uint8_t* byte = picture.row(y);
    for (int x = 0; x < size_.width; ++x) {
      const KT_RGB32 pixel = variant_.direct_color ? reinterpret_cast<const KT_RGB32*>(row)[x]
                                                   : palette_->entries[row[x]].color;
      *byte++ = pixel.red;
      *byte++ = pixel.green;
      *byte++ = pixel.blue;
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
