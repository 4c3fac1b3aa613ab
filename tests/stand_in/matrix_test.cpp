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
    double determinant = 0;
    for (int n = 0; n < 16; ++n) {
      double product = 0;
      for (int k = 0; k < 4; ++k) product += matrix->elements[n / 4][k] * matrix->adjoint[k][n % 4];
      if (n == 0) determinant = product;
      ASSERT_NEAR(product, n % 5 == 0 ? determinant : 0, 1e-12);
    }
  }
}

TEST(Matrix, DividesByTheFourthCoordinateUnlessItIsZero) {
  const auto check = []<class Data>(const KT_Handle<Data>& matrix) {
    auto& m = matrix->elements;
    m[0][3] = 10;  // moves x by 10
    m[3][2] = 1;   // fourth coordinate: z + 1
    EXPECT_DOUBLE_EQ(Data::transform(m, {2, 6, 3}).x, 3);
    EXPECT_DOUBLE_EQ(Data::transform(m, {2, 6, 3}).z, 0.75);
    EXPECT_DOUBLE_EQ(Data::transform(m, {2, 6, -1}).x, 12);
  };
  check(KT_Handle<KT_Matrix_Single_Data>(new KT_Matrix_Single_Data));
  check(KT_Handle<KT_Matrix_Double_Data>(new KT_Matrix_Double_Data));
}

}  // namespace
