// Cutting of contours into triangles, by the tessellator of the GL utility library.
#include <GL/glu.h>

#include <array>
#include <cmath>
#include <deque>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/contour.h"

namespace {

/// What one tessellation gathers. Its functions are called back through C, so that exceptions
/// are kept until the tessellator has returned.
class Gathering {
 public:
  /// A point with a place of its own, which the tessellator may point to.
  KT_Point* keep(const KT_Point& point) { return &points_.emplace_back(point); }

  void corner(const KT_Point* point) { corners_.push_back(point); }

  /// A point where contours cross or meet. All of it, z included, is the mean of its neighbours.
  KT_Point* combined(const KT_Point* const neighbours[4], const float weights[4]) {
    KT_Point mean;
    for (int n = 0; n < 4; ++n) {
      if (neighbours[n] == nullptr) continue;
      mean.x += neighbours[n]->x * weights[n];
      mean.y += neighbours[n]->y * weights[n];
      mean.z += neighbours[n]->z * weights[n];
    }
    return keep(mean);
  }

  void fail(unsigned code) { error_ = code; }
  void hold_exception() { exception_ = std::current_exception(); }

  /// Throws what went wrong, if anything did.
  void check() const {
    if (exception_) std::rethrow_exception(exception_);
    if (error_ == GLU_OUT_OF_MEMORY) throw std::bad_alloc();
    if (error_ != 0) {
      throw std::runtime_error("tessellation failed: error " + std::to_string(error_));
    }
  }

  /// All corners, three a triangle.
  const std::vector<const KT_Point*>& corners() const { return corners_; }

 private:
  std::deque<KT_Point> points_;
  std::vector<const KT_Point*> corners_;
  std::exception_ptr exception_;
  unsigned error_ = 0;
};

void on_vertex(void* point, void* gathering) {
  auto& target = *static_cast<Gathering*>(gathering);
  try {
    target.corner(static_cast<const KT_Point*>(point));
  } catch (...) {
    target.hold_exception();
  }
}

void on_combine(const GLdouble[3], void* const neighbours[4], const GLfloat weights[4],
                void** result, void* gathering) {
  auto& target = *static_cast<Gathering*>(gathering);
  const KT_Point* points[4];
  for (int n = 0; n < 4; ++n) points[n] = static_cast<const KT_Point*>(neighbours[n]);
  *result = neighbours[0];
  try {
    *result = target.combined(points, weights);
  } catch (...) {
    target.hold_exception();
  }
}

// With a callback for edge flags the tessellator gives plain triangles.
void on_edge_flag(GLboolean, void*) {}

void on_error(GLenum code, void* gathering) {
  static_cast<Gathering*>(gathering)->fail(code);
}

using Tessellator = std::unique_ptr<GLUtesselator, decltype(&gluDeleteTess)>;

Tessellator make_tessellator(const KT_Vector& normal) {
  Tessellator tess(gluNewTess(), gluDeleteTess);
  if (!tess) throw std::bad_alloc();
  const auto set = [&](GLenum which, auto* callback) {
    gluTessCallback(tess.get(), which, reinterpret_cast<_GLUfuncptr>(callback));
  };
  set(GLU_TESS_VERTEX_DATA, on_vertex);
  set(GLU_TESS_COMBINE_DATA, on_combine);
  set(GLU_TESS_EDGE_FLAG_DATA, on_edge_flag);
  set(GLU_TESS_ERROR_DATA, on_error);
  gluTessProperty(tess.get(), GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
  gluTessNormal(tess.get(), static_cast<double>(normal.x), static_cast<double>(normal.y),
                static_cast<double>(normal.z));
  return tess;
}

void enter_contour(GLUtesselator* tess, const std::vector<KT_Point>& contour,
                   Gathering& gathering) {
  gluTessBeginContour(tess);
  for (const KT_Point& point : contour) {
    KT_Point* const kept = gathering.keep(point);
    std::array<GLdouble, 3> place = {static_cast<double>(point.x), static_cast<double>(point.y),
                                     static_cast<double>(point.z)};
    gluTessVertex(tess, place.data(), kept);
  }
  gluTessEndContour(tess);
}

bool is_drawable(const std::vector<KT_Point>& contour) {
  for (const KT_Point& point : contour) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return false;
  }
  return contour.size() >= 3;
}

}  // namespace

// The callback runs when the tessellator is done, and may throw.
void KT_Contour_Set_Data::triangulate(Triangle_Callback callback, void* context) const {
  Gathering gathering;
  const Tessellator tess = make_tessellator(normal_);
  gluTessBeginPolygon(tess.get(), &gathering);
  for (const auto& contour : contours) {
    if (is_drawable(contour)) enter_contour(tess.get(), contour, gathering);
  }
  gluTessEndPolygon(tess.get());
  gathering.check();

  const auto& corners = gathering.corners();
  for (std::size_t n = 0; n + 2 < corners.size(); n += 3) {
    callback(corners[n], corners[n + 1], corners[n + 2], context);
  }
}
