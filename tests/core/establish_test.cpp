// The configuration pass: which routine stands behind which action, which images are kept, and
// the colours of merge control.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>

#include "tests/support/session.h"

namespace {

using namespace support;
std::vector<KT_RGB32> searched;

}  // namespace

// Stands in front of the framework's search, to see what is looked for.
int KT_Palette::closest_match(const KT_RGB32& color, bool) const {
  searched.push_back(color);
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
  bound,     // the module's, or the general routine as long as there is none
  standard,  // the general routine
  kept       // not touched
};
struct Row {
  std::vector<KT_Action> actions;
  Cell cells[6];
};

#define LISTED(name, signature) KT_Action::name,
using enum KT_Action;
const Row rows[] = {
    // RGB_Alpha, RGB, Mapped, Mapped_Z, RGB_Alpha_Z, RGB_Z
    {{KORVEL_STANDARD_POLYTRIANGLES(LISTED) KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(LISTED)
          KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(LISTED)},
     {own, own, own, own, own, own}},
    {{KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(LISTED)}, {kept, kept, kept, bound, bound, bound}},
    {{KORVEL_STANDARD_POLYLINES(LISTED) KORVEL_STANDARD_COLORIZED_POLYLINES(LISTED)
          KORVEL_STANDARD_GOURAUD_POLYLINES(LISTED)},
     {own, own, own, own, own, own}},
    {{Draw_DCI_Dot, Draw_2D_Polygon, Draw_DC_Polygon, Draw_2DI_Polygon, Draw_DCI_Polygon,
      Clear_Color, Get_Image, Clear_Depth},
     {own, own, own, own, own, own}},
    {{Draw_2DI_Polymarker}, {own, own, own, kept, own, own}},
    {{Draw_DCI_RGB32_Image}, {own, own, standard, standard, own, own}},
    {{Draw_DCI_Index8_Image}, {standard, standard, own, own, standard, standard}},
    {{Get_Depth, Put_Depth}, {kept, kept, kept, own, own, own}},
};
const Row tiling_row{{Draw_2DD_Polytriangle, Draw_2DD_Colorized_Polytriangle,
                      Draw_2DD_Gouraud_Polytriangle, Draw_2DD_Textured_Polytriangle,
                      Draw_2DD_Polyline, Draw_2DD_Colorized_Polyline, Draw_2DD_Gouraud_Polyline},
                     {own, own, own, own, own, own}};

using Function = void (*)();
void mark() {}

Function standard_routine(KT_Action action) {
#define AND_ROUTINE(name, signature) \
  if (action == KT_Action::name) return reinterpret_cast<Function>(&KD_Standard_##name);
  KORVEL_STANDARD_ACTIONS(AND_ROUTINE)
  return nullptr;
}

bool in_module(Function function) {
  Dl_info info;
  return dladdr(reinterpret_cast<void*>(function), &info) != 0 &&
         std::string_view(info.dli_fname) == TEST_MODULE;
}

bool right_record(const Session& session, KT_Action action, Cell cell) {
  const auto& [object, function, extra, valid] = session.actions()[action];
  if (cell == kept) return function == &mark && object == nullptr && extra == 5 && valid == 7;
  return object == &session.renderer() && extra == 0 && valid == 1 &&
         ((cell != own && function == standard_routine(action)) ||
          (cell != standard && in_module(function)));
}

void expect_row(const Session& session, Variant variant, const Row& row) {
  for (const KT_Action action : row.actions) {
    EXPECT_TRUE(right_record(session, action, row.cells[zbuffer::index_of(variant)]))
        << name_of(variant) << ", action " << static_cast<int>(action);
  }
}

/// Configures for `variant`, with a mark behind every action that may be bound.
void configure(const Session& session, Variant variant) {
  session.options().set_color_system(zbuffer::is_mapped(variant) ? KT_Color_System::mapped
                                                                 : KT_Color_System::direct);
  session.options().set_buffer_depth(zbuffer::has_depth(variant) ? 1 : 0);
  session.options().set_alpha_blending(zbuffer::is_alpha(variant));
  for (int i = 0; i < static_cast<int>(Create_Frame_Buffer); ++i) {
    session.actions().records[i] = {nullptr, &mark, 5, 7};
  }
  ASSERT_EQ(session.establish(), 0);
}

TEST(Establish, BindsByVariant) {
  Session session;
  std::map<std::pair<KT_Action, bool>, std::set<Function>> common;  // of several variants
  for (const Variant variant : all_variants) {
    configure(session, variant);
    for (const Row& row : rows) expect_row(session, variant, row);
    for (const KT_Action action : tiling_row.actions) {
      EXPECT_TRUE(right_record(session, action, kept));
    }
    const auto note = [&](KT_Action action, bool which) {
      common[{action, which}].insert(session.actions()[action].function);
    };
    for (const KT_Action action : {Draw_2D_Polygon, Draw_DCI_Polygon}) note(action, true);
    for (const KT_Action action : {Clear_Color, Get_Image}) note(action, is_mapped(variant));
    for (const KT_Action action : {Clear_Depth, Get_Depth}) note(action, has_depth(variant));
    // Without depth the clear does nothing.
    if (!has_depth(variant)) session.actions().call<KT_Action::Clear_Depth>(session.rendition);
  }
  for (const auto& [key, functions] : common) {
    EXPECT_EQ(functions.size(), 1U) << static_cast<int>(key.first);
    if (key.second) {
      EXPECT_NE((common[{key.first, false}]), functions) << static_cast<int>(key.first);
    }
  }
}

TEST(Establish, TilingBindsWhatStaysBound) {
  Session session;
  session.option(L"Enable Tiling").set(KT_Option_Value(true));
  for (const Variant variant : all_variants) {
    configure(session, variant);
    expect_row(session, variant, tiling_row);
  }
  session.option(L"Enable Tiling").set(KT_Option_Value(false));
  session.establish();
  expect_row(session, Variant::rgb_z, tiling_row);
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

TEST(Establish, AGivenImageReplacesTheOneInUseIfItFits) {
  Session session;
  for (const KT_Int_XY size : {KT_Int_XY{12, 8}, KT_Int_XY{12, 9}}) {
    const KT_Shared_Image given(size.x, size.y, KT_Image_Format::rgb32, size.x * 4, nullptr, false);
    KT_Option& option = session.option(L"Color Buffer");
    option.set(KT_Option_Value(static_cast<const KT_Counted*>(given.get())));
    session.establish();
    EXPECT_EQ(session.renderer().color_image == given, size.y == 8);
    EXPECT_EQ(option.value->pointer(), session.renderer().color_image.get());
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
  with_key({two, 2, nullptr}, 255, 255, 255);
  EXPECT_EQ(renderer.merge_background_index, 1);
  EXPECT_EQ(renderer.merge_substitute_index, 0);
  EXPECT_EQ(searched.size(), 27U);  // of 255, 250, ... 125 is the first nearer to black
  EXPECT_EQ(searched.back(), (KT_RGB32{125, 125, 125, 255}));

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
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{199, 2, 1, 255}));
}

}  // namespace
