// Polygons, seen through polytriangle actions that record what they are asked for.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

struct Asked {
  KT_Action action{};
  std::vector<KT_Point> points;
  const KT_RGB32* color = nullptr;
  bool single_color = false;
  int depth_offset = 0;
};

std::vector<Asked> asked;
int asked_count = 0;
bool keeping = true;  // whether `asked` grows; it allocates
std::vector<KT_Action> standard;

template <KT_Action action, class Point>
void record(const KT_Rendition& rendition, int count, const Point* points, const KT_RGB32* color,
            bool single_color) {
  ++asked_count;
  if (!keeping) return;
  Asked call{action, {}, color, single_color, rendition->face_attributes->face_depth_offset};
  for (int i = 0; i < count; ++i) {
    call.points.push_back({static_cast<float>(points[i].x), static_cast<float>(points[i].y),
                           static_cast<float>(points[i].z)});
  }
  asked.push_back(call);
}

template <KT_Action action, class Point>
void record_flat(KT_Renderer_Data*, const KT_Rendition& rendition, int count, const Point* points) {
  record<action>(rendition, count, points, nullptr, false);
}

template <KT_Action action, class Point>
void record_colorized(KT_Renderer_Data*, const KT_Rendition& rendition, int count,
                      const Point* points, const KT_RGB32* colors, bool single_color) {
  record<action>(rendition, count, points, colors, single_color);
}

}  // namespace

// These stand in front of the framework's routines.
#define RECORD_STANDARD(name, Point)                                                 \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int, const Point*, \
                          const KT_RGB32*) {                                         \
    standard.push_back(KT_Action::name);                                             \
  }
RECORD_STANDARD(Draw_2D_Polygon, KT_Point)
RECORD_STANDARD(Draw_DC_Polygon, KT_Point)
RECORD_STANDARD(Draw_2DI_Polygon, KT_DCI_Point)
RECORD_STANDARD(Draw_DCI_Polygon, KT_DCI_Point)

namespace {

class Polygons : public testing::Test {
 protected:
  Polygons() : session({.variant = Variant::rgb_z}) {
    using enum KT_Action;
    rebind<Draw_2D_Polytriangle, Draw_2D_Colorized_Polytriangle, KT_Point>();
    rebind<Draw_DC_Polytriangle, Draw_DC_Colorized_Polytriangle, KT_Point>();
    rebind<Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle, KT_DCI_Point>();
    rebind<Draw_DCI_Polytriangle, Draw_DCI_Colorized_Polytriangle, KT_DCI_Point>();
    asked.clear();
    standard.clear();
    asked_count = 0;
    keeping = true;
  }

  template <KT_Action action, class Point>
  void draw(const std::vector<Point>& points, const KT_RGB32* color = nullptr) {
    session.actions().call<action>(session.rendition, static_cast<int>(points.size()),
                                   points.data(), color);
  }

  Session session;

 private:
  template <KT_Action flat, KT_Action colorized, class Point>
  void rebind() {
    session.actions().bind<flat>(&session.renderer(), &record_flat<flat, Point>);
    session.actions().bind<colorized>(&session.renderer(), &record_colorized<colorized, Point>);
  }
};

// Points on the curve y = x * x, with their number as depth: convex however many.
template <class Point>
std::vector<Point> convex(int count) {
  std::vector<Point> points;
  for (int i = 0; i < count; ++i) {
    Point p;
    p.x = static_cast<decltype(p.x)>(i);
    p.y = static_cast<decltype(p.y)>(i * i);
    p.z = static_cast<decltype(p.z)>(i);
    points.push_back(p);
  }
  return points;
}

std::vector<int> order_of(const Asked& call) {
  std::vector<int> order;
  for (const KT_Point& p : call.points) order.push_back(static_cast<int>(p.z));
  return order;
}

using Order = std::vector<int>;

TEST_F(Polygons, ConvexFloatOnesAreStripsFromBothEnds) {
  const KT_RGB32 color{1, 2, 3, 4};
  for (const auto& [count, order] : {std::pair<int, Order>{3, {0, 1, 2}},
                                     {4, {0, 1, 3, 2}},
                                     {5, {0, 1, 4, 2, 3}},
                                     {6, {0, 1, 5, 2, 4, 3}}}) {
    asked.clear();
    draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(count));
    draw<KT_Action::Draw_DC_Polygon>(convex<KT_Point>(count), &color);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(asked[0].action, KT_Action::Draw_2D_Polytriangle);
    EXPECT_EQ(asked[1].action, KT_Action::Draw_DC_Colorized_Polytriangle);
    EXPECT_EQ(asked[1].color, &color);
    EXPECT_TRUE(asked[1].single_color);
    for (const Asked& call : asked) EXPECT_EQ(order_of(call), order);
  }
}

TEST_F(Polygons, WholePointsAreOneTriangleOrTriangulatedAsFloats) {
  const KT_RGB32 color{1, 2, 3, 4};
  draw<KT_Action::Draw_2DI_Polygon>(convex<KT_DCI_Point>(3));
  draw<KT_Action::Draw_DCI_Polygon>(convex<KT_DCI_Point>(3), &color);
  ASSERT_EQ(asked.size(), 2u);
  EXPECT_EQ(asked[0].action, KT_Action::Draw_2DI_Polytriangle);
  EXPECT_EQ(asked[1].action, KT_Action::Draw_DCI_Colorized_Polytriangle);
  EXPECT_FALSE(asked[1].single_color);
  EXPECT_EQ(order_of(asked[1]), (Order{0, 1, 2}));
  asked.clear();
  draw<KT_Action::Draw_2DI_Polygon>(convex<KT_DCI_Point>(4), &color);
  ASSERT_EQ(asked.size(), 2u);
  for (const Asked& call : asked) {
    EXPECT_EQ(call.action, KT_Action::Draw_2D_Colorized_Polytriangle);
    EXPECT_TRUE(call.single_color);
    EXPECT_EQ(call.points.size(), 3u);
  }
  asked.clear();
  draw<KT_Action::Draw_DCI_Polygon>(convex<KT_DCI_Point>(70));
  ASSERT_EQ(asked.size(), 68u);
  EXPECT_EQ(asked[0].action, KT_Action::Draw_DC_Polytriangle);
}

TEST_F(Polygons, LongAndConcaveOnesAreTriangulatedWithTheirDepth) {
  draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(64));
  EXPECT_EQ(asked.size(), 1u);
  asked.clear();
  draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(65));
  EXPECT_EQ(asked.size(), 63u);
  asked.clear();
  const std::vector<KT_Point> arrow = {{0, 0, 0}, {4, 4, 1}, {8, 0, 2}, {4, 9, 3}};
  draw<KT_Action::Draw_DC_Polygon>(arrow);
  ASSERT_EQ(asked.size(), 2u);
  for (const Asked& call : asked) {
    EXPECT_EQ(call.action, KT_Action::Draw_DC_Polytriangle);
    for (const KT_Point& p : call.points) {
      const KT_Point& corner = arrow[static_cast<std::size_t>(p.z)];
      EXPECT_EQ(p.x, corner.x);
      EXPECT_EQ(p.y, corner.y);
    }
  }
}

TEST_F(Polygons, EdgePassPutsItsOffsetIntoFloatOnesAlone) {
  session.face().face_depth_offset = 3;
  const std::uint32_t id = session.rendition->face_attributes->id;
  session.renderer().edge_depth_offset = -40;
  draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(3));
  draw<KT_Action::Draw_DC_Polygon>(convex<KT_Point>(5));
  draw<KT_Action::Draw_2D_Polygon>(
      std::vector<KT_Point>{{0, 0, 0}, {4, 4, 1}, {8, 0, 2}, {4, 9, 3}});
  ASSERT_EQ(asked.size(), 4u);
  for (const Asked& call : asked) EXPECT_EQ(call.depth_offset, -40);
  asked.clear();
  draw<KT_Action::Draw_2DI_Polygon>(convex<KT_DCI_Point>(3));
  draw<KT_Action::Draw_DCI_Polygon>(convex<KT_DCI_Point>(4));
  for (const Asked& call : asked) EXPECT_EQ(call.depth_offset, 3);
  session.renderer().edge_depth_offset = 0;
  EXPECT_EQ(session.rendition->face_attributes->face_depth_offset, 3);
  EXPECT_EQ(session.rendition->face_attributes->id, id);
}

TEST_F(Polygons, GeneralPatternsComeBeforeTheCount) {
  session.face().face_pattern = 75;
  draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(2));
  draw<KT_Action::Draw_DC_Polygon>(convex<KT_Point>(5));
  draw<KT_Action::Draw_2DI_Polygon>(convex<KT_DCI_Point>(0));
  draw<KT_Action::Draw_DCI_Polygon>(convex<KT_DCI_Point>(3));
  using enum KT_Action;
  EXPECT_EQ(standard, (std::vector<KT_Action>{Draw_2D_Polygon, Draw_DC_Polygon, Draw_2DI_Polygon,
                                              Draw_DCI_Polygon}));
  session.face().face_pattern = 74;
  draw<KT_Action::Draw_2D_Polygon>(convex<KT_Point>(2));
  draw<KT_Action::Draw_DCI_Polygon>(convex<KT_DCI_Point>(2));
  EXPECT_EQ(asked_count, 0);
  EXPECT_EQ(standard.size(), 4u);
}

TEST_F(Polygons, StripsNeedNoHeap) {
  keeping = false;
  const std::vector<KT_Point> points = convex<KT_Point>(64);
  const long before = heap::allocated();
  draw<KT_Action::Draw_2D_Polygon>(points);
  EXPECT_EQ(heap::allocated(), before);
  EXPECT_EQ(asked_count, 1);
}

}  // namespace
