// Whether a polygon may be cut as a strip.
#include <cmath>

#include "host/contour.h"

namespace {

struct Edge {
  double x = 0;
  double y = 0;
};

Edge edge_between(const KT_Point& from, const KT_Point& to) {
  return {static_cast<double>(to.x) - static_cast<double>(from.x),
          static_cast<double>(to.y) - static_cast<double>(from.y)};
}

/// Side of the turn from `a` to `b`. Rounding keeps the order of the products, so that a turn is
/// never taken for one to the other side; what lies below the rounding is straight on.
int turn(const Edge& a, const Edge& b) {
  const double left = a.x * b.y;
  const double right = a.y * b.x;
  return static_cast<int>(left > right) - static_cast<int>(left < right);
}

bool goes_forward(const Edge& edge) {
  return edge.x > 0 || (edge.x == 0 && edge.y > 0);
}

/// What a walk round the polygon has seen. A convex polygon turns to one side only, and its edges
/// change between forward and backward just twice; more changes mean more than one round.
class Walk {
 public:
  void visit(const Edge& edge) {
    if (edge.x == 0 && edge.y == 0) return;
    if (!started_) {
      first_ = edge;
      started_ = true;
    } else {
      pass_corner(last_, edge);
    }
    last_ = edge;
  }

  bool is_convex() {
    if (started_) pass_corner(last_, first_);
    const bool is_flat = !turns_left_ && !turns_right_;
    return is_flat || (turns_left_ != turns_right_ && changes_ == 2);
  }

 private:
  void pass_corner(const Edge& from, const Edge& to) {
    const int side = turn(from, to);
    turns_left_ = turns_left_ || side > 0;
    turns_right_ = turns_right_ || side < 0;
    if (goes_forward(from) != goes_forward(to)) ++changes_;
  }

  Edge first_, last_;
  bool started_ = false;
  bool turns_left_ = false;
  bool turns_right_ = false;
  int changes_ = 0;
};

}  // namespace

KT_Polygon_Rank KD_Rank_Polygon(int count, const KT_Point* points) {
  Walk walk;
  for (int n = 0; n < count; ++n) {
    if (!std::isfinite(points[n].x) || !std::isfinite(points[n].y)) return {1};
    walk.visit(edge_between(points[n], points[n + 1 < count ? n + 1 : 0]));
  }
  return {walk.is_convex() ? 0 : 1};
}
