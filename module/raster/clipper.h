// The triangle clipper: cuts one triangle by one rectangle, with all vertex attributes, for
// triangles that reach beyond what fixed-point edges can hold. It works in double precision and
// allocates nothing.
#pragma once

#include "host/rendition.h"
#include "module/core/outcode.h"

namespace zbuffer {

/// How parameters run over a triangle: linearly on the screen, or linearly in space, by w.
enum class Parameter_Path : std::uint8_t { on_screen, in_space };

/// A triangle to be cut: three points in device coordinates and what goes with them. Null is what
/// it has not; w is 0 then.
struct Clip_Triangle {
  const KT_DCI_Point* points;
  const KT_RGB32* colors = nullptr;
  const KT_Parameter* parameters = nullptr;
  std::ptrdiff_t parameter_width = 1;  ///< records a point; the first is the point's
  const float* w = nullptr;            ///< goes with the parameters
  const KT_Vector* vectors = nullptr;  ///< accepted, and come back as zeros
  Parameter_Path parameter_path = Parameter_Path::on_screen;
};

/// The triangle strip that is left of a triangle, with the attributes that it had.
struct Clipped_Strip {
  static constexpr int most_points = 8;

  int count = 0;  ///< 3 to 8, or 0 when nothing is left
  KT_DCI_Point points[most_points];
  KT_RGB32 colors[most_points];
  KT_Parameter parameters[most_points];
  float w[most_points];
  KT_Vector vectors[most_points];
};

/// Cuts `triangle` by `rectangle`, both in device coordinates; z is carried along.
Clipped_Strip clipped(const Clip_Triangle& triangle, const KT_Int_Rectangle& rectangle);

/// The triangle as it is where all of it lies in the device range, else what the range leaves of
/// it.
Clipped_Strip clipped_to_device_range(const Clip_Triangle& triangle);

}  // namespace zbuffer
