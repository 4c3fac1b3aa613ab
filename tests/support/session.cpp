// A renderer from loading to unloading, and the strips that tests draw with it.
#include "tests/support/session.h"

#include <stdexcept>

namespace support {

const char* name_of(Variant variant) {
  static const char* const names[] = {"RGB_Alpha", "RGB",         "Mapped",
                                      "Mapped_Z",  "RGB_Alpha_Z", "RGB_Z"};
  return names[static_cast<int>(variant)];
}

Session::Session(const Configuration& configuration) : padding_(configuration.padding) {
  std::string error;
  if (!module_.load(TEST_MODULE, error)) throw std::runtime_error(error);
  handle_ = module_.make_renderer(configuration.source);
  const auto& [variant, size, origin, use_mask, palette, padding, source] = configuration;
  const bool mapped = is_mapped(variant);
  color.reset(
      new Guarded_Image(size, mapped ? KT_Image_Format::mapped : KT_Image_Format::rgb32, padding));
  actions().bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
  options().set_window(origin, size);
  options().set_color_system(mapped ? KT_Color_System::mapped : KT_Color_System::direct);
  options().set_buffer_depth(has_depth(variant) ? 16 : 0);
  options().set_alpha_blending(is_alpha(variant));
  options().set_palette(palette);
  option(L"Color Buffer").set(KT_Option_Value(static_cast<const KT_Counted*>(color.get())));
  option(L"Use Mask").set(KT_Option_Value(use_mask));
  establish();
  rendition =
      KD_Default_Rendition({origin.x, origin.x + size.x - 1, origin.y, origin.y + size.y - 1});
  material().color = {10, 20, 200, 255};
  material().color_index = 50;
  material().contrast_color = {250, 130, 5, 255};
  material().contrast_index = 60;
  clear();
}

Session::~Session() {
  EXPECT_TRUE(color->guards_intact()) << "colour";
  EXPECT_TRUE(!depth || depth->guards_intact()) << "depth";
  rendition.release();
  handle_.release();
}

void Session::create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image) {
  auto& self = *static_cast<Session*>(object);
  ++self.frame_buffers_made;
  auto& made = *format == KT_Image_Format::depth ? self.depth : self.color;
  made.reset(new Guarded_Image({width, height}, *format, self.padding_));
  image->reset(made.get());
}

KT_Option& Session::option(const wchar_t* name) const {
  KT_Option* found = handle_->option_table().find(KT_String(name));
  return found != nullptr ? *found : throw std::runtime_error("the renderer lacks an option");
}

void Session::clear(std::uint32_t depth_value) {
  color->fill(color->format == KT_Image_Format::mapped ? 238 : 0x4D302010);
  if (depth) depth->fill(depth_value);
}

Legend Session::legend() const {
  const KT_Material& m = *rendition->material;
  const bool mapped = color->format == KT_Image_Format::mapped;
  return {{'#', mapped ? m.color_index : m.color.word()}};
}

Strip strip_of(std::vector<KT_DCI_Point> points, KT_RGB32 color) {
  const std::size_t count = points.size();
  return {std::move(points), std::vector<KT_RGB32>(count, color)};
}

long draw(const Session& session, Layer layer, Kind kind, const Strip& strip) {
  using enum KT_Action;
  const KT_RGB32* const colors = strip.colors.data();
  if (kind == Kind::flat) {
    return call_by_layer<Draw_2D_Polytriangle, Draw_DC_Polytriangle, Draw_2DI_Polytriangle,
                         Draw_DCI_Polytriangle>(session, layer, strip.points);
  }
  if (kind == Kind::colorized) {
    return call_by_layer<Draw_2D_Colorized_Polytriangle, Draw_DC_Colorized_Polytriangle,
                         Draw_2DI_Colorized_Polytriangle, Draw_DCI_Colorized_Polytriangle>(
        session, layer, strip.points, colors, false);
  }
  return call_by_layer<Draw_2D_Gouraud_Polytriangle, Draw_DC_Gouraud_Polytriangle,
                       Draw_2DI_Gouraud_Polytriangle, Draw_DCI_Gouraud_Polytriangle>(
      session, layer, strip.points, colors);
}

KT_Contour_Set contour(const std::vector<KT_Point>& points) {
  return {static_cast<int>(points.size()), points.data(), false};
}

}  // namespace support
