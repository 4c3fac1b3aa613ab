// Every allocation of a call is refused once: by null where the framework's heap may say so, by an
// exception elsewhere. Nothing is lost or held by that, and the next call draws as ever.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

constexpr int most = 80;  // more points than any routine has room for on its stack
int count = most;
constexpr KT_Int_XY size{40, 30};

/// What an action is called with, by the types of its arguments.
template <class Element>
Element elements[most * most];
KT_Shared_Image target;

template <class Argument>
Argument argument() {
  if constexpr (std::is_same_v<Argument, KT_Shared_Image*>) {
    return &target;
  } else if constexpr (std::is_same_v<Argument, const KT_Packing*>) {
    return nullptr;
  } else if constexpr (std::is_pointer_v<Argument>) {
    return elements<std::remove_cv_t<std::remove_pointer_t<Argument>>>;
  } else {
    return static_cast<Argument>(count);  // points, bytes of a row, parameters a point
  }
}
template <KT_Action action, class... Arguments>
void call(const Session& of, void (*)(KT_Renderer_Data*, const KT_Rendition&, Arguments...)) {
  if (of.actions()[action].valid) of.actions().call<action>(of.rendition, argument<Arguments>()...);
}
template <KT_Action, class... Arguments>
void call(const Session&, void (*)(void*, Arguments...)) {}  // the host's

struct Drawing {
  std::string name;
  void (*draw)(const Session&);
};
#define DRAWING(name, signature) \
  {#name, [](const Session& of) { call<KT_Action::name>(of, static_cast<signature*>(nullptr)); }},
/// Another configuration and back, with images of its own, as one more way to draw.
void configure(const Session& of) {
  for (const KT_Int_XY extent : {KT_Int_XY{9, 9}, size}) {
    of.options().set_window({}, extent);
    of.establish();
  }
  of.actions().call<KT_Action::Draw_2DI_Polytriangle>(of.rendition, 5, elements<KT_DCI_Point>);
}
const Drawing drawings[] = {KORVEL_ACTIONS(DRAWING){"configure", configure}};

/// Points, inside the window or beyond it, and arrays of no particular content.
void fill_elements(int reach) {
  elements<KT_Image_Format>[0] = KT_Image_Format::renderer_own;
  for (int i = 0; i < count; ++i) {
    const int x = i * reach * size.x / count, y = i % 2 * reach * (size.y - 1), z = i * 9;
    elements<KT_DCI_Point>[i] = {x, y, z};
    elements<KT_Point>[i] = {float(x), float(y), float(z)};
    elements<KT_Point_D>[i] = {i == 3 && count == most ? 3e9 : x, double(y), double(z)};
    elements<KT_RGB32>[i] = KT_RGB32::from_word(0x80000000u + unsigned(i) * 0x30507);
    elements<KT_Vector>[i] = {0, 0, 1};
    elements<float>[i] = 1;
    elements<KT_Parameter>[i * count] = {float(i) / 9, float(i) / 7, 0};
  }
}

using Misc = KT_Misc_Attributes;
void set_bits(Session& of, std::uint32_t bits) {
  of.misc().advanced_options.bits = bits;
}
/// Ways through an action; by the last two, wide strokes and the general routines.
void (*const looks[])(Session&) = {
    [](Session&) {},
    [](Session& of) { set_bits(of, KT_Advanced_Options::edge_bit); },
    [](Session& of) { set_bits(of, KT_Advanced_Options::alpha_bit); },
    [](Session& of) { set_bits(of, KT_Advanced_Options::antialias_bit); },
    [](Session& of) { of.material().lighting = &of; },
    [](Session& of) { of.misc().texture_options = Misc::perspective_bit; },
    [](Session& of) {
      of.material().basic_material = KD_Outlined_Material(2, {1, 2, 3, 99}, {});
    },
    [](Session& of) {
      of.face().face_pattern = KT_Face_Attributes::first_standard;
      of.rendition.edit(&KT_Rendition_Data::line_attributes).line_weight = 5;
      of.rendition.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = 3;
    }};

/// How often the records of the rendition, the images and two options are held.
std::vector<std::uint32_t> references(const Session& of) {
  std::vector<std::uint32_t> counts;
  const auto add = [&](const auto&... handles) {
    (counts.push_back(handles ? handles->reference_count.load() : 0), ...);
  };
  const KT_Rendition_Data& r = *of.rendition;
  add(of.rendition, r.display_context, r.material, r.line_attributes, r.face_attributes,
      r.misc_attributes, r.material->basic_material, r.display_context->complex_clip, of.color,
      of.depth, of.option(L"Color Buffer").value, of.option(L"Mask Cache").value);
  return counts;
}

using Picture = std::array<Pixels, 2>;
Picture picture(Session& of, const Drawing& drawing) {
  of.clear();
  drawing.draw(of);
  target.release();
  return {of.color->pixels(), of.depth ? of.depth->pixels() : Pixels()};
}

/// Configures anew, which empties the mask cache. The renderer may be back at an earlier image.
void settle(Session& of) {
  of.renderer().edge_depth_offset = 0;  // an exception leaves what a call changes for its time
  of.options().set_window({}, size);
  of.establish();
  of.color.reset(static_cast<Guarded_Image*>(of.renderer().color_image.get()));
}

/// Draws without one allocation; false when the call needs no more than those ahead of it.
bool refused(const Session& of, const Drawing& drawing, int granted, heap::Refusal how) {
  const heap::Exhausted once(granted, how, 1);
  try {
    drawing.draw(of);
  } catch (const std::bad_alloc&) {
  }
  target.release();
  return once.refused();
}

/// Refuses the first allocation of a drawing, then the second, and so on; returns how many.
int refuse_each(Session& of, const Drawing& drawing, heap::Refusal how) {
  int granted = 0;
  const Picture expected = picture(of, drawing);
  settle(of);
  const auto held = references(of);
  const long live = heap::live();
  for (; refused(of, drawing, granted, how); ++granted) {
    settle(of);
    EXPECT_EQ(references(of), held) << drawing.name << " without allocation " << granted;
    EXPECT_EQ(heap::live(), live) << drawing.name << " without allocation " << granted;
    refused(of, drawing, granted, how);  // a mask that was begun is not taken for one, either
    of.renderer().edge_depth_offset = 0;
    EXPECT_EQ(picture(of, drawing), expected) << drawing.name << " without allocation " << granted;
    settle(of);
    if (testing::Test::HasFailure()) break;
  }
  return granted;
}

TEST(Allocation, MayFailOnceInEveryActionAndConfiguration) {
  const KT_Shared_Image image(4, 4, KT_Image_Format::rgb32, 16, elements<KT_RGB32>, false);
  int refusals = 0;
  for (const Variant variant : all_variants) {
    for (std::size_t look = 0; look < std::size(looks); ++look) {
      SCOPED_TRACE(std::string(name_of(variant)) + ", look " + std::to_string(look));
      count = look < 6 ? most : 5;
      Session session({.variant = variant, .size = size, .use_mask = true});
      session.option(L"Enable Tiling").set(KT_Option_Value(true));
      session.display().complex_clip = contour({{2, 2, 0}, {38, 4, 0}, {20, 29, 0}});
      session.material().basic_material =
          KD_Textured_Material(image, KT_Texture_Wrap::tile, KT_Texture_Wrap::tile, true, false);
      looks[look](session);
      session.establish();
      for (const Drawing& drawing : drawings) {
        fill_elements(drawing.name.find("_DC") != std::string::npos ? 1 : 3);
        refusals += refuse_each(session, drawing, heap::Refusal::by_null) +
                    refuse_each(session, drawing, heap::Refusal::by_exception);
        if (HasFailure()) return;
      }
    }
  }
  RecordProperty("refusals", refusals);
  EXPECT_GT(refusals, 10000);
}

}  // namespace
