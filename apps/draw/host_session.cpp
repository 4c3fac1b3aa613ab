#include "apps/draw/host_session.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>

#include "apps/common/errors.h"
#include "apps/draw/texture_materials.h"
#include "apps/load/image_scale.h"

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

// Rounded as the actions of single precision do it. Those of double precision round by a finer
// rule: whole numbers come out of it as they are, so that parts fit the whole.
double rounded(float value) {
  return std::trunc(value >= 0 ? value + 0.5f : value - 0.499999f);
}

KT_Point_D in_double(const KT_Point& point) {
  return {rounded(point.x), rounded(point.y), rounded(point.z)};
}

KT_Point_D in_double(const KT_DCI_Point& point) {
  return {static_cast<double>(point.x), static_cast<double>(point.y), static_cast<double>(point.z)};
}

constexpr int aligned_down(int value) {
  return value - value % Host_Session::part_alignment;
}

}  // namespace

Host_Session::Host_Session(const std::string& module_path, const Variant& variant, const Size& size,
                           const Drawing& drawing, const Color& background)
    : module_path_(module_path),
      variant_(variant),
      size_(size),
      drawing_(drawing),
      background_(device_color(background)),
      part_{0, size.width - 1, 0, size.height - 1},
      picture_size_(size) {
  std::string error;
  if (!module_.load(module_path_, error))
    fail(without_name(error, module_path_), "--module names another");
  renderer_ = module_.make_renderer(nullptr);
  if (!renderer_) fail("the module makes no renderer");
  rendition_ = KD_Default_Rendition(part_);
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
  if (drawing_.clip) option(L"Use Mask").set(KT_Option_Value(true));
  renderer_->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  if (renderer_->establish_all() != 0) fail("the module refuses the configuration");
  if (out_of_memory_) throw std::bad_alloc();  // nothing may be drawn without its buffers
  configure_rendition();
}

void Host_Session::configure_palette() {
  palette_ = cube_palette(drawing_.cube_steps);
  renderer_->options().set_palette(palette_);
}

// Blending makes the mapped variants leave out what a texture does not show at all.
void Host_Session::set_textures(const Model& model) {
  textures_ = texture_materials(model, drawing_.textures.filter);
  const bool cuts_out = std::any_of(model.textures.begin(), model.textures.end(),
                                    [](const Texture& texture) { return texture.sees_through; });
  if (variant_.direct_color || !cuts_out) return;
  renderer_->options().set_alpha_blending(true);
  if (renderer_->establish_all() != 0) fail("the module refuses the configuration");
}

void Host_Session::set_background_picture(Image image) {
  const Texel paper{background_.red, background_.green, background_.blue, 255};
  background_picture_ = flattened(std::move(image), paper);
}

void Host_Session::show_part(const KT_Int_Rectangle& part, const Size& picture) {
  in_parts_ = true;
  picture_size_ = picture;
  part_ = part;
  origin_ = {aligned_down(part.left), aligned_down(part.bottom)};
  option(L"Enable Tiling").set(KT_Option_Value(true));
  renderer_->options().set_window(origin_, {size_.width, size_.height});
  if (renderer_->establish_all() != 0) fail("the module refuses the configuration");
  rendition_.set_hard_clip_unrestricted(part_, false);
  if (drawing_.clip)
    rendition_.edit(&KT_Rendition_Data::display_context).complex_clip =
        drawing_.clip.contours_in(picture);
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
  if (drawing_.clip) context.complex_clip = drawing_.clip.contours_in(size_);
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
    // Multiples of 8, so that dithers are the same in every row and in buffers of every width.
    const std::int32_t row_bytes = (width * bytes_a_pixel(*format) + 7) / 8 * 8;
    *image = KT_Shared_Image(width, height, *format, row_bytes, nullptr, false);
  } catch (const std::bad_alloc&) {
    static_cast<Host_Session*>(session)->out_of_memory_ = true;
  }
}

void Host_Session::draw(const Content& content) {
  draw_picture([&] {
    if (drawing_.style == Style::hidden_line)
      draw_hiding_faces(content.faces);
    else
      draw_faces(content.faces);
    draw_lines(content.lines);
    draw_dots(content.dots);
  });
}

void Host_Session::draw_by_hand(const Drawing_By_Hand& drawing) {
  draw_picture([&] { drawing(*renderer_, rendition_); });
}

void Host_Session::draw_picture(const std::function<void()>& drawing) {
  KD_Reset_Undrawn_Count();
  renderer_->begin_picture_all(nullptr);
  clear();
  draw_background_picture();
  drawing();
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

// As far away as can be, and whole: inks and clips are the model's.
void Host_Session::draw_background_picture() {
  if (background_picture_.texels.empty()) return;
  constexpr int farthest = 65535;
  const Image image = covering(background_picture_, picture_size_, part_);
  const KT_Shared_Image pixels = shared_image(image);
  KT_Rendition rendition = KD_Default_Rendition(part_);
  rendition.edit(&KT_Rendition_Data::display_context).depth_enabled = variant_.depth ? 1 : 0;
  const KT_DCI_Point left_top{part_.left, part_.top, farthest};
  const KT_DCI_Point right_bottom{part_.right, part_.bottom, farthest};
  call<KT_Action::Draw_DCI_RGB32_Image>(rendition, &left_top, &right_bottom, pixels->row_bytes,
                                        reinterpret_cast<const KT_RGB32*>(pixels->scan_lines[0]), 0,
                                        nullptr);
}

// The actions of double precision take the clip from the frame buffer's corner on.
KT_Rendition Host_Session::strip_rendition() const {
  KT_Rendition rendition = rendition_;
  if (!in_parts_ || !drawing_.clip) return rendition;
  KT_Contour_Set& clip = rendition.edit(&KT_Rendition_Data::display_context).complex_clip;
  for (auto& contour : clip.writable().contours)
    for (KT_Point& point : contour)
      point = {point.x - static_cast<float>(origin_.x), point.y - static_cast<float>(origin_.y), 0};
  return rendition;
}

template <KT_Action whole, KT_Action in_parts, class Point, class... More>
void Host_Session::call_strip(const KT_Rendition& rendition, std::span<const Point> points,
                              More... more) {
  const int count = static_cast<int>(points.size());
  if (!in_parts_) return call<whole>(rendition, count, points.data(), more...);
  points_.clear();
  for (const Point& point : points) points_.push_back(in_double(point));
  call<in_parts>(rendition, count, points_.data(), more...);
}

void Host_Session::draw_faces(const Device_Geometry& geometry) {
  KT_Rendition rendition = strip_rendition();
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
  KT_Rendition rendition = strip_rendition();
  rendition.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = hidden_line_offset;
  set_color(rendition, background_);
  for (const Device_Strip& strip : geometry.strips()) {
    const auto points = geometry.points(strip);
    if (geometry.mode() == Mode::polygons)
      call<KT_Action::Draw_2D_Polygon>(rendition, static_cast<int>(points.size()), points.data(),
                                       nullptr);
    else
      call_strip<KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2DD_Polytriangle>(rendition,
                                                                                    points);
  }
}

// Strips of one texture mostly follow each other: a rendition serves all of them.
void Host_Session::draw_strips(const KT_Rendition& rendition, const Device_Geometry& geometry) {
  KT_Rendition textured;
  std::uint32_t material = no_texture;
  bool in_reach = true;
  for (const Device_Strip& strip : geometry.strips()) {
    if (!strip.textured()) {
      draw_strip(rendition, geometry, strip);
      continue;
    }
    if (!textured || strip.material != material || strip.in_reach != in_reach) {
      material = strip.material;
      in_reach = strip.in_reach;
      textured = rendition;
      textured.edit(&KT_Rendition_Data::material).basic_material = textures_.at(material);
      // What lies out of reach is left to the general routines, which count without limits.
      if (drawing_.textures.perspective_correct || !in_reach)
        textured.edit(&KT_Rendition_Data::misc_attributes).texture_options =
            KT_Misc_Attributes::perspective_bit;
    }
    draw_textured_strip(textured, geometry, strip);
  }
}

void Host_Session::draw_strip(const KT_Rendition& rendition, const Device_Geometry& geometry,
                              const Device_Strip& strip) {
  const auto points = geometry.points(strip);
  const auto colors = geometry.colors(strip);
  switch (geometry.mode()) {
    case Mode::shaded:
      return call_strip<KT_Action::Draw_2D_Gouraud_Polytriangle,
                        KT_Action::Draw_2DD_Gouraud_Polytriangle>(rendition, points, colors.data());
    case Mode::flat:
      return call_strip<KT_Action::Draw_2D_Colorized_Polytriangle,
                        KT_Action::Draw_2DD_Colorized_Polytriangle>(rendition, points,
                                                                    colors.data(), false);
    case Mode::polygons: {
      // There is no action of double precision: the clip is that of the picture.
      KT_Rendition own = rendition;
      if (in_parts_ && drawing_.clip)
        own.edit(&KT_Rendition_Data::display_context).complex_clip =
            rendition_->display_context->complex_clip;
      return call<KT_Action::Draw_2D_Polygon>(own, static_cast<int>(points.size()), points.data(),
                                              colors.data());
    }
  }
}

void Host_Session::draw_textured_strip(const KT_Rendition& rendition,
                                       const Device_Geometry& geometry, const Device_Strip& strip) {
  constexpr int records_a_point = 1;
  const auto points = geometry.points(strip);
  const Strip_Texture texture = geometry.texture(strip);
  even_w_.assign(points.size(), 1);
  const float* w = drawing_.textures.perspective_correct ? texture.w.data() : even_w_.data();
  call_strip<KT_Action::Draw_2D_Textured_Polytriangle, KT_Action::Draw_2DD_Textured_Polytriangle>(
      rendition, points, geometry.colors(strip).data(), texture.places.data(), records_a_point, w,
      nullptr);
}

KT_Rendition Host_Session::line_rendition() const {
  KT_Rendition rendition = strip_rendition();
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
  const bool plain =
      drawing_.style == Style::hidden_line || drawing_.lines.outline || drawing_.lines.antialias;
  for (const Device_Line& line : lines) {
    const std::span<const KT_DCI_Point> ends = line.points;
    if (plain)
      call_strip<KT_Action::Draw_2DI_Polyline, KT_Action::Draw_2DD_Polyline>(rendition, ends);
    else
      call_strip<KT_Action::Draw_2DI_Gouraud_Polyline, KT_Action::Draw_2DD_Gouraud_Polyline>(
          rendition, ends, line.colors.data());
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
  const auto own = variant_.direct_color ? KT_Image_Format::rgb32 : KT_Image_Format::mapped;
  KT_Shared_Image image;  // left to the module to make: what stays null was not read
  const KT_DCI_Point left_top{origin_.x, origin_.y + size_.height - 1, 0};
  const KT_DCI_Point right_bottom{origin_.x + size_.width - 1, origin_.y, 0};
  call<KT_Action::Get_Image>(rendition_, &left_top, &right_bottom, &own, &image);
  if (!image || image->format != own || image->width != size_.width ||
      image->height != size_.height)
    fail("the module hands back no picture");
  Picture picture(part_.right - part_.left + 1, part_.top - part_.bottom + 1);
  for (int y = 0; y < picture.height; ++y) {
    const std::uint8_t* row = image->rows[part_.top - origin_.y - y];
    std::uint8_t* byte = picture.row(y);
    for (int x = part_.left - origin_.x; x <= part_.right - origin_.x; ++x) {
      const KT_RGB32 pixel = variant_.direct_color ? reinterpret_cast<const KT_RGB32*>(row)[x]
                                                   : palette_->entries[row[x]].color;
      *byte++ = pixel.red;
      *byte++ = pixel.green;
      *byte++ = pixel.blue;
    }
  }
  return picture;
}

void Host_Session::present(const Window& window) {
  window_ = window;
  renderer_->actions.bind<KT_Action::Present_Image>(this, present_image);
  renderer_->update_all({0, size_.width - 1, 0, size_.height - 1});
}

void Host_Session::present_image(void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
                                 const KT_Shared_Image* image, int target_x, int target_y) {
  const Host_Session& session = *static_cast<Host_Session*>(object);
  session.window_(
      {*image, {start->x, end->x, end->y, start->y}, target_x, target_y, session.palette_});
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
