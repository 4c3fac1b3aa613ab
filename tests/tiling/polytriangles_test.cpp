#include "tests/tiling/inner_calls.h"

namespace {

using namespace tiling_test;
using enum KT_Action;
using Strips = Inner_Calls;

const std::vector<KT_Point_D> strip = {Inner_Calls::at(0, 0),         Inner_Calls::at(9, 0),
                                       Inner_Calls::at(0, 9),         Inner_Calls::at(9, 9),
                                       Inner_Calls::at(0, 4 * reach), Inner_Calls::at(9, 4 * reach),
                                       Inner_Calls::at(0, 5 * reach), Inner_Calls::at(0, 18),
                                       Inner_Calls::at(9, 18),        Inner_Calls::at(0, 27)};
// Triangles 0 and 1 are inside, 2 and 3 are cut, 4 is outside, 5 and 6 are cut, 7 is inside.

TEST_F(Strips, RunsStayWholeAndTrianglesAreCut) {
  draw<Draw_2DD_Polytriangle>(strip);
  const auto calls = take();
  ASSERT_EQ(calls.size(), 6U);
  const std::vector<KT_DCI_Point> first = {{0, 0, 0}, {9, 0, 0}, {0, 9, 0}, {9, 9, 0}};
  EXPECT_EQ(calls[0].points, first);
  const std::vector<KT_DCI_Point> last = {{0, 18, 0}, {9, 18, 0}, {0, 27, 0}};
  EXPECT_EQ(calls[5].points, last);
  for (std::size_t n = 1; n < 5; ++n) {
    std::int32_t highest = 0;
    for (const KT_DCI_Point& p : calls[n].points) highest = std::max(highest, p.y);
    EXPECT_EQ(highest, 0x40000000) << n;
  }
  draw<Draw_2DD_Polytriangle>({at(0, 0), at(9, 0), at(0, 9)});
  EXPECT_EQ(take().size(), 1U);
  draw<Draw_2DD_Polytriangle>({at(0, 2 * reach), at(9, 2 * reach), at(0, 3 * reach)});
  EXPECT_TRUE(take().empty());
}

// Colours belong to triangles; a cut one is drawn in its own.
TEST_F(Strips, KeepTheirTrianglesColors) {
  const std::vector<KT_RGB32> colors(strip.size());
  for (bool single : {false, true}) {
    draw<Draw_2DD_Colorized_Polytriangle>(strip, colors.data(), single);
    const auto calls = take();
    ASSERT_EQ(calls.size(), 6U);
    const std::ptrdiff_t triangles[] = {0, 2, 3, 5, 6, 7};
    for (std::size_t n = 0; n < 6; ++n) {
      EXPECT_EQ(calls[n].colors - colors.data(), single ? 0 : triangles[n]) << n;
      EXPECT_EQ(calls[n].single_color, single || (n > 0 && n < 5)) << n;
    }
  }
}

TEST_F(Strips, AttributesOfPointsAreCutWithThem) {
  const std::vector<KT_Point_D> points = {at(0, 0), at(8, 0), at(0, 2 * reach)};
  const KT_RGB32 colors[] = {{0, 0, 0, 255}, {0, 0, 0, 255}, {100, 100, 100, 255}};
  const KT_Parameter parameters[] = {{0, 0, 0}, {7, 7, 7}, {0, 0, 0},
                                     {7, 7, 7}, {8, 2, 0}, {9, 9, 9}};
  const float floats[] = {1, 1, 3};
  draw<Draw_2DD_Textured_Polytriangle>(points, static_cast<const KT_RGB32*>(colors),
                                       static_cast<const KT_Parameter*>(parameters), 2,
                                       static_cast<const float*>(floats), nullptr);
  auto calls = take();
  ASSERT_EQ(calls.size(), 1U);
  const Asked& call = calls[0];
  ASSERT_EQ(call.points.size(), 4U);
  for (std::size_t n = 0; n < 4; ++n) {
    const bool cut = call.points[n].y != 0;
    EXPECT_EQ(call.point_colors[n].red, cut ? 50 : 0) << n;
    EXPECT_EQ(call.parameters[2 * n].s, cut ? 4.0f : 0.0f) << n;
    EXPECT_EQ(call.parameters[2 * n + 1].s, cut ? 8.0f : 7.0f) << n;
    EXPECT_EQ(call.floats[n], cut ? 2.0f : 1.0f) << n;
  }
  draw<Draw_2DD_Gouraud_Polytriangle>(points, static_cast<const KT_RGB32*>(colors));
  calls = take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].point_colors.size(), 4U);
}

// Behind a cut triangle the arrays go on from the run's first point, in a strip too long for the
// stack as in a short one.
TEST_F(Strips, ArraysGoOnWithThePoints) {
  for (int extra : {0, 70}) {
    std::vector<KT_Point_D> points = strip;
    for (int n = 0; n < extra; ++n) points.push_back(at(n % 9, n % 7, n));
    std::vector<KT_RGB32> colors;
    std::vector<KT_Parameter> parameters;
    std::vector<float> floats;
    std::vector<KT_Vector> vectors;
    for (std::size_t n = 0; n < points.size(); ++n) {
      const auto value = static_cast<float>(n);
      colors.push_back({static_cast<std::uint8_t>(n), 0, 0, 255});
      parameters.insert(parameters.end(), {{value, 0, 0}, {-value, 0, 0}});
      floats.push_back(value);
      vectors.push_back({value, 0, 0});
    }
    const auto expect_from = [&](const Asked& call, std::size_t first) {
      for (std::size_t n = 0; n < call.points.size(); ++n) {
        const auto value = static_cast<float>(first + n);
        EXPECT_EQ(call.point_colors[n].blue, first + n);
        if (call.action == Draw_2DI_Gouraud_Polytriangle) continue;
        EXPECT_EQ(call.parameters[2 * n + 1].s, -value);
        EXPECT_EQ(call.floats[n], value);
        EXPECT_EQ(call.vectors[n].x, value);
      }
    };
    draw<Draw_2DD_Textured_Polytriangle>(points, colors.data(), parameters.data(), 2,
                                         static_cast<const float*>(floats.data()),
                                         static_cast<const KT_Vector*>(vectors.data()));
    draw<Draw_2DD_Gouraud_Polytriangle>(points, colors.data());
    const auto calls = take();
    ASSERT_EQ(calls.size(), 12U);
    for (std::size_t kind : {0U, 6U}) {
      expect_from(calls[kind], 0);
      expect_from(calls[kind + 5], 7);
      EXPECT_EQ(calls[kind + 5].points.size(), 3U + static_cast<std::size_t>(extra));
    }
    // Triangle 3 has one point inside, point 3, and keeps its values there.
    bool kept = false;
    for (std::size_t n = 0; n < calls[2].points.size(); ++n) {
      if (calls[2].points[n] != KT_DCI_Point{9, 9, 0}) continue;
      kept = true;
      EXPECT_EQ(calls[2].point_colors[n].blue, 3);
      EXPECT_EQ(calls[2].parameters[2 * n + 1].s, -3);
      EXPECT_EQ(calls[2].floats[n], 3);
      EXPECT_EQ(calls[2].vectors[n].x, 3);
    }
    EXPECT_TRUE(kept);

    // Nothing is cut: the caller's arrays as they are.
    points.resize(3);
    draw<Draw_2DD_Textured_Polytriangle>(points, colors.data(), parameters.data(), 2,
                                         static_cast<const float*>(floats.data()),
                                         static_cast<const KT_Vector*>(vectors.data()));
    expect_from(take().at(0), 0);
  }
}

// Depth and the origin's column come through a cut.
TEST_F(Strips, CutPointsKeepColumnAndDepth) {
  draw<Draw_2DD_Polytriangle>({at(3, 0, 500), at(3, 0, 500), at(3, 2 * reach, 1500)});
  const auto calls = take();
  ASSERT_EQ(calls.size(), 1U);
  for (const KT_DCI_Point& p : calls[0].points) {
    EXPECT_EQ(p.x, 3);
    EXPECT_EQ(p.z, p.y == 0 ? 500 : 1000);
  }
}

// Asked to correct perspective, a view that divides by 1 + x/100 gives each point its divisor.
TEST_F(Strips, MakeTheFloatsOfPerspective) {
  const auto floats = [&](std::uint32_t options, auto* data) {
    misc().texture_options = options;
    if (data != nullptr) {
      data->elements[3][0] = 0.01f;
      data->adjoint_valid = false;
    }
    display().device_matrix.reset(data);
    draw<Draw_2DD_Textured_Polytriangle>({{0, 0, 0}, {50, 0, 0}, {0, 50, 0}}, nullptr, nullptr, 1,
                                         nullptr, nullptr);
    return take().at(0).floats;
  };
  EXPECT_TRUE(floats(0, new KT_Matrix_Double_Data).empty());
  EXPECT_EQ(floats(2, static_cast<KT_Matrix_Double_Data*>(nullptr)), (std::vector<float>{1, 1, 1}));
  // Column 50 of the device is column 100 of the model.
  const auto in_double = floats(1, new KT_Matrix_Double_Data);
  const auto in_single = floats(1, new KT_Matrix_Single_Data);
  for (const auto& made : {in_double, in_single}) {
    ASSERT_EQ(made.size(), 3U);
    EXPECT_FLOAT_EQ(made[0], 1);
    EXPECT_FLOAT_EQ(made[1], 2);
    EXPECT_FLOAT_EQ(made[2], 1);
  }
}

}  // namespace
