// The configuration pass: which routine an action has, which images are kept, and
// the colours of merge control.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/support/session.h"

namespace {

using namespace support;
std::vector<KT_RGB32> searched;  // the first of them: what tests of memory do is not kept

}  // namespace

// Stands in front of the framework's search, to see what is looked for.
int KT_Palette::closest_match(const KT_RGB32& color, bool) const {
  if (searched.size() < 200) searched.push_back(color);
  const auto square = [](int difference) { return difference * difference; };
  const auto distance = [&](const KT_Palette_Entry& entry) {
    return square(entry.color.red - color.red) + square(entry.color.green - color.green) +
           square(entry.color.blue - color.blue);
  };
  const KT_Palette_Entry* entries = (*this)->entries;
  return static_cast<int>(
      std::ranges::min_element(entries, entries + (*this)->entry_count, {}, distance) - entries);
}

namespace {

enum Cell {
  own,       // the module's
  standard,  // the general routine
  kept       // not touched
};

using enum KT_Action;
using Cells = std::array<Cell, 6>;
/// What is not the module's own in some variant.
const std::map<KT_Action, Cells> odd_cells = [] {
  std::map<KT_Action, Cells> cells = {
      // RGB_Alpha, RGB, Mapped, Mapped_Z, RGB_Alpha_Z, RGB_Z
      {Draw_2DI_Polymarker, {own, own, own, kept, own, own}},
      {Draw_DCI_RGB32_Image, {own, own, standard, standard, own, own}},
      {Draw_DCI_Index8_Image, {standard, standard, own, own, standard, standard}},
  };
#define IS_KEPT_WITHOUT_DEPTH(name, signature) cells[name] = {kept, kept, kept, own, own, own};
  KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(IS_KEPT_WITHOUT_DEPTH)
  IS_KEPT_WITHOUT_DEPTH(Put_Depth, )
  IS_KEPT_WITHOUT_DEPTH(Get_Depth, )
  return cells;
}();

bool is_double(KT_Action action) {
  static constexpr std::string_view names[] = {
#define NAME(name, signature) #name,
      KORVEL_ACTIONS(NAME)};
  return names[static_cast<std::size_t>(action)].starts_with("Draw_2DD_");
}

using Function = void (*)();
void mark() {}

bool in_module(Function function) {
  Dl_info info;
  return dladdr(reinterpret_cast<void*>(function), &info) != 0 &&
         std::string_view(info.dli_fname) == TEST_MODULE;
}

bool right_record(const Session& session, KT_Action action, Cell cell) {
  const auto& [object, function, extra, valid] = session.actions()[action];
  if (cell == kept) return function == &mark && object == nullptr && extra == 5 && valid == 7;
  const Function general = action == Draw_DCI_RGB32_Image
                               ? reinterpret_cast<Function>(&KD_Standard_Draw_DCI_RGB32_Image)
                               : reinterpret_cast<Function>(&KD_Standard_Draw_DCI_Index8_Image);
  return object == &session.renderer() && extra == 0 && valid == 1 &&
         (cell == own ? in_module(function) : function == general);
}

/// Configures for `variant`, with a mark in the record of every action that may be bound.
void configure(const Session& session, Variant variant) {
  session.options().set_color_system(is_mapped(variant) ? KT_Color_System::mapped
                                                        : KT_Color_System::direct);
  session.options().set_buffer_depth(has_depth(variant) ? 1 : 0);
  session.options().set_alpha_blending(is_alpha(variant));
  for (int i = 0; i < static_cast<int>(Create_Frame_Buffer); ++i) {
    session.actions().records[i] = {nullptr, &mark, 5, 7};
  }
  ASSERT_EQ(session.establish(), 0);
}

TEST(Establish, BindsByVariant) {
  for (const bool tiling : {false, true}) {
    Session session;
    session.option(L"Enable Tiling").set(KT_Option_Value(tiling));
    for (const Variant variant : all_variants) {
      configure(session, variant);
      for (int i = 0; i < static_cast<int>(Create_Frame_Buffer); ++i) {
        const auto action = static_cast<KT_Action>(i);
        const auto odd = odd_cells.find(action);
        Cell cell = is_double(action) && !tiling ? kept : own;
        if (odd != odd_cells.end()) cell = odd->second[static_cast<std::size_t>(variant)];
        EXPECT_TRUE(right_record(session, action, cell)) << name_of(variant) << ", action " << i;
      }
      // Without depth the clear does nothing.
      if (!has_depth(variant)) session.actions().call<Clear_Depth>(session.rendition);
    }
    // What tiling has bound stays bound.
    session.option(L"Enable Tiling").set(KT_Option_Value(false));
    session.establish();
    EXPECT_EQ(in_module(session.actions()[Draw_2DD_Polyline].function), tiling);
  }
}

TEST(Establish, KeepsImagesThatFit) {
  Session session({.variant = Variant::rgb_z, .use_mask = true});
  const Software_Z_Buffer& renderer = session.renderer();
  const auto option_in_use = [&] { return session.option(L"Color Buffer").value->pointer(); };
  EXPECT_EQ(renderer.color_image.get(), option_in_use());
  EXPECT_EQ(session.frame_buffers_made, 1);  // depth; colour was given

  session.display().complex_clip = contour({{0, 0, 0}, {9, 0, 0}, {0, 7, 0}});
  draw(session, Layer::int_any, Kind::flat, strip_of({{0, 0, 9}, {9, 0, 9}, {0, 7, 9}}));
  const Pixels color = session.color->pixels(), depth = session.depth->pixels();
  const KT_Shared_Image images[] = {renderer.color_image, renderer.depth_image};
  ASSERT_EQ(renderer.mask_cache->count, 1);
  session.establish();
  EXPECT_TRUE(renderer.color_image == images[0] && renderer.depth_image == images[1]);
  EXPECT_EQ(renderer.mask_cache->count, 0);
  EXPECT_TRUE(same_pixels(session.color->pixels(), color, 12));
  EXPECT_TRUE(same_pixels(session.depth->pixels(), depth, 12));

  session.options().set_window({-40, 25}, {13, 8});  // another size: both anew
  session.establish();
  EXPECT_EQ(session.frame_buffers_made, 3);
  EXPECT_EQ(renderer.color_image.get(), option_in_use());
  EXPECT_TRUE(renderer.window_extent == (KT_Int_XY{13, 8}));
  EXPECT_TRUE(renderer.device_origin == (KT_Int_XY{-40, 25}));
  EXPECT_EQ(images[0]->reference_count, 1U);  // the renderer has let go of the old ones
  EXPECT_EQ(images[1]->reference_count, 1U);

  session.options().set_local_coordinates(true);
  session.options().set_buffer_depth(0);
  session.options().set_color_system(KT_Color_System::mapped);
  session.establish();
  EXPECT_TRUE(renderer.device_origin == (KT_Int_XY{0, 0}));
  EXPECT_FALSE(renderer.depth_image);
  EXPECT_EQ(renderer.color_image->format, KT_Image_Format::mapped);
  EXPECT_EQ(session.option(L"Depth Buffer").value->pointer(), nullptr);
}

TEST(Establish, LocalCoordinatesBeginAtTheWindow) {
  for (const bool local : {false, true}) {
    Session session({.origin = {5, 3}, .padding = 0});
    session.options().set_local_coordinates(local);
    session.establish();
    session.display().hard_clip = {0, 11, 0, 7};  // cut to the image
    session.actions().call<Clear_Color>(session.rendition);
    const std::string whole(12, '#'), left = "#######.....", none(12, '.');
    EXPECT_EQ(drawn(*session.color),
              local ? std::vector(8, whole)
                    : (std::vector{none, none, none, left, left, left, left, left}));
  }
}

TEST(Establish, AGivenImageReplacesTheOneInUseIfItFits) {
  Session session;
  for (const KT_Int_XY size : {KT_Int_XY{12, 8}, KT_Int_XY{12, 9}}) {
    const KT_Shared_Image given(size.x, size.y, KT_Image_Format::rgb32, size.x * 4, nullptr, false);
    KT_Option& option = session.option(L"Color Buffer");
    option.set(KT_Option_Value(static_cast<const KT_Counted*>(given.get())));
    session.establish();
    EXPECT_EQ(session.renderer().color_image == given, size.y == 8);
    EXPECT_EQ(option.value->pointer(), session.renderer().color_image.get());
    const auto* in_use = session.renderer().color_image.get();
    option.set(KT_Option_Value(nullptr));  // taken out, it stays in use
    session.establish();
    EXPECT_EQ(session.renderer().color_image.get(), in_use);
  }
  // An unknown colour system takes any format, and makes mapped images.
  session.options().set_color_system(static_cast<KT_Color_System>(2));
  session.establish();
  EXPECT_EQ(session.renderer().color_image->format, KT_Image_Format::rgb32);
  session.options().set_window({}, {5, 5});
  session.establish();
  EXPECT_EQ(session.renderer().color_image->format, KT_Image_Format::mapped);
}

// The search for the substitute index starts at the key's palette colour and walks each channel.
TEST(Establish, MergeColours) {
  const KT_RGB32 white{255, 255, 255, 255}, mixed{3, 248, 100, 9};
  const KT_RGB32 two[] = {{0, 0, 0, 255}, white};
  Session session;
  const Software_Z_Buffer& renderer = session.renderer();
  const auto with_key = [&](const KT_Palette& palette, int red, int green, int blue) {
    session.options().set_palette(palette);
    session.option(L"Merge Control Background Color").set(KT_Option_Value(red, green, blue));
    searched.clear();
    session.establish();
  };
  const std::int32_t scale = session.options().palette()->color_cube->red_scale;
  with_key({two, 2, nullptr}, 255, 255, 255);
  EXPECT_EQ(renderer.color_cube.red_scale, scale);  // of the last palette that had a cube
  EXPECT_EQ(renderer.merge_background_index, 1);
  EXPECT_EQ(renderer.merge_substitute_index, 0);
  EXPECT_EQ(searched.size(), 27U);  // of 255, 250, ... 125 is the first nearer to black
  EXPECT_EQ(searched.back(), (KT_RGB32{125, 125, 125, 255}));
  // What a palette lacks stays as it was.
  const KT_Palette cube = KD_Cube_Palette();
  EXPECT_EQ(renderer.color_cube.red_stride, cube->color_cube->red_stride);
  with_key({}, 0, 0, 0);
  EXPECT_EQ(renderer.merge_background_index, 1);

  with_key({&white, 1, nullptr}, 255, 255, 255);
  EXPECT_EQ(renderer.merge_background_index, renderer.merge_substitute_index);
  ASSERT_EQ(searched.size(), 104U);  // the key and 103 rounds: down to 0, up to 255, one back
  EXPECT_EQ(searched[51], (KT_RGB32{0, 0, 0, 255}));
  EXPECT_EQ(searched[102], white);
  EXPECT_EQ(searched[103], (KT_RGB32{250, 250, 250, 255}));

  // The search begins at the entry, not at the key; a channel of 248 goes up past 250 first.
  with_key({&mixed, 1, nullptr}, 300, 10, 0);
  EXPECT_EQ(searched[0], (KT_RGB32{0, 10, 44, 255}));
  EXPECT_EQ(searched[0], renderer.merge_background_color);
  EXPECT_EQ(searched[1], (KT_RGB32{8, 253, 105, 255}));
  EXPECT_EQ(searched[2], (KT_RGB32{13, 248, 110, 255}));
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{1, 10, 44, 255}));
  with_key({&mixed, 1, nullptr}, 1, 2, 200);
  with_key({two, 2, nullptr}, 255, 255, 255);
  with_key({}, 1, 2, 200);  // without a palette the indices stay
  EXPECT_EQ(renderer.merge_background_index, 1);
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{199, 2, 1, 255}));
}

}  // namespace
