// Perspective floats from the view's matrix: a device point goes back through the adjoint, and the
// matrix then gives its fourth coordinate. In single or double precision, as the matrix is.
#include "module/tiling/perspective.h"

namespace zbuffer::tiling {
namespace {

template <class Data>
void make(const KT_Matrix& matrix, int count, const KT_Point_D* points, float* floats) {
  Data& data = static_cast<Data&>(*matrix);
  data.validate_adjoint();
  for (int n = 0; n < count; ++n) {
    floats[n] = matrix.transform(Data::transform(data.adjoint, points[n]));
  }
}

}  // namespace

void make_perspective_floats(const KT_Display_Context& context, int count, const KT_Point_D* points,
                             float* floats) {
  KT_Matrix matrix = context.device_matrix;
  if (!matrix) matrix.allocate();
  if (matrix->precision == KT_Matrix_Data::Precision::single_precision) {
    make<KT_Matrix_Single_Data>(matrix, count, points, floats);
  } else {
    make<KT_Matrix_Double_Data>(matrix, count, points, floats);
  }
}

}  // namespace zbuffer::tiling
