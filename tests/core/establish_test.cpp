// The configuration pass: which routine stands behind which action, which images are kept, and
// the colours of merge control.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
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
  int best = 0, least = INT32_MAX;
  for (int i = 0; i < (*this)->entry_count; ++i) {
    const KT_RGB32 entry = (*this)->entries[i].color;
    const int distance = square(entry.red - color.red) + square(entry.green - color.green) +
                         square(entry.blue - color.blue);
    if (distance < least) best = i, least = distance;
  }
  return best;
}

namespace {

enum class Cell { own, standard, kept };
struct Row {
  std::vector<KT_Action> actions;
  std::array<Cell, 6> cells;
};

#define LISTED(name, signature) KT_Action::name,
using enum KT_Action;
using enum Cell;
constexpr std::array<Cell, 6> in_all = {own, own, own, own, own, own};
const Row rows[] = {
    // RGB_Alpha, RGB, Mapped, Mapped_Z, RGB_Alpha_Z, RGB_Z
    {{KORVEL_STANDARD_POLYTRIANGLES(LISTED) KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(LISTED)
          KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(LISTED)},
     in_all},
    {{KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(LISTED)}, {kept, kept, kept, own, own, own}},
    {{KORVEL_STANDARD_POLYLINES(LISTED) KORVEL_STANDARD_COLORIZED_POLYLINES(LISTED)
          KORVEL_STANDARD_GOURAUD_POLYLINES(LISTED)},
     in_all},
    {{Draw_DCI_Dot}, in_all},
    {{Draw_2DI_Polymarker}, {own, own, own, kept, own, own}},
    {{Draw_2D_Polygon, Draw_DC_Polygon, Draw_2DI_Polygon, Draw_DCI_Polygon}, in_all},
    {{Draw_DCI_RGB32_Image}, {own, own, standard, standard, own, own}},
    {{Draw_DCI_Index8_Image}, {standard, standard, own, own, standard, standard}},
    {{Clear_Color, Get_Image, Clear_Depth}, in_all},
    {{Get_Depth, Put_Depth}, {kept, kept, kept, own, own, own}},
};
constexpr KT_Action tiling_actions[] = {Draw_2DD_Polytriangle,
                                        Draw_2DD_Colorized_Polytriangle,
                                        Draw_2DD_Gouraud_Polytriangle,
                                        Draw_2DD_Textured_Polytriangle,
                                        Draw_2DD_Polyline,
                                        Draw_2DD_Colorized_Polyline,
                                        Draw_2DD_Gouraud_Polyline};

using Function = void (*)();

Function standard_routine(KT_Action action) {
#define AND_ROUTINE(name, signature) \
  if (action == KT_Action::name) return reinterpret_cast<Function>(&KD_Standard_##name);
  KORVEL_STANDARD_ACTIONS(AND_ROUTINE)
  return nullptr;
}

const char* name_of(KT_Action action) {
#define AND_NAME(name, signature) \
  if (action == KT_Action::name) return #name;
  KORVEL_ACTIONS(AND_NAME)
  return "";
}

void mark() {}

/// Puts a mark behind every action that a configuration pass may bind.
void mark_all(KT_Action_Table& actions) {
  for (int i = 0; i < static_cast<int>(KT_Action::Create_Frame_Buffer); ++i) {
    actions.records[i] = {nullptr, &mark, 5, 0};
  }
}

bool in_module(Function function) {
  Dl_info info;
  return dladdr(reinterpret_cast<void*>(function), &info) != 0 &&
         std::string_view(info.dli_fname) == TEST_MODULE;
}

void expect_cell(const Session& session, KT_Action action, Cell cell) {
  SCOPED_TRACE(name_of(action));
  const KT_Action_Record& record = session.actions()[action];
  if (cell == kept) {
    EXPECT_EQ(record.function, &mark);
    EXPECT_TRUE(record.object == nullptr && record.extra == 5 && record.valid == 0);
    return;
  }
  EXPECT_TRUE(record.object == &session.renderer() && record.extra == 0 && record.valid == 1);
  if (cell == standard) {
    EXPECT_EQ(record.function, standard_routine(action));
  } else {
    EXPECT_TRUE(in_module(record.function));
  }
}

void configure(Session& session, Variant variant) {
  KT_Renderer_Options& options = session.options();
  options.set_color_system(zbuffer::is_mapped(variant) ? KT_Color_System::mapped
                                                       : KT_Color_System::direct);
  options.set_buffer_depth(zbuffer::has_depth(variant) ? 1 : 0);
  options.set_alpha_blending(zbuffer::is_alpha(variant));
  mark_all(session.actions());
  ASSERT_EQ(session.establish(), 0);
}

TEST(Establish, BindsByVariant) {
  Session session;
  std::map<KT_Action, std::set<Function>> common;  // routines that variants have in common
  std::set<Function> clears[2], no_depth_clears;
  for (const Variant variant : all_variants) {
    SCOPED_TRACE(support::name_of(variant));
    configure(session, variant);
    for (const Row& row : rows) {
      const Cell cell = row.cells[static_cast<std::size_t>(zbuffer::index_of(variant))];
      for (const KT_Action action : row.actions) expect_cell(session, action, cell);
    }
    for (const KT_Action action : tiling_actions) expect_cell(session, action, kept);
    const auto bound = [&](KT_Action action) { return session.actions()[action].function; };
    for (KT_Action action : rows[5].actions) common[action].insert(bound(action));
    clears[zbuffer::is_mapped(variant)].insert(bound(Clear_Color));
    if (zbuffer::has_depth(variant)) {
      for (KT_Action a : {Get_Depth, Put_Depth, Clear_Depth}) common[a].insert(bound(a));
    } else {
      no_depth_clears.insert(bound(Clear_Depth));
      session.actions().call<KT_Action::Clear_Depth>(session.rendition);
    }
  }
  for (const auto& [action, functions] : common) EXPECT_EQ(functions.size(), 1U) << name_of(action);
  EXPECT_EQ(no_depth_clears.size(), 1U);
  EXPECT_FALSE(common[Clear_Depth].contains(*no_depth_clears.begin()));
  EXPECT_TRUE(clears[0].size() == 1 && clears[1].size() == 1 && clears[0] != clears[1]);
}

TEST(Establish, TilingBindsWhatStaysBound) {
  Session session;
  session.option(L"Enable Tiling").set(KT_Option_Value(true));
  std::map<KT_Action, std::set<Function>> bound;
  for (const Variant variant : all_variants) {
    configure(session, variant);
    for (const KT_Action action : tiling_actions) {
      expect_cell(session, action, own);
      bound[action].insert(session.actions()[action].function);
    }
  }
  for (const auto& [action, functions] : bound) EXPECT_EQ(functions.size(), 1U) << name_of(action);
  session.option(L"Enable Tiling").set(KT_Option_Value(false));
  session.establish();
  for (const KT_Action action : tiling_actions) expect_cell(session, action, own);
}

TEST(Establish, KeepsImagesThatFit) {
  Session session({.variant = Variant::rgb_z, .use_mask = true});
  Software_Z_Buffer& renderer = session.renderer();
  KT_Renderer_Options& options = session.options();
  const void* in_use = session.option(L"Color Buffer").value->pointer();
  EXPECT_EQ(renderer.color_image.get(), in_use);
  EXPECT_EQ(session.frame_buffers_made, 1);  // depth; colour was given

  session.display().complex_clip = contour({{0, 0, 0}, {9, 0, 0}, {0, 7, 0}});
  const Strip strip = strip_of({{0, 0, 9}, {9, 0, 9}, {0, 7, 9}});
  draw(session, Layer::int_any, Kind::flat, strip);
  const auto color = session.color->pixels(), depth = session.depth->pixels();
  const KT_Shared_Image images[] = {renderer.color_image, renderer.depth_image};
  ASSERT_EQ(renderer.mask_cache->count, 1);
  session.establish();
  EXPECT_TRUE(renderer.color_image == images[0] && renderer.depth_image == images[1]);
  EXPECT_EQ(renderer.mask_cache->count, 0);
  EXPECT_TRUE(same_pixels(session.color->pixels(), color, 12));
  EXPECT_TRUE(same_pixels(session.depth->pixels(), depth, 12));

  options.set_window({-40, 25}, {13, 8});  // another size: both anew
  session.establish();
  EXPECT_EQ(session.frame_buffers_made, 3);
  EXPECT_EQ(session.option(L"Color Buffer").value->pointer(), renderer.color_image.get());
  EXPECT_TRUE(renderer.window_extent == (KT_Int_XY{13, 8}));
  EXPECT_TRUE(renderer.device_origin == (KT_Int_XY{-40, 25}));
  EXPECT_EQ(images[0]->reference_count, 1U);  // the renderer has let go of the old ones

  options.set_local_coordinates(true);
  options.set_buffer_depth(0);
  options.set_color_system(KT_Color_System::mapped);
  session.establish();
  EXPECT_TRUE(renderer.device_origin == (KT_Int_XY{0, 0}));
  EXPECT_FALSE(renderer.depth_image);
  EXPECT_EQ(session.depth->reference_count, 1U);
  EXPECT_EQ(renderer.color_image->format, KT_Image_Format::mapped);
  EXPECT_EQ(session.option(L"Depth Buffer").value->pointer(), nullptr);
}

TEST(Establish, AnUnknownColourSystemTakesAnyFormat) {
  Session session;
  session.options().set_color_system(static_cast<KT_Color_System>(2));
  session.establish();
  EXPECT_EQ(session.renderer().color_image->format, KT_Image_Format::rgb32);
  session.options().set_window({}, {5, 5});
  session.establish();
  EXPECT_EQ(session.renderer().color_image->format, KT_Image_Format::mapped);
}

TEST(Establish, AGivenImageReplacesTheOneInUseIfItFits) {
  Session session;
  for (const KT_Int_XY size : {KT_Int_XY{12, 8}, KT_Int_XY{12, 9}}) {
    const KT_Shared_Image given(size.x, size.y, KT_Image_Format::rgb32, size.x * 4, nullptr, false);
    session.option(L"Color Buffer")
        .set(KT_Option_Value(static_cast<const KT_Counted*>(given.get())));
    session.establish();
    EXPECT_EQ(session.renderer().color_image == given, size.y == 8);
    EXPECT_EQ(session.option(L"Color Buffer").value->pointer(),
              session.renderer().color_image.get());
  }
}

TEST(Establish, CopiesTheCubeOfAPaletteThatHasOne) {
  Session session({.variant = Variant::mapped});
  const KT_RGB32 colors[] = {{0, 0, 0, 255}, {255, 255, 255, 255}};
  KT_Color_Cube cube({3, 3, 3}, 1.0f, 0);
  cube.base_index = 40;
  cube.framework_words[4] = 77;
  session.options().set_palette({colors, 2, &cube});
  session.establish();
  session.options().set_palette({colors, 2, nullptr});
  session.establish();
  EXPECT_EQ(std::memcmp(&session.renderer().color_cube, &cube, sizeof cube), 0);
}

// The search for the substitute index starts at the key's palette colour and walks each channel.
TEST(Establish, MergeColours) {
  const KT_RGB32 white{255, 255, 255, 255}, black{0, 0, 0, 255};
  const KT_RGB32 two[] = {black, white};
  Session session;
  Software_Z_Buffer& renderer = session.renderer();
  const auto with_key = [&](const KT_Palette& palette, int red, int green, int blue) {
    session.options().set_palette(palette);
    session.option(L"Merge Control Background Color").set(KT_Option_Value(red, green, blue));
    searched.clear();
    session.establish();
  };
  with_key({two, 2, nullptr}, 255, 255, 255);
  EXPECT_EQ(renderer.merge_background_index, 1);
  EXPECT_EQ(renderer.merge_substitute_index, 0);
  // 255, 250, ... 125 is nearer to black for the first time.
  EXPECT_EQ(searched.size(), 27U);
  EXPECT_EQ(searched.back(), (KT_RGB32{125, 125, 125, 255}));

  with_key({&white, 1, nullptr}, 255, 255, 255);
  EXPECT_EQ(renderer.merge_background_index, renderer.merge_substitute_index);
  ASSERT_EQ(searched.size(), 104U);  // the key and 103 rounds: down to 0, up to 255, one back
  EXPECT_EQ(searched[1], (KT_RGB32{250, 250, 250, 255}));
  EXPECT_EQ(searched[51], (KT_RGB32{0, 0, 0, 255}));
  EXPECT_EQ(searched[102], white);
  EXPECT_EQ(searched[103], (KT_RGB32{250, 250, 250, 255}));

  // The search begins at the entry, not at the key; a channel of 248 goes up past 250 first.
  const KT_RGB32 mixed{3, 248, 100, 9};
  with_key({&mixed, 1, nullptr}, 300, 10, 0);
  EXPECT_EQ(renderer.merge_background_color, (KT_RGB32{0, 10, 44, 255}));
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{1, 10, 44, 255}));
  EXPECT_EQ(searched[0], (KT_RGB32{0, 10, 44, 255}));
  EXPECT_EQ(searched[1], (KT_RGB32{8, 253, 105, 255}));
  EXPECT_EQ(searched[2], (KT_RGB32{13, 248, 110, 255}));
  with_key({&mixed, 1, nullptr}, 1, 2, 200);
  EXPECT_EQ(renderer.merge_substitute_color, (KT_RGB32{199, 2, 1, 255}));

  session.option(L"Force Merge Control On").set(KT_Option_Value(true));
  session.establish();
  EXPECT_EQ(renderer.force_merge, 1);
}

}  // namespace
