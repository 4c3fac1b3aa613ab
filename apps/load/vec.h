// Three-component vectors. The mathematics runs in double, so that neither huge nor far-off-centre
// coordinates lose the shape; stored models keep floats.
#pragma once

#include <cmath>

namespace kv {

template <class Number>
struct Vec3_Of {
  Number x{}, y{}, z{};
};

using Vec3 = Vec3_Of<double>;
using Vec3f = Vec3_Of<float>;

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator-(Vec3 a) {
  return {-a.x, -a.y, -a.z};
}
constexpr Vec3 operator*(Vec3 a, double s) {
  return {a.x * s, a.y * s, a.z * s};
}
constexpr double dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Vec3 cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(Vec3 a) {
  return std::sqrt(dot(a, a));
}

// The zero vector stays zero: callers test for it instead of meeting a NaN.
inline Vec3 normalized(Vec3 a) {
  const double size = length(a);
  return size > 0 ? a * (1 / size) : Vec3{};
}

constexpr Vec3 widen(Vec3f a) {
  return {a.x, a.y, a.z};
}

constexpr Vec3f narrow(Vec3 a) {
  return {static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)};
}

inline bool is_finite(Vec3f a) {
  return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

}  // namespace kv
