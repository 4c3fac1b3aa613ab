// Calls that draw nothing: images that are missing, actions kept from another configuration,
// exceptions on the way. Some general routines of the test program stand before the framework's.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "host/application.h"
#include "tests/support/session.h"

namespace {

using namespace support;
using enum KT_Action;

int handed_out = 0;
const float* floats_handed_out = nullptr;

}  // namespace

void KD_Standard_Draw_2DI_Polymarker(KT_Renderer_Data*, const KT_Rendition&, int,
                                     const KT_DCI_Point*) {
  ++handed_out;
}
void KD_Standard_Draw_DCI_Polytriangle(KT_Renderer_Data*, const KT_Rendition&, int,
                                       const KT_DCI_Point*) {
  ++handed_out;
}
void KD_Standard_Draw_2D_Textured_Polytriangle(KT_Renderer_Data*, const KT_Rendition&, int,
                                               const KT_Point*, const KT_RGB32*,
                                               const KT_Parameter*, int, const float* floats,
                                               const KT_Vector*) {
  ++handed_out;
  floats_handed_out = floats;
}

namespace {

/// A session whose host makes images of some formats alone.
struct Poor_Session : Session {
  std::vector<KT_Image_Format> made;
  KT_Image_Format refused = KT_Image_Format::none;
  int window_width = 12;

  explicit Poor_Session(Variant variant, bool use_mask = false)
      : Session({.variant = variant, .use_mask = use_mask}) {}

  /// Gives the renderer no image, and configures it for a window of another size.
  void reconfigure(Variant variant, std::vector<KT_Image_Format> formats) {
    made = std::move(formats);
    actions().bind<Create_Frame_Buffer>(
        this, [](void* object, int width, int height, const KT_Image_Format* format,
                 KT_Shared_Image* image) {
          auto& self = *static_cast<Poor_Session*>(object);
          if (*format == self.refused) throw std::bad_alloc();
          image->release();
          if (std::ranges::find(self.made, *format) == self.made.end()) return;
          auto& kept = *format == KT_Image_Format::depth ? self.depth : self.color;
          kept.reset(new Guarded_Image({width, height}, *format, 2));
          kept->fill(77);
          image->reset(kept.get());
        });
    depth.release();
    options().set_window({}, {++window_width, 9});
    options().set_color_system(is_mapped(variant) ? KT_Color_System::mapped
                                                  : KT_Color_System::direct);
    options().set_buffer_depth(has_depth(variant) ? 16 : 0);
    options().set_alpha_blending(is_alpha(variant));
    option(KT_Z_Buffer_Option::color_buffer).set(KT_Option_Value(nullptr));
    EXPECT_EQ(establish(), 0);
  }

  /// Calls the actions of `variant`, inside and across the hard clip.
  void draw_all(Variant variant) {
    const std::vector<KT_DCI_Point> points = {{2, 1, 9}, {9, 7, 9}, {3, 6, 9}, {20, 3, 9}};
    const std::vector<KT_RGB32> colors(64, {9, 200, 7, 100});
    const std::vector<KT_Parameter> parameters(4);
    const auto* indices = reinterpret_cast<const std::uint8_t*>(colors.data());
    const auto* depths = reinterpret_cast<const std::uint16_t*>(colors.data());
    for (const Layer layer : all_layers) {
      const auto part = points.begin() + (clips(layer) ? 4 : 3);
      for (const Kind kind : all_kinds) draw(*this, layer, kind, {{points.begin(), part}, colors});
      if (has_depth(variant))
        call_by_layer<Draw_2D_Textured_Polytriangle, Draw_DC_Textured_Polytriangle,
                      Draw_2DI_Textured_Polytriangle, Draw_DCI_Textured_Polytriangle>(
            *this, layer, {points.begin(), part}, colors.data(), parameters.data(), 1, nullptr,
            nullptr);
    }
    const std::vector<KT_DCI_Point> inside(points.begin(), points.begin() + 3);
    call<Draw_2DI_Polyline>(points), call<Draw_DCI_Polyline>(inside);
    call<Draw_2DI_Colorized_Polyline>(points, colors.data(), false);
    call<Draw_DCI_Colorized_Polyline>(inside, colors.data(), true);
    call<Draw_2DI_Gouraud_Polyline>(points, colors.data());
    call<Draw_DCI_Gouraud_Polyline>(inside, colors.data());
    if (variant != Variant::mapped_z) call<Draw_2DI_Polymarker>(inside);
    const KT_DCI_Point start{2, 7, 9}, end{9, 0, 700};
    actions().call<Draw_DCI_Dot>(rendition, &start, nullptr);
    if (is_mapped(variant)) {
      actions().call<Draw_DCI_Index8_Image>(rendition, &start, &end, 8, indices);
    } else {
      actions().call<Draw_DCI_RGB32_Image>(rendition, &start, &end, 32, colors.data(), 0, nullptr);
    }
    if (has_depth(variant) && std::ranges::find(made, KT_Image_Format::depth) == made.end())
      actions().call<Put_Depth>(rendition, &start, &end, 16, depths);
  }

  /// What a read-back leaves in a handle that held an image.
  template <KT_Action action>
  KT_Shared_Image read(KT_DCI_Point end = {3, 0, 0}) {
    KT_Shared_Image image(4, 4, KT_Image_Format::rgb32, 16, nullptr, false);
    const KT_DCI_Point start{0, 3, 0};
    const KT_Image_Format own = KT_Image_Format::renderer_own;
    actions().call<action>(rendition, &start, &end, &own, &image);
    return image;
  }

  bool untouched() const {
    const auto is_blank = [](const Guarded_Image& image) {
      return std::ranges::all_of(image.pixels(), [&](auto p) { return p == image.untouched(); });
    };
    return (!color || is_blank(*color)) && (!depth || is_blank(*depth));
  }
};

constexpr std::uint32_t all_bits[] = {
    0, KT_Advanced_Options::antialias_bit, KT_Advanced_Options::opaque_image_bit,
    KT_Advanced_Options::alpha_bit, KT_Advanced_Options::edge_bit};

TEST(Missing_Images, ActionsThatNeedThemDoNothing) {
  for (const Variant variant : all_variants) {
    for (const bool masked : {false, true}) {
      Poor_Session session(variant, masked);
      session.material().basic_material = KD_Textured_Material(
          KT_Shared_Image(2, 2, KT_Image_Format::rgb32, 8, nullptr, false), 0, 0, false, false);
      if (masked) session.display().complex_clip = contour({{0, 0, 0}, {13, 0, 0}, {9, 8, 0}});
      const auto own = is_mapped(variant) ? KT_Image_Format::mapped : KT_Image_Format::rgb32;
      const std::vector<KT_Image_Format> no_color{KT_Image_Format::depth}, no_depth{own};
      for (const auto& made : {std::vector<KT_Image_Format>{}, no_color, no_depth}) {
        if (made.size() == 1 && !has_depth(variant)) continue;
        session.reconfigure(variant, made);
        session.display().depth_enabled = 1;
        for (const std::uint32_t bits : all_bits) {
          session.misc().advanced_options.bits = bits;
          session.draw_all(variant);
          EXPECT_TRUE(session.untouched()) << name_of(variant) << " bits " << bits;
        }
        session.display().depth_enabled = 0;
        session.draw_all(variant);
        EXPECT_EQ(static_cast<bool>(session.read<Get_Image>()), made == no_depth);
        EXPECT_EQ(session.untouched(), made != no_depth) << name_of(variant);
        if (has_depth(variant)) {
          EXPECT_EQ(static_cast<bool>(session.read<Get_Depth>()), made == no_color);
          session.actions().call<Clear_Depth>(session.rendition);
        }
        session.actions().call<Clear_Color>(session.rendition);
      }
      session.face().face_pattern = KT_Face_Attributes::first_standard;
      handed_out = 0;
      draw(session, Layer::int_inside, Kind::flat, strip_of({{2, 1, 9}, {9, 7, 9}, {3, 6, 9}}));
      EXPECT_EQ(handed_out, is_mapped(variant));  // goes out all the same
    }
  }
}

TEST(Missing_Images, KeptActionsAreTheFrameworksOrDrawNothing) {
  const auto rgb = KT_Image_Format::rgb32, mapped = KT_Image_Format::mapped;
  const auto depth = KT_Image_Format::depth;
  const float floats[3] = {};
  for (const Variant next : {Variant::rgb, Variant::mapped}) {
    Poor_Session session(Variant::rgb_z);
    session.reconfigure(next, {rgb, mapped});
    handed_out = 0;
    session.misc().advanced_options.bits = KT_Advanced_Options::edge_bit;
    session.call<Draw_2D_Textured_Polytriangle>({{2, 1, 9}, {9, 7, 9}, {3, 6, 9}},
                                                static_cast<const KT_RGB32*>(nullptr), nullptr, 1,
                                                floats, nullptr);
    EXPECT_EQ(handed_out, 1);
    EXPECT_EQ(floats_handed_out, floats);
    const KT_DCI_Point at{1, 1, 5};
    const std::uint16_t value = 7;
    session.actions().call<Put_Depth>(session.rendition, &at, &at, 2, &value);
    EXPECT_FALSE(session.read<Get_Depth>());
    EXPECT_TRUE(session.untouched());
  }
  for (const Variant before : {Variant::rgb, Variant::rgb_z, Variant::rgb_alpha, Variant::mapped}) {
    Poor_Session session(before);
    session.reconfigure(Variant::mapped_z, {mapped, depth});
    handed_out = 0;
    session.call<Draw_2DI_Polymarker>({{11, 0, 3}, {0, 7, 3}});
    EXPECT_EQ(session.untouched(), before != Variant::mapped) << name_of(before);
    session.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = 1;
    session.call<Draw_2DI_Polymarker>({{0, 0, 3}});
    EXPECT_EQ(handed_out, 1);
  }
}

TEST(Missing_Images, NothingIsDrawnUntilTheConfigurationIsComplete) {
  const std::vector both{KT_Image_Format::rgb32, KT_Image_Format::depth};
  Poor_Session session(Variant::rgb_z);
  session.refused = KT_Image_Format::depth;
  EXPECT_THROW(session.reconfigure(Variant::rgb_z, both), std::bad_alloc);
  session.draw_all(Variant::rgb_z);
  EXPECT_TRUE(session.untouched());
  session.refused = KT_Image_Format::none;
  session.reconfigure(Variant::rgb_z, both);
  session.draw_all(Variant::rgb_z);
  EXPECT_FALSE(session.untouched());
}

TEST(Read_Back, RowsThatNoIntCountsLeaveNoImage) {
  for (const Variant variant : {Variant::rgb_z, Variant::mapped_z}) {
    Poor_Session session(variant);
    if (!is_mapped(variant)) {
      EXPECT_FALSE(session.read<Get_Image>({(1 << 30) - 1, 0, 0}));
    }
    EXPECT_FALSE(session.read<Get_Depth>({(1 << 30) - 1, 0, 0}));
  }
}

TEST(Update, TargetsWrapAtTheEndsOfInt) {
  Session session;
  session.options().set_window({INT32_MAX - 3, INT32_MIN + 2}, {12, 8});
  session.establish();
  static KT_Int_XY target;
  session.actions().bind<Present_Image>(nullptr, [](void*, const KT_DCI_Point*, const KT_DCI_Point*,
                                                    const KT_Shared_Image*, int x, int y) {
    target = {x, y};
  });
  KT_Renderer_Data& renderer = session.renderer();
  renderer.update({9, 11, 0, 7});
  EXPECT_EQ(target, (KT_Int_XY{INT32_MIN + 5, INT32_MIN + 2}));
  renderer.update({0, 11, 0, 15});
  EXPECT_EQ(target.y, INT32_MAX - 5);
}

// No guard puts back what a call has changed.
TEST(Exceptions, LeaveTheStateOfTheCallThatTheyEnd) {
  Session session({.variant = Variant::rgb_z, .origin = {40, 25}});
  session.face().face_depth_offset = -7;
  session.misc().advanced_options.bits = KT_Advanced_Options::edge_bit;
  const std::vector<KT_DCI_Point> zigzag(200, {41, 26, 9});
  for (int granted = 0; session.renderer().edge_depth_offset == 0 && granted < 9; ++granted) {
    const heap::Exhausted none_left(granted, heap::Refusal::by_exception);
    EXPECT_THROW(
        session.actions().call<Draw_2DI_Polytriangle>(session.rendition, 200, zigzag.data()),
        std::bad_alloc);
  }
  EXPECT_EQ(session.renderer().edge_depth_offset, -7);

  session.option(KT_Z_Buffer_Option::enable_tiling).set(KT_Option_Value(true));
  session.establish();
  session.actions().bind<Draw_2DI_Polytriangle>(
      &session.renderer(), [](KT_Renderer_Data*, const KT_Rendition&, int, const KT_DCI_Point*) {
        throw std::bad_alloc();
      });
  EXPECT_THROW(session.call<Draw_2DD_Polytriangle>(zigzag), std::bad_alloc);
  EXPECT_EQ(session.renderer().device_origin, (KT_Int_XY{0, 0}));
}

}  // namespace
