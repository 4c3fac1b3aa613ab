#include "tests/differential/model_clipper.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace model {
namespace {

enum Side { left = 1, top = 2, right = 4, bottom = 8 };

struct Vertex {
  double x, y, z;
  KT_RGB32 color;
  KT_Parameter parameter;
};

struct Cut {
  bool visible = false;
  Vertex start{}, end{};
  int entry = 0, exit = 0;
};

/// Value of `channel` of a colour, 0 to 3 from the lowest address.
int channel(KT_RGB32 color, int k) {
  return static_cast<int>(color.word() >> (8 * k) & 255);
}

template <class Value>
KT_RGB32 from_channels(Value value) {
  std::uint32_t word = 0;
  for (int k = 0; k < 4; ++k)
    word |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(value(k))) << (8 * k);
  return KT_RGB32::from_word(word);
}

/// The parameter whose components are `value` of theirs.
template <class Value>
KT_Parameter from_components(Value value) {
  return {static_cast<float>(value(&KT_Parameter::s)), static_cast<float>(value(&KT_Parameter::t)),
          static_cast<float>(value(&KT_Parameter::r))};
}

Vertex point_on(const Vertex& a, const Vertex& b, double t, int side, const KT_Int_Rectangle& r) {
  Vertex p{};
  p.z = a.z + (b.z - a.z) * t;
  p.color = from_channels([&](int k) {
    const double c = channel(a.color, k);
    return c + (channel(b.color, k) - c) * t;
  });
  p.parameter = from_components([&](float KT_Parameter::*of) {
    const double from = a.parameter.*of;
    return from + (b.parameter.*of - from) * t;
  });
  if (side == left || side == right) {
    p.x = side == left ? r.left : r.right;
    p.y = std::clamp<double>(a.y + (b.y - a.y) * t, r.bottom, r.top);
  } else if (side != 0) {
    p.y = side == bottom ? r.bottom : r.top;
    p.x = std::clamp<double>(a.x + (b.x - a.x) * t, r.left, r.right);
  } else {
    p.x = t == 0 ? a.x : b.x;
    p.y = t == 0 ? a.y : b.y;
  }
  return p;
}

Cut clip_edge(const Vertex& a, const Vertex& b, const KT_Int_Rectangle& r, bool retry = false) {
  constexpr double epsilon = 1e-12f;
  double t_in = 0, t_out = 1;
  Cut cut;
  // One axis: low and high side, with their codes. `slack` is for the second axis.
  const auto axis = [&](double from, double to, int low, int low_code, int high, int high_code,
                        double slack) {
    const double d = to - from;
    const auto enter = [&](int side, int code) {
      const double t = (side - from) / d;
      if (slack != 0 && !(t >= t_in - slack)) return;
      t_in = t;
      cut.entry = code;
    };
    const auto leave = [&](int side, int code) {
      const double t = (side - from) / d;
      if (slack != 0 && !(t_out + slack >= t)) return;
      t_out = t;
      cut.exit = code;
    };
    if (d > 0) {
      if (low > from) {
        if (low > to) return false;
        enter(low, low_code);
      }
      if (to > high) {
        if (from > high) return false;
        leave(high, high_code);
      }
    } else {
      if (low > to) {
        if (low > from) return false;
        leave(low, low_code);
      }
      if (from > high) {
        if (to > high) return false;
        enter(high, high_code);
      }
    }
    return true;
  };
  if (!axis(a.x, b.x, r.left, left, r.right, right, 0)) return {};
  if (!axis(a.y, b.y, r.bottom, bottom, r.top, top, epsilon)) return {};
  if (t_in > t_out) return {};
  if (t_in > 0.999) {
    if (retry) return {};
    cut = clip_edge(b, a, r, true);
    std::swap(cut.start, cut.end);
    std::swap(cut.entry, cut.exit);
    return cut;
  }
  cut.visible = true;
  cut.start = point_on(a, b, t_in, cut.entry, r);
  cut.end = point_on(a, b, t_out, cut.exit, r);
  return cut;
}

struct Gradient {
  double dx, dy;
};

bool point_in_triangle(const Vertex (&p)[3], double x, double y) {
  const double a = p[1].x - p[0].x, c = p[1].y - p[0].y;
  const double d = p[2].x - p[0].x, b = p[2].y - p[0].y;
  const double px = x - p[0].x, py = y - p[0].y;
  double u, v;
  if (a == 0) {
    if (c == 0 || d == 0) return false;
    v = px / d;
    if (v < 0 || v > 1) return false;
    u = (py - v * b) / c;
  } else {
    const double e = a * b - d * c;
    if (e == 0) return false;
    v = (a * py - px * c) / e;
    if (v < 0 || v > 1) return false;
    u = (px - v * d) / a;
  }
  return u > 0 && u + v <= 1;
}

int to_int(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}

}  // namespace

int rounded(double value) {
  return to_int(value >= 0 ? value + 0.5 : value - 0.49999999999);
}

int rounded(float value) {
  const float sum = value >= 0 ? value + 0.5f : value - 0.499999f;
  return to_int(sum);
}

std::vector<Clipped_Point> clip_triangle(const KT_DCI_Point (&points)[3],
                                         const KT_RGB32 (&colors)[3], const KT_Int_Rectangle& r,
                                         const KT_Parameter* parameters) {
  Vertex p[3];
  for (int i = 0; i < 3; ++i)
    p[i] = {double(points[i].x), double(points[i].y), double(points[i].z), colors[i],
            parameters ? parameters[i] : KT_Parameter{}};
  const double a = p[1].x - p[0].x, b = p[2].y - p[0].y;
  const double c = p[1].y - p[0].y, d = p[2].x - p[0].x;
  const double determinant = a * b - c * d;
  const bool counterclockwise = a * b > c * d;
  // Asked for only when a corner lies in the triangle, which then has an area.
  const auto gradient = [&](double f1, double f2) -> Gradient {
    return {(f1 * b - f2 * c) / determinant, -(f1 * d - f2 * a) / determinant};
  };
  const auto on_plane = [&](double x, double y) -> Vertex {
    const Gradient dz = gradient(p[1].z - p[0].z, p[2].z - p[0].z);
    const auto from_base = [&](auto base, double f1, double f2) {
      const Gradient g = gradient(f1, f2);
      return base + (x - p[0].x) * static_cast<float>(g.dx) +
             (y - p[0].y) * static_cast<float>(g.dy);
    };
    return {x, y, p[0].z + (x - p[0].x) * dz.dx + (y - p[0].y) * dz.dy, from_channels([&](int k) {
              const int base = channel(p[0].color, k);
              return std::clamp(
                  from_base(base, channel(p[1].color, k) - base, channel(p[2].color, k) - base),
                  0.0, 255.0);
            }),
            from_components([&](float KT_Parameter::*of) {
              const double base = p[0].parameter.*of;
              return from_base(base, p[1].parameter.*of - base, p[2].parameter.*of - base);
            })};
  };

  std::vector<Vertex> polygon;
  const auto insert_corners = [&](int from, int to) {
    while (from != to && to != 0) {
      // The corner between a side and the next one round the rectangle.
      const int next = counterclockwise ? (from == left ? bottom : from / 2)
                                        : (from == bottom ? left : from * 2);
      polygon.push_back(on_plane((from | next) & left ? r.left : r.right,
                                 (from | next) & bottom ? r.bottom : r.top));
      from = next;
    }
  };
  int first_code = 0, pending = 0;
  bool previous_visible = true;
  for (int i = 0; i < 3; ++i) {
    const Cut cut = clip_edge(p[i], p[(i + 1) % 3], r);
    if (cut.visible) {
      if (pending != 0) {
        insert_corners(pending, cut.entry);
        polygon.push_back(cut.start);
        pending = 0;
      } else if ((i == 0 && cut.entry != 0) || !previous_visible) {
        first_code = cut.entry;
        polygon.push_back(cut.start);
      }
      polygon.push_back(cut.end);
      pending = cut.exit;
    }
    previous_visible = cut.visible;
  }
  if (pending != 0) insert_corners(pending, first_code);

  std::vector<Vertex> strip;
  const std::size_t n = polygon.size();
  if (n == 0) {
    if (point_in_triangle(p, r.left, r.bottom))
      strip = {on_plane(r.left, r.bottom), on_plane(r.left, r.top), on_plane(r.right, r.bottom),
               on_plane(r.right, r.top)};
  } else if (n >= 3 && n <= 8) {
    strip.push_back(polygon[0]);
    for (std::size_t low = 1, high = n - 1; low <= high; ++low, --high) {
      strip.push_back(polygon[low]);
      if (low < high) strip.push_back(polygon[high]);
    }
  }
  std::vector<Clipped_Point> result;
  for (const Vertex& v : strip)
    result.push_back({{rounded(v.x), rounded(v.y), rounded(v.z)}, v.color, v.parameter});
  return result;
}

}  // namespace model
