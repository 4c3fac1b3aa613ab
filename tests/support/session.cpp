#include "tests/support/session.h"

#include <stdexcept>

namespace support {

const char* name_of(Variant variant) {
  static const char* const names[] = {"RGB_Alpha", "RGB",         "Mapped",
                                      "Mapped_Z",  "RGB_Alpha_Z", "RGB_Z"};
  return names[zbuffer::index_of(variant)];
}

Session::Session(const Setup& setup) {
  std::string error;
  if (!module_.load(TEST_MODULE, error)) throw std::runtime_error(error);
  handle_ = module_.make_renderer(setup.source);
  const bool mapped = zbuffer::is_mapped(setup.variant);
  color.reset(new Guarded_Image(setup.size,
                                mapped ? KT_Image_Format::mapped : KT_Image_Format::rgb32, 3));
  actions().bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  KT_Renderer_Options& options = handle_->options();
  options.set_window(setup.origin, setup.size);
  options.set_color_system(mapped ? KT_Color_System::mapped : KT_Color_System::direct);
  options.set_buffer_depth(zbuffer::has_depth(setup.variant) ? 16 : 0);
  options.set_alpha_blending(zbuffer::is_alpha(setup.variant));
  options.set_palette(setup.palette);
  option(L"Color Buffer").set(KT_Option_Value(static_cast<const KT_Counted*>(color.get())));
  option(L"Use Mask").set(KT_Option_Value(setup.use_mask));
  option(L"Force Merge Control On").set(KT_Option_Value(setup.force_merge));
  handle_->establish();
  rendition = KD_Default_Rendition({setup.origin.x, setup.origin.x + setup.size.x - 1,
                                    setup.origin.y, setup.origin.y + setup.size.y - 1});
  material().color = {10, 20, 200, 255};
  material().color_index = 50;
  material().contrast_color = {250, 130, 5, 255};
  material().contrast_index = 60;
  clear();
}

Session::~Session() {
  EXPECT_TRUE(color->guards_intact(!full_rows_written)) << "in the colour image";
  if (depth) EXPECT_TRUE(depth->guards_intact(!full_rows_written)) << "in the depth image";
  rendition.release();
  handle_.release();
}

void Session::create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image) {
  auto& self = *static_cast<Session*>(object);
  ++self.frame_buffers_made;
  auto& made = *format == KT_Image_Format::depth ? self.depth : self.color;
  made.reset(new Guarded_Image({width, height}, *format, 3));
  image->reset(made.get());
}

KT_Option& Session::option(const wchar_t* name) const {
  KT_Option* found = handle_->option_table().find(KT_String(name));
  if (found == nullptr) throw std::runtime_error("the renderer lacks an option");
  return *found;
}

void Session::clear(std::uint32_t depth_value) {
  color->fill(mapped() ? 238 : 0x4D302010);
  if (depth) depth->fill(depth_value);
}

void Session::set_depth_test(unsigned mode) {
  using Setter = void(KT_Renderer_Data*, const unsigned*);
  reinterpret_cast<Setter*>(option(L"ZBuffer Test").value->pointer())(handle_.get(), &mode);
}

void Session::set_depth_write(std::uint8_t write) {
  using Setter = void(KT_Renderer_Data*, std::uint8_t);
  reinterpret_cast<Setter*>(option(L"ZBuffer Write").value->pointer())(handle_.get(), write);
}

std::uint32_t Session::own_color() const {
  return mapped() ? rendition->material->color_index : rendition->material->color.word();
}

std::uint32_t Session::contrast_color() const {
  return mapped() ? rendition->material->contrast_index
                  : rendition->material->contrast_color.word();
}

heap::Blocks draw(const Session& session, Layer layer, Kind kind, const Strip& strip) {
  const int count = static_cast<int>(strip.points.size());
  std::vector<KT_Point> floats;
  for (const KT_DCI_Point& p : strip.points) {
    floats.push_back(
        {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
  }
  const heap::Blocks before = heap::allocated();
  const auto call = [&]<KT_Action flat, KT_Action colorized, KT_Action gouraud>(const auto* p) {
    const KT_Action_Table& actions = session.actions();
    const KT_RGB32* colors = strip.colors.data();
    if (kind == Kind::flat) {
      actions.call<flat>(session.rendition, count, p);
    } else if (kind == Kind::colorized) {
      actions.call<colorized>(session.rendition, count, p, colors, strip.single_color);
    } else {
      actions.call<gouraud>(session.rendition, count, p, colors);
    }
  };
  using enum KT_Action;
  if (layer == Layer::float_any) {
    call.operator()<Draw_2D_Polytriangle, Draw_2D_Colorized_Polytriangle,
                    Draw_2D_Gouraud_Polytriangle>(floats.data());
  } else if (layer == Layer::float_inside) {
    call.operator()<Draw_DC_Polytriangle, Draw_DC_Colorized_Polytriangle,
                    Draw_DC_Gouraud_Polytriangle>(floats.data());
  } else if (layer == Layer::int_any) {
    call.operator()<Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle,
                    Draw_2DI_Gouraud_Polytriangle>(strip.points.data());
  } else {
    call.operator()<Draw_DCI_Polytriangle, Draw_DCI_Colorized_Polytriangle,
                    Draw_DCI_Gouraud_Polytriangle>(strip.points.data());
  }
  return heap::allocated() - before;
}

Strip strip_of(std::vector<KT_DCI_Point> points, KT_RGB32 color) {
  Strip strip{std::move(points), {}, false};
  strip.colors.assign(strip.points.size(), color);
  return strip;
}

KT_Contour_Set contour(const std::vector<KT_Point>& points) {
  return {static_cast<int>(points.size()), points.data(), false};
}

}  // namespace support
