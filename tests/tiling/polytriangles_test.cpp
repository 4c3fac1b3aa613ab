// Strips in double precision: which inner calls they become, and what goes with the points.
#include "tests/tiling/inner_calls.h"

namespace {

using namespace tiling_test;
using Strips = Inner_Calls;

const std::vector<KT_Point_D> strip = {Inner_Calls::at(0, 0),         Inner_Calls::at(9, 0),
                                       Inner_Calls::at(0, 9),         Inner_Calls::at(9, 9),
                                       Inner_Calls::at(0, 4 * reach), Inner_Calls::at(9, 4 * reach),
                                       Inner_Calls::at(0, 5 * reach), Inner_Calls::at(0, 18),
                                       Inner_Calls::at(9, 18),        Inner_Calls::at(0, 27)};
// Triangles 0 and 1 are inside, 2 and 3 are cut, 4 is outside, 5 and 6 are cut, 7 is inside.

TEST_F(Strips, RunsStayWholeAndTrianglesAreCut) {
  const auto calls = draw<Draw_2DD_Polytriangle>(strip);
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_EQ(columns(calls[0]), (std::vector<double>{0, 9, 0, 9}));
  EXPECT_EQ(columns(calls[5]), (std::vector<double>{0, 9, 0}));
  EXPECT_EQ(calls[5].points[2].y, 27);
  for (std::size_t n = 1; n < 5; ++n) {
    double highest = 0;
    for (const KT_Point_D& p : calls[n].points) highest = std::max(highest, p.y);
    EXPECT_EQ(highest, reach) << n;
  }
  EXPECT_TRUE(
      draw<Draw_2DD_Polytriangle>({at(0, 2 * reach), at(9, 2 * reach), at(0, 3 * reach)}).empty());
  // Depth and the origin's column come through a cut.
  for (const Recorded_Call& call :
       draw<Draw_2DD_Polytriangle>({at(3, 0, 500), at(3, 0, 500), at(3, 2 * reach, 1500)})) {
    for (const KT_Point_D& p : call.points) {
      EXPECT_EQ(p.x, 3);
      EXPECT_EQ(p.z, p.y == 0 ? 500 : 1000);
    }
  }
}

// Colours belong to triangles; a cut one is drawn in its own.
TEST_F(Strips, KeepTheirTrianglesColors) {
  const std::vector<KT_RGB32> colors(strip.size());
  for (bool single : {false, true}) {
    const auto calls = draw<Draw_2DD_Colorized_Polytriangle>(strip, colors.data(), single);
    ASSERT_EQ(calls.size(), 6U);
    const std::ptrdiff_t triangles[] = {0, 2, 3, 5, 6, 7};
    for (std::size_t n = 0; n < 6; ++n) {
      EXPECT_EQ(calls[n].colors - colors.data(), single ? 0 : triangles[n]) << n;
      EXPECT_EQ(calls[n].single_color, single || (n > 0 && n < 5)) << n;
    }
  }
}

// After a cut triangle the arrays go on from the run's first point, in a strip too long for the
// stack as in a short one. Every attribute of point n is made of n.
TEST_F(Strips, AttributesGoOnWithThePointsAndAreCutWithThem) {
  for (int extra : {0, 70}) {
    std::vector<KT_Point_D> points = strip;
    for (int n = 0; n < extra; ++n) points.push_back(at(n % 9, n % 7, n));
    std::vector<KT_RGB32> colors;
    std::vector<KT_Parameter> parameters;
    std::vector<float> floats;
    std::vector<KT_Vector> vectors;
    for (std::size_t n = 0; n < points.size(); ++n) {
      const auto value = static_cast<float>(n);
      colors.push_back({0, 0, static_cast<std::uint8_t>(n), 255});
      parameters.insert(parameters.end(), {{value, 0, 0}, {-value, 0, 0}});
      floats.push_back(value);
      vectors.push_back({value, 0, 0});
    }
    const auto expect_at = [&](const Recorded_Call& call, std::size_t n, double value) {
      EXPECT_NEAR(call.point_colors[n].red, value, 0.5) << n;
      EXPECT_EQ(call.parameters[2 * n].s, value) << n;
      EXPECT_EQ(call.parameters[2 * n + 1].s, -value) << n;
      EXPECT_EQ(call.floats[n], value) << n;
      EXPECT_EQ(call.vectors[n].x, value) << n;
    };
    const auto expect_from = [&](const Recorded_Call& call, std::size_t first) {
      for (std::size_t n = 0; n < call.points.size(); ++n) {
        expect_at(call, n, static_cast<double>(first + n));
      }
    };
    const auto calls = draw<Draw_2DD_Textured_Polytriangle>(
        points, colors.data(), parameters.data(), 2, static_cast<const float*>(floats.data()),
        static_cast<const KT_Vector*>(vectors.data()));
    ASSERT_EQ(calls.size(), 6U);
    expect_from(calls[0], 0);
    expect_from(calls[5], 7);
    EXPECT_EQ(calls[5].points.size(), 3U + static_cast<std::size_t>(extra));
    // Triangle 2 is points 2 to 4, of which the last lies 4 reaches up: cut at a quarter.
    for (std::size_t n = 0; n < calls[1].points.size(); ++n) {
      const KT_Point_D& p = calls[1].points[n];
      const float value = calls[1].floats[n];
      EXPECT_NEAR(value, p.y == 9 ? (p.x == 0 ? 2 : 3) : (p.x == 0 ? 2.5 : 3.25), 1e-6);
      expect_at(calls[1], n, static_cast<double>(value));
    }
  }
}

// With perspective correction, a view that divides by 1 + x/128 gives each point its divisor.
TEST_F(Strips, MakeTheFloatsOfPerspective) {
  const auto floats = [&](std::uint32_t options, auto* data) {
    misc().texture_options = options;
    if (data != nullptr) {
      data->elements[3][0] = 1.0f / 128;
      data->adjoint_valid = false;
    }
    display().device_matrix.reset(data);
    return draw<Draw_2DD_Textured_Polytriangle>({{0, 0, 0}, {64, 0, 0}, {0, 50, 0}}, nullptr,
                                                nullptr, 1, nullptr, nullptr)
        .at(0)
        .floats;
  };
  EXPECT_TRUE(floats(0, new KT_Matrix_Double_Data).empty());
  EXPECT_EQ(floats(2, static_cast<KT_Matrix_Double_Data*>(nullptr)), (std::vector<float>{1, 1, 1}));
  // Column 64 of the device is column 128 of the model.
  EXPECT_EQ(floats(1, new KT_Matrix_Double_Data), (std::vector<float>{1, 2, 1}));
  EXPECT_EQ(floats(1, new KT_Matrix_Single_Data), (std::vector<float>{1, 2, 1}));
}

}  // namespace
