// Contour sets as records.
#include "host/contour.h"

KT_Contour_Set_Data::~KT_Contour_Set_Data() = default;

KT_Contour_Set_Data* KT_Contour_Set_Data::clone() const {
  return new KT_Contour_Set_Data(*this);
}

void KT_Contour_Set_Data::force_projection(const KT_Vector& normal) {
  normal_ = normal;
}

KT_Contour_Set::KT_Contour_Set(int count, const KT_Point* points, bool) {
  reset(new KT_Contour_Set_Data);
  if (count > 0) get()->contours.emplace_back(points, points + count);
}
