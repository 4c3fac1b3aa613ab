// Matrices of a view, in single or double precision. Points are columns: result = matrix * point.
#pragma once

#include "host/counted.h"

class KORVEL_EXPORT KT_Matrix_Data : public KT_Counted {
 public:
  enum class Precision : std::int32_t { single_precision, double_precision };

  Precision precision;
  bool adjoint_valid = false;  ///< cleared by whoever changes the elements

 protected:
  explicit KT_Matrix_Data(Precision which) : precision(which) {}
  KT_Matrix_Data(const KT_Matrix_Data&) = default;
};

class KORVEL_EXPORT KT_Matrix_Single_Data : public KT_Matrix_Data {
 public:
  float elements[4][4];
  float adjoint[4][4];

  KT_Matrix_Single_Data();  ///< identity
  KT_Matrix_Single_Data* clone() const override;
  /// Brings `adjoint` up to date with `elements`.
  void validate_adjoint();
  /// `point` by the rows of `by`, divided by the fourth coordinate unless that is 0.
  static KT_Point_D transform(const float (&by)[4][4], const KT_Point_D& point);
};

class KORVEL_EXPORT KT_Matrix_Double_Data : public KT_Matrix_Data {
 public:
  double elements[4][4];
  double adjoint[4][4];

  KT_Matrix_Double_Data();  ///< identity
  KT_Matrix_Double_Data* clone() const override;
  void validate_adjoint();
  static KT_Point_D transform(const double (&by)[4][4], const KT_Point_D& point);
};

class KORVEL_EXPORT KT_Matrix : public KT_Handle<KT_Matrix_Data> {
 public:
  /// Gives a null handle identity data of double precision.
  void allocate();
  /// Transforms without the final division; returns the fourth coordinate. Not null.
  float transform(const KT_Point_D& point) const;
};
