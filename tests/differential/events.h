// What passes between a renderer and its host beside pixels, put in words: the model says what is
// to pass, the recorder writes down what does.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/framework.h"

namespace model {

using Events = std::vector<std::string>;

/// The first `count` of an array that may be null.
template <class Value>
struct List {
  const Value* values;
  int count;
};

template <class Value>
void put(std::string& out, const Value& value);
template <class Value>
void put(std::string& out, const List<Value>& list) {
  put(out, list.count);
  for (int i = 0; list.values && i < list.count; ++i)
    put(out += i == 0 ? ": " : "; ", list.values[i]);
  if (!list.values) out += " absent";
}
template <class Value>
void put(std::string& out, const std::vector<Value>& values) {
  put(out, List<Value>{values.data(), static_cast<int>(values.size())});
}
/// Numbers, texts, addresses, and values with coordinates, channels or sides.
template <class Value>
void put(std::string& out, const Value& value) {
  const auto each = [&](const auto&... parts) {
    const char* between = "";
    ((put(out += between, parts), between = ","), ...);
  };
  if constexpr (std::is_convertible_v<Value, std::string>) {
    out += value;
  } else if constexpr (std::is_pointer_v<Value>) {
    put(out, reinterpret_cast<std::uintptr_t>(value));
  } else if constexpr (requires { value.blue; }) {
    each(value.red, value.green, value.blue, value.alpha);
  } else if constexpr (requires { value.left; }) {
    each(value.left, value.right, value.bottom, value.top);
  } else if constexpr (requires { value.z; }) {
    each(value.x, value.y, value.z);
  } else if constexpr (requires { value.s; }) {
    each(value.s, value.t);
  } else if constexpr (requires { value.x; }) {
    each(value.x, value.y);
  } else if constexpr (std::is_floating_point_v<Value>) {
    char digits[32];  // as many as tell it from its neighbours
    out.append(digits, static_cast<std::size_t>(std::snprintf(digits, 32, "%.17g", value)));
  } else {
    out += std::to_string(+value);
  }
}

/// A name and its values in one line.
template <class... Values>
std::string line(const char* name, const Values&... values) {
  std::string text = name;
  (put(text += ' ', values), ...);
  return text;
}

/// The attributes that a renderer changes in the renditions that it hands on.
std::string look_of(const KT_Rendition&);

const char* name_of(KT_Action);
/// Colours that come with a call.
int color_count(KT_Action, int count, bool single_color);

/// A call of a polytriangle, polyline, polymarker or polygon action.
template <class Point>
std::string call_line(KT_Action action, const KT_Rendition& rendition, int count,
                      const Point* points, const KT_RGB32* colors, bool single_color = false) {
  const bool is_polyline =
      action >= KT_Action::Draw_2DI_Polyline && action < KT_Action::Draw_2DI_Polymarker;
  const int offset = rendition->face_attributes->face_depth_offset;
  return line(name_of(action), List<Point>{points, count}, "colors",
              List<KT_RGB32>{colors, colors ? color_count(action, count, single_color) : 0},
              "single", single_color, is_polyline ? look_of(rendition) : line("offset", offset));
}

}  // namespace model
