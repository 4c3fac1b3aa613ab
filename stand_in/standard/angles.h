// Angles by additions, multiplications, divisions and square roots alone, which round in the same
// way on every machine; the functions of mathematics libraries differ in their last digits.
#pragma once

#include <cmath>
#include <numbers>

namespace stand_in {

inline double length_of(double x, double y) {
  return std::sqrt(x * x + y * y);
}

/// The angle of a cosine from -1 to 1, from 0 to pi.
inline double arc_cosine(double cosine) {
  if (cosine < 0) return std::numbers::pi - arc_cosine(-cosine);
  // The tangent of a thirty-second of the angle, whose series ends soon.
  double tangent = std::sqrt((1 - cosine) / (1 + cosine));
  for (int n = 0; n < 4; ++n) tangent /= 1 + std::sqrt(1 + tangent * tangent);
  double series = 0;
  for (int n = 15; n > 0; n -= 2) series = 1.0 / n - tangent * tangent * series;
  return 32 * tangent * series;
}

struct Sine_Cosine {
  double sine, cosine;
};

/// For angles from -2 pi to 2 pi.
inline Sine_Cosine sine_cosine(double angle) {
  // A thirty-second of the angle, by series, is doubled five times. `rest` is 1 less the cosine,
  // which would lose the digits of small angles.
  const double part = angle / 32, square = part * part;
  double sine = 0, rest = 0;
  for (int n = 8; n > 0; --n) {
    sine = 1 - square / (2 * n * (2 * n + 1)) * sine;
    rest = 1 - square / ((2 * n + 1) * (2 * n + 2)) * rest;
  }
  sine *= part;
  rest *= square / 2;
  for (int n = 0; n < 5; ++n) {
    sine *= 2 * (1 - rest);
    rest *= 2 * (2 - rest);
  }
  return {sine, 1 - rest};
}

}  // namespace stand_in
