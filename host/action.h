// The action table: what a renderer can be called for, in table order, each with its signature.
//
// An action is dispatched through a record of an object and a routine. `bind` and `call` take
// the action as a template argument, so that a routine or a call with other arguments than the
// action's does not compile.
#pragma once

#include "host/rendition.h"

class KT_Renderer_Data;

namespace korvel {

// Families of signatures. `Point` is the action's point type. Points, colours and the further
// arrays belong to the caller for the time of the call.
template <class Point>
using Strip_Routine = void(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points);
template <class Point>
using Colorized_Routine = void(KT_Renderer_Data*, const KT_Rendition&, int count,
                               const Point* points, const KT_RGB32* colors, bool single_color);
template <class Point>
using Gouraud_Routine = void(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points,
                             const KT_RGB32* colors);
template <class Point>
using Textured_Routine = void(KT_Renderer_Data*, const KT_Rendition&, int count,
                              const Point* points, const KT_RGB32* colors,
                              const KT_Parameter* parameters, int parameter_width,
                              const float* extra_floats, const KT_Vector* vectors);
template <class Point>
using Polygon_Routine = void(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points,
                             const KT_RGB32* color);
using Dot_Routine = void(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point* point,
                         const KT_RGB32* color);
using Rgb32_Image_Routine = void(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point* start,
                                 const KT_DCI_Point* end, int stride, const KT_RGB32* pixels, int,
                                 const KT_Packing*);
using Index8_Image_Routine = void(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point* start,
                                  const KT_DCI_Point* end, int stride, const std::uint8_t* pixels);
using Put_Depth_Routine = void(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point* start,
                               const KT_DCI_Point* end, int stride, const std::uint16_t* pixels);
using Read_Back_Routine = void(KT_Renderer_Data*, const KT_Rendition&, const KT_DCI_Point* start,
                               const KT_DCI_Point* end, const KT_Image_Format* format,
                               KT_Shared_Image* image);
using Clear_Routine = void(KT_Renderer_Data*, const KT_Rendition&);
// Routines of the framework's side; `object` is whatever was bound with them.
using Create_Frame_Buffer_Routine = void(void* object, int width, int height,
                                         const KT_Image_Format* format, KT_Shared_Image* image);
using Present_Image_Routine = void(void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
                                   const KT_Shared_Image* image, int target_x, int target_y);

}  // namespace korvel

// Actions that have a standard routine `KD_Standard_` + name: (name, signature).
#define KORVEL_STANDARD_POLYTRIANGLES(X)                        \
  X(Draw_2D_Polytriangle, korvel::Strip_Routine<KT_Point>)      \
  X(Draw_DC_Polytriangle, korvel::Strip_Routine<KT_Point>)      \
  X(Draw_2DI_Polytriangle, korvel::Strip_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Polytriangle, korvel::Strip_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(X)                            \
  X(Draw_2D_Colorized_Polytriangle, korvel::Colorized_Routine<KT_Point>)      \
  X(Draw_DC_Colorized_Polytriangle, korvel::Colorized_Routine<KT_Point>)      \
  X(Draw_2DI_Colorized_Polytriangle, korvel::Colorized_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Colorized_Polytriangle, korvel::Colorized_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(X)                          \
  X(Draw_2D_Gouraud_Polytriangle, korvel::Gouraud_Routine<KT_Point>)      \
  X(Draw_DC_Gouraud_Polytriangle, korvel::Gouraud_Routine<KT_Point>)      \
  X(Draw_2DI_Gouraud_Polytriangle, korvel::Gouraud_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Gouraud_Polytriangle, korvel::Gouraud_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(X)                           \
  X(Draw_2D_Textured_Polytriangle, korvel::Textured_Routine<KT_Point>)      \
  X(Draw_DC_Textured_Polytriangle, korvel::Textured_Routine<KT_Point>)      \
  X(Draw_2DI_Textured_Polytriangle, korvel::Textured_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Textured_Polytriangle, korvel::Textured_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_POLYLINES(X)                        \
  X(Draw_2DI_Polyline, korvel::Strip_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Polyline, korvel::Strip_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_COLORIZED_POLYLINES(X)                            \
  X(Draw_2DI_Colorized_Polyline, korvel::Colorized_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Colorized_Polyline, korvel::Colorized_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_GOURAUD_POLYLINES(X)                          \
  X(Draw_2DI_Gouraud_Polyline, korvel::Gouraud_Routine<KT_DCI_Point>) \
  X(Draw_DCI_Gouraud_Polyline, korvel::Gouraud_Routine<KT_DCI_Point>)
#define KORVEL_STANDARD_SMALL_PRIMITIVES(X)                   \
  X(Draw_2DI_Polymarker, korvel::Strip_Routine<KT_DCI_Point>) \
  X(Draw_2D_Polygon, korvel::Polygon_Routine<KT_Point>)       \
  X(Draw_DC_Polygon, korvel::Polygon_Routine<KT_Point>)       \
  X(Draw_2DI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)  \
  X(Draw_DCI_Polygon, korvel::Polygon_Routine<KT_DCI_Point>)  \
  X(Draw_DCI_Dot, korvel::Dot_Routine)                        \
  X(Draw_DCI_RGB32_Image, korvel::Rgb32_Image_Routine)        \
  X(Draw_DCI_Index8_Image, korvel::Index8_Image_Routine)

#define KORVEL_STANDARD_ACTIONS(X)           \
  KORVEL_STANDARD_POLYTRIANGLES(X)           \
  KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(X) \
  KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(X)   \
  KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(X)  \
  KORVEL_STANDARD_POLYLINES(X)               \
  KORVEL_STANDARD_COLORIZED_POLYLINES(X)     \
  KORVEL_STANDARD_GOURAUD_POLYLINES(X)       \
  KORVEL_STANDARD_SMALL_PRIMITIVES(X)

// The whole table, in order.
#define KORVEL_ACTIONS(X)                                                   \
  KORVEL_STANDARD_POLYTRIANGLES(X)                                          \
  X(Draw_2DD_Polytriangle, korvel::Strip_Routine<KT_Point_D>)               \
  KORVEL_STANDARD_COLORIZED_POLYTRIANGLES(X)                                \
  X(Draw_2DD_Colorized_Polytriangle, korvel::Colorized_Routine<KT_Point_D>) \
  KORVEL_STANDARD_GOURAUD_POLYTRIANGLES(X)                                  \
  X(Draw_2DD_Gouraud_Polytriangle, korvel::Gouraud_Routine<KT_Point_D>)     \
  KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(X)                                 \
  X(Draw_2DD_Textured_Polytriangle, korvel::Textured_Routine<KT_Point_D>)   \
  KORVEL_STANDARD_POLYLINES(X)                                              \
  X(Draw_2DD_Polyline, korvel::Strip_Routine<KT_Point_D>)                   \
  KORVEL_STANDARD_COLORIZED_POLYLINES(X)                                    \
  X(Draw_2DD_Colorized_Polyline, korvel::Colorized_Routine<KT_Point_D>)     \
  KORVEL_STANDARD_GOURAUD_POLYLINES(X)                                      \
  X(Draw_2DD_Gouraud_Polyline, korvel::Gouraud_Routine<KT_Point_D>)         \
  KORVEL_STANDARD_SMALL_PRIMITIVES(X)                                       \
  X(Put_Depth, korvel::Put_Depth_Routine)                                   \
  X(Get_Image, korvel::Read_Back_Routine)                                   \
  X(Get_Depth, korvel::Read_Back_Routine)                                   \
  X(Clear_Color, korvel::Clear_Routine)                                     \
  X(Clear_Depth, korvel::Clear_Routine)                                     \
  X(Create_Frame_Buffer, korvel::Create_Frame_Buffer_Routine)               \
  X(Present_Image, korvel::Present_Image_Routine)

enum class KT_Action : std::int32_t {
#define KORVEL_ENUMERATOR(name, signature) name,
  KORVEL_ACTIONS(KORVEL_ENUMERATOR)
#undef KORVEL_ENUMERATOR
};

inline constexpr int korvel_action_count = 0
#define KORVEL_COUNT(name, signature) +1
    KORVEL_ACTIONS(KORVEL_COUNT)
#undef KORVEL_COUNT
    ;

namespace korvel {

template <KT_Action action>
struct Action_Traits;
#define KORVEL_TRAIT(action_name, signature)          \
  template <>                                         \
  struct Action_Traits<KT_Action::action_name> {      \
    using Routine = signature;                        \
    static constexpr const char* name = #action_name; \
  };
KORVEL_ACTIONS(KORVEL_TRAIT)
#undef KORVEL_TRAIT

/// The function type of an action.
template <KT_Action action>
using Routine_Of = typename Action_Traits<action>::Routine;

/// What an action's routine expects as its first argument.
template <class Routine>
struct First_Argument;
template <class First, class... Rest>
struct First_Argument<void(First, Rest...)> {
  using Type = First;
};

}  // namespace korvel

/// The unit of dispatch.
struct KT_Action_Record {
  void* object = nullptr;  ///< first argument of the call
  void (*function)() = nullptr;
  std::uintptr_t extra = 0;
  std::uint32_t valid = 0;  ///< 1 when the record may be called
};

class KT_Action_Table {
 public:
  KT_Action_Record records[korvel_action_count];

  KT_Action_Record& operator[](KT_Action action) { return records[static_cast<int>(action)]; }
  const KT_Action_Record& operator[](KT_Action action) const {
    return records[static_cast<int>(action)];
  }

  /// Binds `routine` to `action`. A null routine only makes the record invalid.
  template <KT_Action action>
  void bind(typename korvel::First_Argument<korvel::Routine_Of<action>>::Type object,
            korvel::Routine_Of<action>* routine) {
    KT_Action_Record& record = (*this)[action];
    if (routine == nullptr) {
      record.valid = 0;
      return;
    }
    record.object = object;
    record.function = reinterpret_cast<void (*)()>(routine);
    record.extra = 0;
    record.valid = 1;
  }

  /// Calls the routine of `action` with its object. The record must have been bound.
  template <KT_Action action, class... Arguments>
  void call(Arguments&&... arguments) const {
    using Routine = korvel::Routine_Of<action>;
    using First = typename korvel::First_Argument<Routine>::Type;
    const KT_Action_Record& record = (*this)[action];
    reinterpret_cast<Routine*>(record.function)(static_cast<First>(record.object),
                                                std::forward<Arguments>(arguments)...);
  }
};
