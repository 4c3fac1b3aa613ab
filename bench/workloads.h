// Primitives that the benchmarks draw: precomputed device vertices from a fixed seed.
#pragma once

#include <cstdint>
#include <vector>

#include "host/types.h"

namespace bench {

class Random {
 public:
  std::uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }
  /// Uniform from `low` up to, not including, `high`.
  double between(double low, double high) { return low + (high - low) * (next() / 4294967296.0); }

 private:
  std::uint32_t state_ = 2463534242u;
};

/// Where primitives lie: over the whole frame, or in the rows that fit the second-level cache.
enum class Spread { whole_frame, local };

struct Triangle {
  KT_DCI_Point points[3];
  KT_RGB32 colors[3];
};

/// So many triangles of about `area` pixels; local ones lie within `local_rows` rows.
struct Crowd {
  int count;
  double area;
  int local_rows;
};
inline constexpr Crowd large{2000, 5100, 180};
inline constexpr Crowd small{100000, 50, 64};

/// Order in depth. Farthest first, every pixel passes.
enum class Order { random, back_to_front };

std::vector<Triangle> random_triangles(const Crowd& crowd, Spread spread, std::uint8_t alpha,
                                       Order order);

struct Strip {
  std::vector<KT_DCI_Point> points;
  std::vector<KT_RGB32> colors;
};

/// A shaded sphere of radius 510 pixels as strips, 199,712 triangles, both faces.
std::vector<Strip> sphere_strips();

double pixels_of(const std::vector<Triangle>& triangles);

}  // namespace bench
