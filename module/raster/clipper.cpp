// One triangle by one rectangle: each edge is cut for itself, then the edges and the rectangle's
// corners are joined to a polygon. The side by which an edge left decides which corners come next.
#include "module/raster/clipper.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/clip.h"
#include "module/core/fixed_point.h"

namespace zbuffer {
namespace {

// The side that cuts an edge is a bit of an outcode; 0 is an end that is not cut.
using Side = unsigned;
constexpr Side not_cut = 0;

// The gradients of what is carried and the values between two vertices are single precision,
// whatever the compiler might keep in doubles.
float to_single(double value) {
  volatile float single = static_cast<float>(value);
  return single;
}

struct Working_Vertex {
  double x, y, z;
  KT_RGB32 color;
  std::array<float, 3> parameter;
  float w;
};

struct Bounds {
  double left, right, bottom, top;
  explicit Bounds(const KT_Int_Rectangle& r)
      : left(r.left), right(r.right), bottom(r.bottom), top(r.top) {}
};

std::uint8_t truncated_byte(double value) {
  return static_cast<std::uint8_t>(truncated(std::clamp(value, 0.0, 255.0)));
}

double between(double a, double b, double t) {
  return a + (b - a) * t;
}

KT_RGB32 color_between(KT_RGB32 a, KT_RGB32 b, double t) {
  const auto channel = [t](std::uint8_t from, std::uint8_t to) {
    return truncated_byte(between(from, to, t));
  };
  return {channel(a.blue, b.blue), channel(a.green, b.green), channel(a.red, b.red),
          channel(a.alpha, b.alpha)};
}

// A parameter's share of the way when it runs linearly in space and not on the screen.
double perspective_share(double t, float w_a, float w_b) {
  const double r = static_cast<double>(w_b) / w_a;
  return t / ((1.0 - r) * t + r);
}

void put_parameters_between(Working_Vertex& to, const Working_Vertex& a, const Working_Vertex& b,
                            double t) {
  for (std::size_t i = 0; i < 3; ++i) {
    to.parameter[i] = to_single(between(a.parameter[i], b.parameter[i], t));
  }
  to.w = to_single(between(a.w, b.w, t));
}

struct Carried {
  bool colors;
  bool parameters;
  bool perspective;
};

// One edge of the triangle, cut to the rectangle: its two ends and the sides that cut them.
struct Clipped_Edge {
  Working_Vertex start, end;
  Side entry_code = not_cut;
  Side exit_code = not_cut;
};

class Edge_Clipper {
 public:
  Edge_Clipper(const Bounds& bounds, const Carried& carried) : bounds_(bounds), carried_(carried) {}

  // Returns false when the edge is not visible. An edge that is entered close to its end is cut
  // again from there, since the cut is the more exact the nearer its start.
  bool clip(const Working_Vertex& a, const Working_Vertex& b, Clipped_Edge& edge) const {
    Cut cut;
    if (!find_cut(a, b, cut)) return false;
    if (cut.t_in <= close_to_end) {
      edge = {result(a, b, cut.t_in, cut.code_in), result(a, b, cut.t_out, cut.code_out),
              cut.code_in, cut.code_out};
      return true;
    }
    cut = Cut();
    if (!find_cut(b, a, cut) || cut.t_in > close_to_end) return false;
    edge = {result(b, a, cut.t_out, cut.code_out), result(b, a, cut.t_in, cut.code_in),
            cut.code_out, cut.code_in};
    return true;
  }

 private:
  static constexpr double close_to_end = 0.999;
  static constexpr double epsilon = 1e-12f;  // the single-precision number, widened

  struct Cut {
    double t_in = 0;
    double t_out = 1;
    Side code_in = not_cut;
    Side code_out = not_cut;
  };

  bool find_cut(const Working_Vertex& a, const Working_Vertex& b, Cut& cut) const {
    // A cut in y wins over a nearly equal one in x: a corner counts as top or bottom.
    return cut_axis<beyond_left, beyond_right>(a.x, b.x, bounds_.left, bounds_.right, cut) &&
           cut_axis<beyond_bottom, beyond_top>(a.y, b.y, bounds_.bottom, bounds_.top, cut) &&
           cut.t_in <= cut.t_out;
  }

  template <Side low_code, Side high_code>
  static bool cut_axis(double from, double to, double low, double high, Cut& cut) {
    constexpr bool is_y = low_code == beyond_bottom;  // x has set its parameters before
    const double d = to - from;
    const auto enter = [&](double at, Side code) {
      const double t = (at - from) / d;
      if (!is_y || t >= cut.t_in - epsilon) cut.t_in = t, cut.code_in = code;
    };
    const auto leave = [&](double at, Side code) {
      const double t = (at - from) / d;
      if (!is_y || cut.t_out + epsilon >= t) cut.t_out = t, cut.code_out = code;
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
  }

  Working_Vertex result(const Working_Vertex& a, const Working_Vertex& b, double t,
                        Side code) const {
    Working_Vertex made = t == 0.0 ? a : b;
    if (code != not_cut) put_on_side(made, a, b, t, code);
    made.z = a.z + (b.z - a.z) * t;
    if (carried_.colors) made.color = color_between(a.color, b.color, t);
    if (carried_.parameters) {
      put_parameters_between(made, a, b, carried_.perspective ? perspective_share(t, a.w, b.w) : t);
    }
    return made;
  }

  void put_on_side(Working_Vertex& made, const Working_Vertex& a, const Working_Vertex& b, double t,
                   Side code) const {
    if (code == beyond_left || code == beyond_right) {
      made.x = code == beyond_left ? bounds_.left : bounds_.right;
      made.y = std::clamp(a.y + (b.y - a.y) * t, bounds_.bottom, bounds_.top);
    } else {
      made.y = code == beyond_bottom ? bounds_.bottom : bounds_.top;
      made.x = std::clamp(a.x + (b.x - a.x) * t, bounds_.left, bounds_.right);
    }
  }

  const Bounds& bounds_;
  const Carried& carried_;
};

// Change of an attribute along x and y over the plane of the triangle.
struct Gradient {
  double dx = 0;
  double dy = 0;

  double at(double start, double x, double y) const { return start + x * dx + y * dy; }
};

// The triangle as a plane: differences of its corners, gradients, values at any point.
class Plane {
 public:
  Plane(const std::array<Working_Vertex, 3>& corners, const Carried& carried)
      : p_(corners),
        a_(p_[1].x - p_[0].x),
        b_(p_[2].y - p_[0].y),
        c_(p_[1].y - p_[0].y),
        d_(p_[2].x - p_[0].x),
        carried_(carried),
        z_(gradient([](const Working_Vertex& v) { return v.z; })) {
    if (carried.colors) {
      for (int i = 0; i < 4; ++i) {
        color_[static_cast<std::size_t>(i)] =
            single_gradient([i](const Working_Vertex& v) { return channel(v.color, i); });
      }
    }
    if (carried.parameters) {
      for (std::size_t i = 0; i < 3; ++i) {
        parameter_[i] = single_gradient(
            [i](const Working_Vertex& v) { return static_cast<double>(v.parameter[i]); });
      }
      w_ = single_gradient([](const Working_Vertex& v) { return static_cast<double>(v.w); });
    }
  }

  bool counterclockwise() const { return a_ * b_ > c_ * d_; }

  // Barycentric, u along corner 0 to 1 and v along corner 0 to 2. Only u is strictly bounded.
  bool contains(double x, double y) const {
    const double px = x - p_[0].x;
    const double py = y - p_[0].y;
    double u, v;
    if (a_ == 0) {
      if (c_ == 0 || d_ == 0) return false;
      v = px / d_;
      if (v < 0 || v > 1) return false;
      u = (py - v * b_) / c_;
    } else {
      const double e = a_ * b_ - d_ * c_;
      if (e == 0) return false;
      v = (a_ * py - px * c_) / e;
      if (v < 0 || v > 1) return false;
      u = (px - v * d_) / a_;
    }
    return u > 0 && u + v <= 1;
  }

  Working_Vertex at(double x, double y) const {
    const double px = x - p_[0].x;
    const double py = y - p_[0].y;
    Working_Vertex made{x, y, z_.at(p_[0].z, px, py), {}, {}, 0};
    if (carried_.colors) {
      const auto value = [&](int i) {
        const auto& gradient = color_[static_cast<std::size_t>(i)];
        return truncated_byte(gradient.at(channel(p_[0].color, i), px, py));
      };
      made.color = {value(0), value(1), value(2), value(3)};
    }
    if (carried_.parameters) evaluate_parameters(made, px, py);
    return made;
  }

 private:
  static double channel(KT_RGB32 color, int i) { return (color.word() >> (8 * i)) & 255; }

  // A triangle that is a line takes each gradient from one edge.
  template <class Value>
  Gradient gradient(Value value) const {
    const double f1 = value(p_[1]) - value(p_[0]);
    const double f2 = value(p_[2]) - value(p_[0]);
    const double area = a_ * b_ - c_ * d_;
    double dx, dy;
    if (area != 0) {
      dx = (f1 * b_ - f2 * c_) / area;
      dy = -(f1 * d_ - f2 * a_) / area;
    } else {
      dx = a_ != 0 ? f1 / a_ : d_ != 0 ? f2 / d_ : 0.0;
      dy = c_ != 0 ? f1 / c_ : b_ != 0 ? f2 / b_ : 0.0;
    }
    return {dx, dy};
  }

  template <class Value>
  Gradient single_gradient(Value value) const {
    const Gradient exact = gradient(value);
    return {to_single(exact.dx), to_single(exact.dy)};
  }

  // With perspective: along the row through the point, between the two edges that it crosses.
  void evaluate_parameters(Working_Vertex& to, double px, double py) const {
    if (carried_.perspective && evaluate_along_row(to)) return;
    for (std::size_t i = 0; i < 3; ++i) {
      to.parameter[i] = to_single(parameter_[i].at(p_[0].parameter[i], px, py));
    }
    to.w = to_single(w_.at(p_[0].w, px, py));
  }

  bool evaluate_along_row(Working_Vertex& to) const {
    constexpr std::size_t edges[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    Working_Vertex crossings[3];
    int count = 0;
    for (const auto& edge : edges) {
      const Working_Vertex& a = p_[edge[0]];
      const Working_Vertex& b = p_[edge[1]];
      if ((to.y > a.y) == (to.y > b.y)) continue;
      const double t = (to.y - a.y) / (b.y - a.y);
      Working_Vertex& crossing = crossings[count++];
      put_parameters_between(crossing, a, b, perspective_share(t, a.w, b.w));
      crossing.x = a.x + (b.x - a.x) * t;
    }
    if (count != 2 || crossings[0].x == crossings[1].x) return false;
    const double t = (to.x - crossings[0].x) / (crossings[1].x - crossings[0].x);
    put_parameters_between(to, crossings[0], crossings[1],
                           perspective_share(t, crossings[0].w, crossings[1].w));
    return true;
  }

  const std::array<Working_Vertex, 3>& p_;
  // Differences from corner 0: of x and y to corner 1 (a, c) and to corner 2 (d, b).
  double a_, b_, c_, d_;
  Carried carried_;
  Gradient z_;
  std::array<Gradient, 4> color_{};
  std::array<Gradient, 3> parameter_{};
  Gradient w_{};
};

// The polygon that is left, built edge by edge. It can overrun the eight vertices of a strip only
// through rounding; then nothing comes out.
class Polygon {
 public:
  Polygon(const Bounds& bounds, const Plane& plane) : bounds_(bounds), plane_(plane) {}

  void append(const Working_Vertex& vertex) {
    if (count_ < Clipped_Strip::most_points) vertices_[static_cast<std::size_t>(count_)] = vertex;
    ++count_;
  }

  // Walks round the rectangle from side to side and appends the corner that ends each side left.
  void append_corners(Side from, Side to) {
    if (from == not_cut || to == not_cut) return;
    while (from != to) {
      append_corner(from);
      from = plane_.counterclockwise() ? (from == beyond_left ? beyond_bottom : from / 2)
                                       : (from == beyond_bottom ? beyond_left : from * 2);
    }
  }

  void append_rectangle() {
    append(plane_.at(bounds_.left, bounds_.bottom));
    append(plane_.at(bounds_.left, bounds_.top));
    append(plane_.at(bounds_.right, bounds_.bottom));
    append(plane_.at(bounds_.right, bounds_.top));
  }

  int count() const { return count_; }
  const Working_Vertex& operator[](int i) const { return vertices_[static_cast<std::size_t>(i)]; }

 private:
  void append_corner(Side side) {
    const bool turned = plane_.counterclockwise();
    const bool at_left = turned ? side == beyond_left || side == beyond_top
                                : side == beyond_left || side == beyond_bottom;
    const bool at_top = turned ? side == beyond_right || side == beyond_top
                               : side == beyond_left || side == beyond_top;
    append(
        plane_.at(at_left ? bounds_.left : bounds_.right, at_top ? bounds_.top : bounds_.bottom));
  }

  const Bounds& bounds_;
  const Plane& plane_;
  std::array<Working_Vertex, Clipped_Strip::most_points> vertices_;
  int count_ = 0;
};

// Joins the visible edges. `pending` is the side by which the last edge left and which the next
// entry has to answer.
void assemble(const std::array<Working_Vertex, 3>& corners, const Edge_Clipper& clipper,
              Polygon& polygon) {
  Side first_code = not_cut;
  Side pending = not_cut;
  bool previous_visible = true;  // the first edge has none before it
  for (std::size_t i = 0; i < 3; ++i) {
    Clipped_Edge edge;
    const bool visible = clipper.clip(corners[i], corners[(i + 1) % 3], edge);
    if (visible) {
      if (pending != not_cut) {
        polygon.append_corners(pending, edge.entry_code);
        polygon.append(edge.start);
        pending = not_cut;
      } else if ((i == 0 && edge.entry_code != not_cut) || !previous_visible) {
        first_code = edge.entry_code;
        polygon.append(edge.start);
      }
      polygon.append(edge.end);
      if (edge.exit_code != not_cut) pending = edge.exit_code;
    }
    previous_visible = visible;
  }
  polygon.append_corners(pending, first_code);
}

bool inside(const Working_Vertex& v, const Bounds& r) {
  return v.x >= r.left && v.x <= r.right && v.y >= r.bottom && v.y <= r.top;
}

Working_Vertex working_vertex(const Clip_Triangle& triangle, std::size_t i) {
  const KT_DCI_Point& p = triangle.points[i];
  Working_Vertex made{static_cast<double>(p.x),
                      static_cast<double>(p.y),
                      static_cast<double>(p.z),
                      triangle.colors ? triangle.colors[i] : KT_RGB32{},
                      {},
                      triangle.w ? triangle.w[i] : 0};
  if (triangle.parameters) {
    const KT_Parameter& parameter =
        triangle.parameters[static_cast<std::ptrdiff_t>(i) * triangle.parameter_width];
    made.parameter = {parameter.s, parameter.t, parameter.r};
  }
  return made;
}

void put_point(Clipped_Strip& strip, int i, const Working_Vertex& from,
               const Clip_Triangle& triangle) {
  strip.points[i] = {rounded(from.x), rounded(from.y), rounded(from.z)};
  if (triangle.colors) strip.colors[i] = from.color;
  if (triangle.parameters) {
    strip.parameters[i] = {from.parameter[0], from.parameter[1], from.parameter[2]};
    strip.w[i] = from.w;
  }
  if (triangle.vectors) strip.vectors[i] = {};
}

// Position in the polygon of point `i` of the strip: from both ends in turn.
int strip_place(int i, int count) {
  if (i == 0) return 0;
  return i % 2 == 1 ? (i + 1) / 2 : count - i / 2;
}

}  // namespace

Clipped_Strip clipped(const Clip_Triangle& triangle, const KT_Int_Rectangle& rectangle) {
  const Carried carried{triangle.colors != nullptr, triangle.parameters != nullptr,
                        triangle.parameter_path == Parameter_Path::in_space};
  const Bounds bounds(rectangle);
  std::array<Working_Vertex, 3> corners;
  for (std::size_t i = 0; i < 3; ++i) corners[i] = working_vertex(triangle, i);

  const Plane plane(corners, carried);
  Polygon polygon(bounds, plane);
  bool as_strip = false;  // whether the vertices already stand in strip order
  if (inside(corners[0], bounds) && inside(corners[1], bounds) && inside(corners[2], bounds)) {
    for (const Working_Vertex& corner : corners) polygon.append(corner);
    as_strip = true;
  } else {
    assemble(corners, Edge_Clipper(bounds, carried), polygon);
    if (polygon.count() == 0 && plane.contains(bounds.left, bounds.bottom)) {
      polygon.append_rectangle();
      as_strip = true;
    }
  }

  Clipped_Strip strip;
  if (polygon.count() < 3 || polygon.count() > Clipped_Strip::most_points) return strip;
  strip.count = polygon.count();
  for (int i = 0; i < strip.count; ++i) {
    put_point(strip, i, polygon[as_strip ? i : strip_place(i, strip.count)], triangle);
  }
  return strip;
}

Clipped_Strip clipped_to_device_range(const Clip_Triangle& triangle) {
  short codes[3];
  KD_Clip(device_range, 3, triangle.points, codes);
  if ((codes[0] | codes[1] | codes[2]) != 0) return clipped(triangle, device_range);
  Clipped_Strip strip;
  strip.count = 3;
  std::copy_n(triangle.points, 3, strip.points);
  if (triangle.colors) std::copy_n(triangle.colors, 3, strip.colors);
  if (triangle.parameters) {
    for (int i = 0; i < 3; ++i) {
      strip.parameters[i] = triangle.parameters[i * triangle.parameter_width];
    }
  }
  return strip;
}

}  // namespace zbuffer
