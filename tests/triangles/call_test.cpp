// What a call asks of others: memory for long strips alone, the general routines for what the
// module does not draw, edges instead of a filled strip.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

/// A call that reached one of the general routines.
struct Standard_Call {
  Layer layer;
  Kind kind;
  const void* renderer;
  const void* rendition;
  int count;
  std::vector<double> last_point;
  std::vector<KT_RGB32> colors;
  bool single_color;
  bool operator==(const Standard_Call&) const = default;
};
std::vector<Standard_Call> standard_calls;

template <class Point>
void record(Layer layer, Kind kind, KT_Renderer_Data* renderer, const KT_Rendition& rendition,
            int count, const Point* points, const KT_RGB32* colors, int color_count, bool single) {
  const Point& last = points[count - 1];
  standard_calls.push_back(
      {layer,
       kind,
       renderer,
       rendition.get(),
       count,
       {static_cast<double>(last.x), static_cast<double>(last.y), static_cast<double>(last.z)},
       {colors, colors + color_count},
       single});
}

}  // namespace

// These stand in front of the framework's routines of the same names.
#define RECORDING(letters, layer, Point)                                                           \
  void KD_Standard_Draw_##letters##_Polytriangle(KT_Renderer_Data* object, const KT_Rendition& r,  \
                                                 int count, const Point* p) {                      \
    record(layer, Kind::flat, object, r, count, p, nullptr, 0, false);                             \
  }                                                                                                \
  void KD_Standard_Draw_##letters##_Colorized_Polytriangle(                                        \
      KT_Renderer_Data* object, const KT_Rendition& r, int count, const Point* p,                  \
      const KT_RGB32* colors, bool single) {                                                       \
    record(layer, Kind::colorized, object, r, count, p, colors, single ? 1 : count - 2, single);   \
  }                                                                                                \
  void KD_Standard_Draw_##letters##_Gouraud_Polytriangle(KT_Renderer_Data* object,                 \
                                                         const KT_Rendition& r, int count,         \
                                                         const Point* p, const KT_RGB32* colors) { \
    record(layer, Kind::gouraud, object, r, count, p, colors, count, false);                       \
  }
RECORDING(2D, Layer::float_any, KT_Point)
RECORDING(DC, Layer::float_inside, KT_Point)
RECORDING(2DI, Layer::int_any, KT_DCI_Point)
RECORDING(DCI, Layer::int_inside, KT_DCI_Point)

namespace {

TEST(Calls, FallBackWithTheirArguments) {
  const Strip strip{{{0, 0, 1}, {9, 0, 2}, {0, 7, 3}, {9, 7, 4}},
                    {{1, 2, 3, 255}, {4, 5, 6, 255}, {7, 8, 9, 255}, {9, 9, 9, 255}},
                    false};
  for (const Variant variant : all_variants) {
    Session session({.variant = variant});
    session.material().color = {40, 50, 60, 70};
    const std::uint8_t no_holes = 0;
    const KT_User_Pattern user{&no_holes, 8, 1, 1};
    session.face().user_pattern = &user;
    for (const int pattern : {75, 1000, 74}) {
      session.face().face_pattern = pattern;
      for (const Layer layer : all_layers) {
        for (const Kind kind : all_kinds) {
          for (const bool single : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << name_of(variant) << ", layer " << static_cast<int>(layer) << ", kind "
                         << static_cast<int>(kind));
            Strip given = strip;
            given.single_color = single;
            standard_calls.clear();
            session.clear();
            draw(session, layer, kind, given);
            EXPECT_EQ(session.color->touched(4, 3), pattern == 74);
            if (pattern == 74) {
              EXPECT_TRUE(standard_calls.empty());
              continue;
            }
            // A flat strip of direct colour falls back as the colorized one that it is.
            Standard_Call expected{
                layer, kind, &session.renderer(), session.rendition.get(), 4, {9, 7, 4}, {}, false};
            if (kind == Kind::flat && !zbuffer::is_mapped(variant)) {
              expected.kind = Kind::colorized;
              expected.colors = {{40, 50, 60, 70}};
              expected.single_color = true;
            } else if (kind == Kind::colorized) {
              expected.colors.assign(given.colors.begin(), given.colors.begin() + (single ? 1 : 2));
              expected.single_color = single;
            } else if (kind == Kind::gouraud) {
              expected.colors = given.colors;
            }
            EXPECT_TRUE(standard_calls == std::vector{expected});
          }
        }
      }
    }
  }
}

Strip zigzag(int count, bool inside) {
  Strip strip;
  for (int i = 0; i < count; ++i) {
    const int x = inside ? i / 2 : i - 5;
    strip.points.push_back({x, i % 2 * (inside ? 29 : 45), 100});
    strip.colors.push_back({static_cast<std::uint8_t>(i * 40), 60, 90, 128});
  }
  return strip;
}

// Up to 64 points lie on the stack; from 65 on the float and the clipping layer allocate theirs.
TEST(Calls, AllocateForLongStripsAlone) {
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {40, 30}, .use_mask = true});
    for (const bool masked : {false, true}) {
      session.display().complex_clip =
          masked ? contour({{0, 0, 0}, {40, 0, 0}, {20, 30, 0}}) : KT_Contour_Set();
      draw(session, Layer::int_any, Kind::flat, zigzag(3, true));  // makes the mask
      for (const int pattern : {64, 20}) {
        session.face().face_pattern = pattern;
        for (const Layer layer : all_layers) {
          const bool any = layer == Layer::float_any || layer == Layer::int_any;
          const bool floats = layer == Layer::float_any || layer == Layer::float_inside;
          for (const Kind kind : all_kinds) {
            SCOPED_TRACE(testing::Message()
                         << name_of(variant) << ", layer " << static_cast<int>(layer) << ", kind "
                         << static_cast<int>(kind) << ", pattern " << pattern);
            session.clear();
            EXPECT_EQ(draw(session, layer, kind, zigzag(64, !any)), heap::Blocks{});
            if (pattern == 64) {
              EXPECT_TRUE(session.color->touched(20, 10));
            }
            const heap::Blocks before = heap::live();
            const heap::Blocks made = draw(session, layer, kind, zigzag(65, !any));
            EXPECT_EQ(made.framework + made.language, (any ? 1 : 0) + (floats ? 1 : 0));
            EXPECT_EQ(heap::live(), before);
          }
        }
      }
    }
  }
}

// The edge bit draws lines and the alpha bit blends. With both, the inner colorized action of
// `RGB_Z` blends; every other road looks for edges first.
TEST(Calls, EdgeAndAlphaBits) {
  Session session({.variant = Variant::rgb_z, .size = {40, 30}});
  Strip strip = strip_of({{0, 0, 9}, {39, 0, 9}, {0, 29, 9}}, {0, 0, 255, 0});
  strip.colors[1] = {200, 0, 0, 0};
  for (const unsigned bits : {0U, 8U, 32U, 40U}) {
    for (const Layer layer : all_layers) {
      for (const Kind kind : {Kind::colorized, Kind::gouraud}) {
        SCOPED_TRACE(testing::Message() << "bits " << bits << ", layer " << static_cast<int>(layer)
                                        << ", kind " << static_cast<int>(kind));
        session.misc().advanced_options.bits = bits;
        session.clear();
        draw(session, layer, kind, strip);
        // Inside the triangle a blended colour of alpha 0 takes the depth alone.
        const bool blends =
            bits == 8 || (bits == 40 && layer == Layer::int_inside && kind == Kind::colorized);
        const bool edges = !blends && bits != 0;
        EXPECT_EQ(session.depth->touched(10, 10), !edges);
        const std::uint32_t red = session.color->at(10, 10) >> 16 & 255;
        EXPECT_EQ(red == (session.color->untouched() >> 16 & 255), blends || edges);
      }
    }
  }
}

}  // namespace
