// Random triangles and the sphere, in device coordinates inside the window.
#include "bench/workloads.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "bench/session.h"

namespace bench {
namespace {

KT_RGB32 random_color(Random& random, std::uint8_t alpha) {
  const auto channel = [&] { return static_cast<std::uint8_t>(random.between(16, 240)); };
  return {channel(), channel(), channel(), alpha};
}

void sort_back_to_front(std::vector<Triangle>& triangles) {
  const auto nearest = [](const Triangle& t) {
    return std::min({t.points[0].z, t.points[1].z, t.points[2].z});
  };
  // Slices that do not overlap in depth, farthest first.
  std::sort(triangles.begin(), triangles.end(),
            [&](const Triangle& a, const Triangle& b) { return nearest(a) > nearest(b); });
  int depth = 65535;
  for (Triangle& triangle : triangles) {
    for (KT_DCI_Point& point : triangle.points) point.z = depth;
    depth = std::max(0, depth - 1);
  }
}

}  // namespace

std::vector<Triangle> random_triangles(const Crowd& crowd, Spread spread, std::uint8_t alpha,
                                       Order order) {
  Random random;
  const double radius = 1.03 * std::sqrt(crowd.area / 1.299);
  const double margin = radius * 1.15 + 1;
  const double rows =
      spread == Spread::local ? std::max<double>(crowd.local_rows, 2 * margin + 2) : height;
  std::vector<Triangle> triangles(static_cast<std::size_t>(crowd.count));
  for (Triangle& triangle : triangles) {
    const double x = random.between(margin, width - margin);
    const double y = random.between(margin, rows - margin);
    const double turn = random.between(0, 2 * std::numbers::pi);
    const double depth = random.between(0, 60000);
    for (int i = 0; i < 3; ++i) {
      const double angle = turn + i * 2 * std::numbers::pi / 3 + random.between(-0.35, 0.35);
      const double reach = radius * random.between(0.85, 1.15);
      triangle.points[i] = {static_cast<int>(x + reach * std::cos(angle)),
                            static_cast<int>(y + reach * std::sin(angle)),
                            static_cast<int>(depth + random.between(0, 5000))};
      triangle.colors[i] = random_color(random, alpha);
    }
  }
  if (order == Order::back_to_front) sort_back_to_front(triangles);
  return triangles;
}

std::vector<Strip> sphere_strips() {
  constexpr int bands = 316;
  constexpr int segments = 316;  // 316 bands of 316 quads: 199,712 triangles
  constexpr double radius = 510;
  const auto vertex = [&](int band, int segment, Strip& to) {
    const double polar = std::numbers::pi * band / bands;
    const double around = 2 * std::numbers::pi * segment / segments;
    const double x = std::sin(polar) * std::cos(around);
    const double y = std::cos(polar);
    const double z = std::sin(polar) * std::sin(around);
    to.points.push_back({static_cast<int>(std::lround(width / 2.0 + radius * x)),
                         static_cast<int>(std::lround(height / 2.0 + radius * y)),
                         static_cast<int>(32000 - 30000 * z)});
    const auto shade = [](double v) { return static_cast<std::uint8_t>(128 + 100 * v); };
    to.colors.push_back({shade(z), shade(y), shade(x), 255});
  };
  std::vector<Strip> strips(bands);
  for (int band = 0; band < bands; ++band) {
    for (int segment = 0; segment <= segments; ++segment) {
      vertex(band, segment, strips[static_cast<std::size_t>(band)]);
      vertex(band + 1, segment, strips[static_cast<std::size_t>(band)]);
    }
  }
  return strips;
}

double pixels_of(const std::vector<Triangle>& triangles) {
  double sum = 0;
  for (const Triangle& t : triangles) {
    const KT_DCI_Point &a = t.points[0], &b = t.points[1], &c = t.points[2];
    sum += std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y)) / 2.0;
  }
  return sum;
}

}  // namespace bench
