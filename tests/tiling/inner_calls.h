// Double-precision actions, seen through integer actions that record what they are called with.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/recorded_calls.h"
#include "tests/support/session.h"

namespace tiling_test {

using support::Recorded_Call;
using enum KT_Action;

inline constexpr KT_Int_XY origin = {1000, -500};
inline constexpr double reach = 0x40000000;

/// A renderer whose integer strips and lines are recorded, with the window at `origin`.
class Inner_Calls : public support::Session, public testing::Test {
 public:
  Inner_Calls()
      : Session({.variant = support::Variant::rgb_z, .size = {40, 30}, .origin = origin}) {
    option(L"Enable Tiling").set(KT_Option_Value(true));
    establish();
    display().hard_clip = {origin.x, origin.x + 39, origin.y, origin.y + 29};
    support::Recorded_Calls::record<Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle,
                                    Draw_2DI_Gouraud_Polytriangle, Draw_2DI_Textured_Polytriangle,
                                    Draw_2DI_Polyline, Draw_2DI_Colorized_Polyline,
                                    Draw_2DI_Gouraud_Polyline>(renderer());
  }

  /// Draws; returns the calls of inner actions.
  template <KT_Action action, class... Arguments>
  std::vector<Recorded_Call> draw(const std::vector<KT_Point_D>& points, Arguments... arguments) {
    support::Recorded_Calls::take();
    actions().call<action>(rendition, static_cast<int>(points.size()), points.data(), arguments...);
    EXPECT_EQ(renderer().device_origin, origin);
    auto calls = support::Recorded_Calls::take();
    for (const Recorded_Call& call : calls) EXPECT_EQ(call.origin, KT_Int_XY{});
    return calls;
  }

  /// A point by its place in the buffer.
  static KT_Point_D at(double x, double y, double z = 0) { return {origin.x + x, origin.y + y, z}; }
};

inline std::vector<double> columns(const Recorded_Call& call) {
  std::vector<double> x;
  for (const KT_Point_D& p : call.points) x.push_back(p.x);
  return x;
}

inline std::vector<int> levels(const Recorded_Call& call) {
  std::vector<int> result;
  for (const KT_RGB32& color : call.point_colors) result.push_back(color.red);
  return result;
}

}  // namespace tiling_test
