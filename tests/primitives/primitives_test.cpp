// Polygons, markers, dots and images: which actions they call, and what they allocate.
#include <gtest/gtest.h>

#include "tests/support/recorded_calls.h"
#include "tests/support/session.h"

namespace {

using namespace support;
using enum KT_Action;

/// Points on the curve y = x * x, with their number as depth: convex however many.
std::vector<KT_Point> convex(int count) {
  std::vector<KT_Point> points;
  for (int i = 0; i < count; ++i) {
    const auto x = static_cast<float>(i);
    points.push_back({x, x * x, x});
  }
  return points;
}

TEST(Polygons, GoThroughTheActionTableWithTheCallersRendition) {
  Session session({.variant = Variant::rgb_z});
  Recorded_Calls::record<Draw_2D_Polytriangle, Draw_DC_Colorized_Polytriangle>(session.renderer());
  const KT_RGB32 color{1, 2, 3, 4};
  const auto draw = [&](const std::vector<KT_Point>& points) {
    const int count = static_cast<int>(points.size());
    session.actions().call<Draw_2D_Polygon>(session.rendition, count, points.data(), nullptr);
    session.actions().call<Draw_DC_Polygon>(session.rendition, count, points.data(), &color);
    return Recorded_Calls::take();
  };
  const auto calls = draw(convex(6));
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].action, Draw_2D_Polytriangle);
  EXPECT_EQ(calls[1].action, Draw_DC_Colorized_Polytriangle);
  EXPECT_EQ(calls[1].colors, &color);
  for (const Recorded_Call& call : calls) {
    std::vector<double> order;
    for (const KT_Point_D& p : call.points) order.push_back(p.z);
    EXPECT_EQ(order, (std::vector<double>{0, 1, 5, 2, 4, 3}));
  }
  EXPECT_EQ(draw(convex(64)).size(), 2u);
  EXPECT_EQ(draw(convex(65)).size(), 2u * 63);  // a call a triangle
  EXPECT_TRUE(draw(convex(2)).empty());

  // While a strip's edges are drawn the offset goes into a rendition of the call's own.
  session.face().face_depth_offset = 3;
  const std::uint32_t id = session.rendition->face_attributes->id;
  session.renderer().edge_depth_offset = -40;
  for (const Recorded_Call& call : draw(convex(5)))
    EXPECT_EQ(call.rendition->face_attributes->face_depth_offset, -40);
  session.renderer().edge_depth_offset = 0;
  for (const Recorded_Call& call : draw(convex(5)))
    EXPECT_EQ(call.rendition->face_attributes->face_depth_offset, 3);
  EXPECT_EQ(session.rendition->face_attributes->id, id);
  EXPECT_EQ(session.rendition->reference_count, 1u);
}

TEST(Small_Primitives, NeedNoHeap) {
  const std::vector<KT_Point> corners = convex(64);
  const std::vector<KT_DCI_Point> points(500, {3, 4, 5});
  const std::vector<KT_RGB32> colors(64, {9, 9, 9, 100});
  const KT_DCI_Point start{2, 7, 9}, end{9, 0, 700};
  for (const Variant variant : all_variants) {
    Session session({.variant = variant});
    const KT_Action_Table& actions = session.actions();
    const KT_Rendition& rendition = session.rendition;
    const long before = heap::allocated();
    actions.call<Draw_2D_Polygon>(rendition, 64, corners.data(), nullptr);
    actions.call<Draw_DCI_Dot>(rendition, points.data(), nullptr);
    if (variant != Variant::mapped_z) {  // has no marker of its own
      actions.call<Draw_2DI_Polymarker>(rendition, 500, points.data());
    }
    if (is_mapped(variant)) {
      const auto* indices = reinterpret_cast<const std::uint8_t*>(colors.data());
      actions.call<Draw_DCI_Index8_Image>(rendition, &start, &end, 8, indices);
    } else {
      actions.call<Draw_DCI_RGB32_Image>(rendition, &start, &end, 32, colors.data(), 0, nullptr);
    }
    EXPECT_EQ(heap::allocated(), before) << name_of(variant);
    EXPECT_TRUE(session.color->touched(3, 4) && session.color->touched(9, 1));
  }
}

}  // namespace
