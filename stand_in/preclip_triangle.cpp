// Triangles in double precision, cut by a rectangle, with all that their points carry.
#include <array>
#include <cmath>

#include "host/clip.h"
#include "stand_in/rounding.h"

namespace stand_in {
namespace {

/// A corner of what is left of the triangle. Its weights say what part it has of each of the
/// triangle's own points, and from them any attribute follows at the end.
struct Corner {
  double x, y, z;
  double weight[3];
};

/// Every cut by one edge of the rectangle adds a corner; an outline that rounding has made a
/// little concave may get one more.
constexpr int most_corners = 3 + 4 + 2;

struct Outline {
  std::array<Corner, most_corners> corners;
  int count = 0;

  void add(const Corner& corner) { corners[static_cast<std::size_t>(count++)] = corner; }
  const Corner& at(int n) const { return corners[static_cast<std::size_t>(n)]; }
};

Corner between(const Corner& from, const Corner& to, double t) {
  const auto mix = [t](double a, double b) { return a * (1 - t) + b * t; };
  Corner result = {mix(from.x, to.x), mix(from.y, to.y), mix(from.z, to.z), {}};
  for (int n = 0; n < 3; ++n) result.weight[n] = mix(from.weight[n], to.weight[n]);
  return result;
}

/// Keeps the part where `inside` (a signed distance from an edge) is not negative. `snap` puts a
/// new corner onto the edge.
template <class Distance, class Snap>
Outline cut(const Outline& source, Distance inside, Snap snap) {
  Outline result;
  for (int n = 0; n < source.count; ++n) {
    const Corner& from = source.at(n);
    const Corner& to = source.at((n + 1) % source.count);
    const double of_from = inside(from);
    const double of_to = inside(to);
    if (of_from >= 0) result.add(from);
    if ((of_from >= 0) != (of_to >= 0)) {
      // Always from the inside outward, so that neighbours that share an edge are cut alike.
      Corner corner = of_from >= 0 ? between(from, to, of_from / (of_from - of_to))
                                   : between(to, from, of_to / (of_to - of_from));
      snap(corner);
      result.add(corner);
    }
  }
  return result;
}

Outline cut_to(const KT_Int_Rectangle& limits, const Outline& triangle) {
  const double left = limits.left, right = limits.right;
  const double bottom = limits.bottom, top = limits.top;
  Outline rest = cut(
      triangle, [&](const Corner& c) { return c.x - left; }, [&](Corner& c) { c.x = left; });
  rest = cut(
      rest, [&](const Corner& c) { return right - c.x; }, [&](Corner& c) { c.x = right; });
  rest = cut(
      rest, [&](const Corner& c) { return c.y - bottom; }, [&](Corner& c) { c.y = bottom; });
  return cut(
      rest, [&](const Corner& c) { return top - c.y; }, [&](Corner& c) { c.y = top; });
}

/// The corner that comes `n`th when the outline is walked as a strip: 0, 1, last, 2, last but
/// one and so on.
int strip_order(int n, int count) {
  if (n == 0) return 0;
  return n % 2 == 1 ? (n + 1) / 2 : count - n / 2;
}

double weighted(const Corner& corner, double first, double second, double third) {
  return corner.weight[0] * first + corner.weight[1] * second + corner.weight[2] * third;
}

float weighted(const Corner& corner, float first, float second, float third) {
  return static_cast<float>(weighted(corner, static_cast<double>(first),
                                     static_cast<double>(second), static_cast<double>(third)));
}

KT_RGB32 color_at(const Corner& corner, const KT_RGB32* colors) {
  const auto channel = [&](std::uint8_t KT_RGB32::*which) {
    return round_to_byte(weighted(corner, static_cast<double>(colors[0].*which),
                                  static_cast<double>(colors[1].*which),
                                  static_cast<double>(colors[2].*which)));
  };
  return {channel(&KT_RGB32::blue), channel(&KT_RGB32::green), channel(&KT_RGB32::red),
          channel(&KT_RGB32::alpha)};
}

KT_Parameter parameter_at(const Corner& corner, const KT_Parameter& a, const KT_Parameter& b,
                          const KT_Parameter& c) {
  return {weighted(corner, a.s, b.s, c.s), weighted(corner, a.t, b.t, c.t),
          weighted(corner, a.r, b.r, c.r)};
}

KT_Vector vector_at(const Corner& corner, const KT_Vector* vectors) {
  return {weighted(corner, vectors[0].x, vectors[1].x, vectors[2].x),
          weighted(corner, vectors[0].y, vectors[1].y, vectors[2].y),
          weighted(corner, vectors[0].z, vectors[1].z, vectors[2].z)};
}

bool is_number(const KT_Point_D& point) {
  return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

}  // namespace
}  // namespace stand_in

bool KD_Preclip_2D_Triangle(KT_Renderer_Data*, const KT_Rendition&,
                            const KT_Int_Rectangle& rectangle, const KT_Point_D* points, int* count,
                            KT_DCI_Point* results, const KT_RGB32* colors, KT_RGB32* result_colors,
                            const KT_Parameter* parameters, KT_Parameter* result_parameters,
                            int parameter_width, const float* floats, float* result_floats,
                            const KT_Vector* vectors, KT_Vector* result_vectors) {
  using namespace stand_in;
  *count = 0;
  Outline triangle;
  for (int n = 0; n < 3; ++n) {
    if (!is_number(points[n])) return false;
    Corner corner = {points[n].x, points[n].y, points[n].z, {}};
    corner.weight[n] = 1;
    triangle.add(corner);
  }
  const Outline rest = cut_to(rectangle, triangle);
  if (rest.count < 3) return false;

  *count = rest.count;
  for (int n = 0; n < rest.count; ++n) {
    const Corner& corner = rest.at(strip_order(n, rest.count));
    results[n] = round_to_pixel({corner.x, corner.y, corner.z});
    if (colors && result_colors) result_colors[n] = color_at(corner, colors);
    if (floats && result_floats) {
      result_floats[n] = weighted(corner, floats[0], floats[1], floats[2]);
    }
    if (vectors && result_vectors) result_vectors[n] = vector_at(corner, vectors);
    if (!parameters || !result_parameters) continue;
    for (int k = 0; k < parameter_width; ++k) {
      result_parameters[n * parameter_width + k] =
          parameter_at(corner, parameters[k], parameters[parameter_width + k],
                       parameters[2 * parameter_width + k]);
    }
  }
  return true;
}
