// Vectors and matrices.
#include "host/matrix.h"

#include <algorithm>
#include <cmath>

namespace {

template <class Number>
using Elements = Number[4][4];

template <class Number>
void set_identity(Elements<Number>& elements) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) elements[row][column] = row == column ? 1 : 0;
  }
}

/// Signed determinant of what is left without one row and one column. Worked in double precision
/// for both kinds of matrix, as the differences of products cancel.
template <class Number>
double cofactor(const Elements<Number>& m, int without_row, int without_column) {
  double left[3][3];
  for (int row = 0, to = 0; row < 4; ++row) {
    if (row == without_row) continue;
    for (int column = 0, at = 0; column < 4; ++column) {
      if (column != without_column) left[to][at++] = static_cast<double>(m[row][column]);
    }
    ++to;
  }
  const double determinant = left[0][0] * (left[1][1] * left[2][2] - left[1][2] * left[2][1]) -
                             left[0][1] * (left[1][0] * left[2][2] - left[1][2] * left[2][0]) +
                             left[0][2] * (left[1][0] * left[2][1] - left[1][1] * left[2][0]);
  return (without_row + without_column) % 2 == 0 ? determinant : -determinant;
}

template <class Data>
void bring_adjoint_up_to_date(Data& data) {
  if (data.adjoint_valid) return;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      using Number = std::remove_reference_t<decltype(data.adjoint[0][0])>;
      data.adjoint[row][column] = static_cast<Number>(cofactor(data.elements, column, row));
    }
  }
  data.adjoint_valid = true;
}

template <class Number>
double row_times_point(const Number (&row)[4], const KT_Point_D& point) {
  return static_cast<double>(row[0]) * point.x + static_cast<double>(row[1]) * point.y +
         static_cast<double>(row[2]) * point.z + static_cast<double>(row[3]);
}

template <class Number>
KT_Point_D transformed(const Elements<Number>& by, const KT_Point_D& point) {
  const double w = row_times_point(by[3], point);
  const double divisor = w != 0 ? w : 1;
  return {row_times_point(by[0], point) / divisor, row_times_point(by[1], point) / divisor,
          row_times_point(by[2], point) / divisor};
}

}  // namespace

void KT_Vector::normalize() {
  const double dx = x, dy = y, dz = z;
  const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
  if (length == 0) return;
  x = static_cast<float>(x / length);
  y = static_cast<float>(y / length);
  z = static_cast<float>(z / length);
}

KT_Matrix_Single_Data::KT_Matrix_Single_Data() : KT_Matrix_Data(Precision::single_precision) {
  set_identity(elements);
  validate_adjoint();
}

KT_Matrix_Single_Data* KT_Matrix_Single_Data::clone() const {
  return new KT_Matrix_Single_Data(*this);
}

void KT_Matrix_Single_Data::validate_adjoint() {
  bring_adjoint_up_to_date(*this);
}

KT_Point_D KT_Matrix_Single_Data::transform(const float (&by)[4][4], const KT_Point_D& point) {
  return transformed(by, point);
}

KT_Matrix_Double_Data::KT_Matrix_Double_Data() : KT_Matrix_Data(Precision::double_precision) {
  set_identity(elements);
  validate_adjoint();
}

KT_Matrix_Double_Data* KT_Matrix_Double_Data::clone() const {
  return new KT_Matrix_Double_Data(*this);
}

void KT_Matrix_Double_Data::validate_adjoint() {
  bring_adjoint_up_to_date(*this);
}

KT_Point_D KT_Matrix_Double_Data::transform(const double (&by)[4][4], const KT_Point_D& point) {
  return transformed(by, point);
}

void KT_Matrix::allocate() {
  if (!*this) reset(new KT_Matrix_Double_Data);
}

float KT_Matrix::transform(const KT_Point_D& point) const {
  if (get()->precision == KT_Matrix_Data::Precision::single_precision) {
    const auto& data = static_cast<const KT_Matrix_Single_Data&>(*get());
    return static_cast<float>(row_times_point(data.elements[3], point));
  }
  const auto& data = static_cast<const KT_Matrix_Double_Data&>(*get());
  return static_cast<float>(row_times_point(data.elements[3], point));
}
