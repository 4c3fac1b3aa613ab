// Adjoints and transforms.
#include "host/matrix.h"

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace {

// matrix * adjoint is the determinant times identity, whatever the matrix.
TEST(Matrix, AdjointTurnsPointsBack) {
  support::Random random(7);
  for (int round = 0; round < 50; ++round) {
    const KT_Handle<KT_Matrix_Double_Data> matrix(new KT_Matrix_Double_Data);
    for (auto& row : matrix->elements) {
      for (double& value : row) value = random.real(-2, 2);
    }
    matrix->adjoint_valid = false;
    matrix->validate_adjoint();
    double product[4][4] = {};
    for (int n = 0; n < 64; ++n) {
      const int row = n / 16, column = n / 4 % 4, k = n % 4;
      product[row][column] += matrix->elements[row][k] * matrix->adjoint[k][column];
    }
    for (int n = 0; n < 16; ++n) {
      ASSERT_NEAR(product[n / 4][n % 4], n / 4 == n % 4 ? product[0][0] : 0, 1e-12);
    }
  }
}

template <class Data>
void check_transform() {
  const KT_Handle<Data> matrix(new Data);
  auto& m = matrix->elements;
  m[0][3] = 10;  // moves x by 10
  m[3][2] = 1;   // fourth coordinate: z + 1
  const KT_Point_D divided = Data::transform(m, {2, 6, 3});
  EXPECT_DOUBLE_EQ(divided.x, 3);
  EXPECT_DOUBLE_EQ(divided.y, 1.5);
  EXPECT_DOUBLE_EQ(divided.z, 0.75);
  EXPECT_DOUBLE_EQ(Data::transform(m, {2, 6, -1}).x, 12);

  KT_Matrix handle;
  handle.reset(matrix.get());
  EXPECT_FLOAT_EQ(handle.transform({2, 6, 3}), 4);
}

TEST(Matrix, DividesByTheFourthCoordinateUnlessItIsZero) {
  check_transform<KT_Matrix_Single_Data>();
  check_transform<KT_Matrix_Double_Data>();
}

}  // namespace
