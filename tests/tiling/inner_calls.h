// Double-precision actions, seen through integer actions that record what they are asked for.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace tiling_test {

/// What an inner action was called with. Arrays are copied as far as `count` says.
struct Asked {
  KT_Action action{};
  std::vector<KT_DCI_Point> points;
  const KT_RGB32* colors = nullptr;
  std::vector<KT_RGB32> point_colors;  ///< of Gouraud and textured calls
  std::vector<float> floats;
  std::vector<KT_Parameter> parameters;
  std::vector<KT_Vector> vectors;
  bool single_color = false;
  KT_Int_Rectangle hard_clip;
  KT_Int_XY origin;
};

inline constexpr KT_Int_XY origin = {1000, -500};
inline constexpr double reach = 0x40000000;

/// A renderer whose integer strips and lines are recorded, with the window at `origin`.
class Inner_Calls : public support::Session, public testing::Test {
 public:
  Inner_Calls()
      : Session({.variant = support::Variant::rgb_z, .size = {40, 30}, .origin = origin}) {
    using enum KT_Action;
    option(L"Enable Tiling").set(KT_Option_Value(true));
    establish();
    display().hard_clip = {origin.x, origin.x + 39, origin.y, origin.y + 29};
    bind_flat<Draw_2DI_Polytriangle>();
    bind_flat<Draw_2DI_Polyline>();
    bind_colorized<Draw_2DI_Colorized_Polytriangle>();
    bind_colorized<Draw_2DI_Colorized_Polyline>();
    bind_gouraud<Draw_2DI_Gouraud_Polytriangle>();
    bind_gouraud<Draw_2DI_Gouraud_Polyline>();
    actions().bind<Draw_2DI_Textured_Polytriangle>(
        &renderer(),
        [](KT_Renderer_Data* object, const KT_Rendition& given, int count,
           const KT_DCI_Point* points, const KT_RGB32* colors, const KT_Parameter* parameters,
           int parameter_width, const float* floats, const KT_Vector* vectors) {
          Asked& call = record(Draw_2DI_Textured_Polytriangle, object, given, count, points);
          copy(call.point_colors, colors, count);
          copy(call.parameters, parameters, count * parameter_width);
          copy(call.floats, floats, count);
          copy(call.vectors, vectors, count);
        });
    asked.clear();
  }

  /// Calls of the inner actions since the last look.
  static std::vector<Asked> take() { return std::exchange(asked, {}); }

  template <KT_Action action, class... Arguments>
  void draw(const std::vector<KT_Point_D>& points, Arguments... arguments) {
    actions().call<action>(rendition, static_cast<int>(points.size()), points.data(), arguments...);
    EXPECT_EQ(renderer().device_origin, origin);
  }

  /// A point by its place in the buffer.
  static KT_Point_D at(double x, double y, double z = 0) { return {origin.x + x, origin.y + y, z}; }

 private:
  inline static std::vector<Asked> asked;

  static Asked& record(KT_Action action, KT_Renderer_Data* object, const KT_Rendition& given,
                       int count, const KT_DCI_Point* points) {
    Asked call;
    call.action = action;
    call.points.assign(points, points + count);
    call.hard_clip = given->display_context->hard_clip;
    call.origin = static_cast<Software_Z_Buffer*>(object)->device_origin;
    asked.push_back(call);
    return asked.back();
  }
  template <class Element>
  static void copy(std::vector<Element>& to, const Element* array, int count) {
    if (array != nullptr) to.assign(array, array + count);
  }
  template <KT_Action action>
  void bind_flat() {
    actions().bind<action>(&renderer(), [](KT_Renderer_Data* object, const KT_Rendition& given,
                                           int count, const KT_DCI_Point* points) {
      record(action, object, given, count, points);
    });
  }
  template <KT_Action action>
  void bind_colorized() {
    actions().bind<action>(
        &renderer(), [](KT_Renderer_Data* object, const KT_Rendition& given, int count,
                        const KT_DCI_Point* points, const KT_RGB32* colors, bool single_color) {
          Asked& call = record(action, object, given, count, points);
          call.colors = colors;
          call.single_color = single_color;
        });
  }
  template <KT_Action action>
  void bind_gouraud() {
    actions().bind<action>(&renderer(),
                           [](KT_Renderer_Data* object, const KT_Rendition& given, int count,
                              const KT_DCI_Point* points, const KT_RGB32* colors) {
                             Asked& call = record(action, object, given, count, points);
                             call.colors = colors;
                             copy(call.point_colors, colors, count);
                           });
  }
};

}  // namespace tiling_test
