// Actions that record what they are called with in place of drawing: what the module calls of its
// own action table shows there.
#pragma once

#include <utility>
#include <vector>

#include "module/core/software_z_buffer.h"

namespace support {

/// A call of a strip or line action. Arrays are copied as far as they belong to points.
struct Recorded_Call {
  KT_Action action{};
  std::vector<KT_Point_D> points;
  const KT_RGB32* colors = nullptr;
  std::vector<KT_RGB32> point_colors;  ///< of Gouraud and textured calls
  std::vector<KT_Parameter> parameters;
  std::vector<float> floats;
  std::vector<KT_Vector> vectors;
  bool single_color = false;
  KT_Rendition rendition;
  KT_Int_XY origin;  ///< of the device, while the call runs
};

class Recorded_Calls {
 public:
  /// Binds recording routines to `actions`.
  template <KT_Action... actions>
  static void record(KT_Renderer_Data& renderer) {
    (renderer.actions.bind<actions>(&renderer, &Of<actions, korvel::Routine_Of<actions>>::routine),
     ...);
    calls_.clear();
  }
  /// The calls since the last look.
  static std::vector<Recorded_Call> take() { return std::exchange(calls_, {}); }

 private:
  template <KT_Action action, class Routine>
  struct Of;
  template <KT_Action action, class Point, class... Rest>
  struct Of<action, void(KT_Renderer_Data*, const KT_Rendition&, int, const Point*, Rest...)> {
    static void routine(KT_Renderer_Data* object, const KT_Rendition& given, int count,
                        const Point* points, Rest... rest) {
      Recorded_Call call;
      call.action = action;
      for (int n = 0; n < count; ++n) {
        call.points.push_back({static_cast<double>(points[n].x), static_cast<double>(points[n].y),
                               static_cast<double>(points[n].z)});
      }
      call.rendition = given;
      call.origin = renderer_of(object).device_origin;
      keep(call, count, rest...);
      calls_.push_back(std::move(call));
    }
  };

  template <class Element>
  static void copy(std::vector<Element>& to, const Element* array, int count) {
    if (array != nullptr) to.assign(array, array + count);
  }
  static void keep(Recorded_Call&, int) {}
  static void keep(Recorded_Call& call, int, const KT_RGB32* colors, bool single_color) {
    call.colors = colors;
    call.single_color = single_color;
  }
  static void keep(Recorded_Call& call, int count, const KT_RGB32* colors) {
    call.colors = colors;
    copy(call.point_colors, colors, count);
  }
  static void keep(Recorded_Call& call, int count, const KT_RGB32* colors,
                   const KT_Parameter* parameters, int parameter_width, const float* floats,
                   const KT_Vector* vectors) {
    keep(call, count, colors);
    copy(call.parameters, parameters, count * parameter_width);
    copy(call.floats, floats, count);
    copy(call.vectors, vectors, count);
  }

  inline static std::vector<Recorded_Call> calls_;
};

}  // namespace support
