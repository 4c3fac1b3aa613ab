// A parametric clip of one segment in device coordinates. An end that lies in the range is returned
// as it came, whatever happens to the other one.
#include "module/lines/range_clip.h"

#include <algorithm>

#include "module/core/fixed_point.h"
#include "module/core/outcode.h"

namespace zbuffer::lines {
namespace {

// The range is a square.
constexpr std::int32_t lowest = device_range.left;
constexpr std::int32_t highest = device_range.right;
static_assert(lowest == device_range.bottom && highest == device_range.top);

enum class Side : std::uint8_t { none, left, right, bottom, top };

struct Differences {
  double x, y, z;

  explicit Differences(const KT_DCI_Point* p)
      : x(static_cast<double>(p[1].x) - p[0].x),
        y(static_cast<double>(p[1].y) - p[0].y),
        z(static_cast<double>(p[1].z) - p[0].z) {}
};

/// Where the segment is cut: a share of its length, and the side that cuts it.
struct Range_Cut {
  double t;
  Side side = Side::none;
};

bool in_range(const KT_DCI_Point& p) {
  return p.x >= lowest && p.x <= highest && p.y >= lowest && p.y <= highest;
}

/// Offers `take` the cut by the side beyond which `value` lies, if any. The distance to the side
/// is measured from `start`, in single precision.
template <class Take>
void cut_by_axis(std::int32_t value, std::int32_t start, double difference, Side low, Side high,
                 Take take) {
  const auto cut = [&](std::int32_t limit, Side side) {
    const float distance = static_cast<float>(limit) - static_cast<float>(start);
    take(Range_Cut{static_cast<double>(distance) / difference, side});
  };
  if (value < lowest) {
    cut(lowest, low);
  } else if (value > highest) {
    cut(highest, high);
  }
}

template <class Take>
void cut_by_point(const KT_DCI_Point& end, const KT_DCI_Point& start, const Differences& d,
                  Take take) {
  cut_by_axis(end.x, start.x, d.x, Side::left, Side::right, take);
  cut_by_axis(end.y, start.y, d.y, Side::bottom, Side::top, take);
}

/// The part of the segment inside; false when there is none.
bool find_cuts(const KT_DCI_Point* p, const Differences& d, Range_Cut& from, Range_Cut& to) {
  cut_by_point(p[0], p[0], d, [&](const Range_Cut& cut) {
    if (cut.t > from.t) from = cut;
  });
  if (from.t > 1) return false;
  cut_by_point(p[1], p[0], d, [&](const Range_Cut& cut) {
    if (to.t > cut.t) to = cut;
  });
  return !(from.t > to.t);
}

/// `start` plus the rounded product. Far ends make products that no 32-bit number holds.
std::int32_t moved(std::int32_t start, double product) {
  const double rounded_product = product >= 0 ? product + 0.5 : product - 0.49999999999;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      start + static_cast<std::int64_t>(rounded_product), lowest, highest));
}

KT_DCI_Point point_at(const Range_Cut& cut, const KT_DCI_Point& start, const Differences& d,
                      End_Z z) {
  KT_DCI_Point point;
  switch (cut.side) {
    case Side::left:
    case Side::right:
      point.x = cut.side == Side::left ? lowest : highest;
      point.y = moved(start.y, d.y * cut.t);
      break;
    default:
      point.x = moved(start.x, d.x * cut.t);
      point.y = cut.side == Side::bottom ? lowest : highest;
  }
  point.z = z == End_Z::computed ? rounded(start.z + d.z * cut.t) : 0;
  return point;
}

KT_RGB32 color_at(const Range_Cut& cut, const KT_RGB32* colors, KT_RGB32 end) {
  const auto channel = [&](std::uint8_t KT_RGB32::*which) {
    const int from = colors[0].*which;
    const int to = colors[1].*which;
    return static_cast<std::uint8_t>(rounded(from + (to - from) * cut.t));
  };
  return {channel(&KT_RGB32::blue), channel(&KT_RGB32::green), channel(&KT_RGB32::red), end.alpha};
}

bool clip(const KT_DCI_Point* points, KT_DCI_Point* result, const KT_RGB32* colors,
          KT_RGB32* result_colors, End_Z z) {
  Range_Cut cuts[2] = {{0}, {1}};
  const Differences d(points);
  if (!in_range(points[0]) || !in_range(points[1])) {
    if (!find_cuts(points, d, cuts[0], cuts[1])) return false;
  }
  for (int i = 0; i < 2; ++i) {
    const bool moves = cuts[i].side != Side::none;
    result[i] = moves ? point_at(cuts[i], points[0], d, z) : points[i];
    if (colors) result_colors[i] = moves ? color_at(cuts[i], colors, colors[i]) : colors[i];
  }
  return true;
}

}  // namespace

bool clip_segment_to_range(const KT_DCI_Point* points, KT_DCI_Point* result, End_Z z) {
  return clip(points, result, nullptr, nullptr, z);
}

bool clip_shaded_segment_to_range(const KT_DCI_Point* points, KT_DCI_Point* result,
                                  const KT_RGB32* colors, KT_RGB32* result_colors) {
  return clip(points, result, colors, result_colors, End_Z::computed);
}

}  // namespace zbuffer::lines
