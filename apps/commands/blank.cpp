// First what the content itself tells, in device coordinates, then the pixels.
#include "apps/commands/blank.h"

#include <algorithm>

namespace kv {
namespace {

// Whether the box around some points meets the picture.
class Meeting_Box {
 public:
  void include(float x, float y) {
    left_ = std::min(left_, x), right_ = std::max(right_, x);
    bottom_ = std::min(bottom_, y), top_ = std::max(top_, y);
  }
  bool meets(const Size& size, float margin) const {
    return left_ <= static_cast<float>(size.width) + margin && right_ >= -margin &&
           bottom_ <= static_cast<float>(size.height) + margin && top_ >= -margin;
  }

 private:
  float left_ = 1e30f, right_ = -1e30f, bottom_ = 1e30f, top_ = -1e30f;
};

bool meets_picture(const Content& content, const Drawing& drawing, const Size& size) {
  const auto met = [&](auto points, int margin) {
    Meeting_Box box;
    for (const auto& point : points)
      box.include(static_cast<float>(point.x), static_cast<float>(point.y));
    return box.meets(size, static_cast<float>(margin));
  };
  const auto any = [](const auto& items, auto is_met) {
    return std::any_of(items.begin(), items.end(), is_met);
  };
  return any(content.faces.strips(),
             [&](const Device_Strip& strip) { return met(content.faces.points(strip), 1); }) ||
         any(content.lines,
             [&](const Device_Line& line) {
               return met(std::span(line.points), drawing.lines.width);
             }) ||
         any(content.dots, [&](const Device_Dot& dot) {
           return met(std::span(&dot.point, 1), drawing.point_size);
         });
}

bool all_one_color(const Picture& picture) {
  const auto& bytes = picture.pixels;
  return std::equal(bytes.begin() + 3, bytes.end(), bytes.begin());
}

}  // namespace

std::string blank_reason(const Content& content, const Drawing& drawing, const Size& size) {
  if (content.faces.strips().empty() && content.lines.empty() && content.dots.empty()) {
    if (shows_lines(drawing.style) && drawing.lines.edges == Edge_Choice::feature)
      return "it has no edges of this kind in view; --wire all shows all";
    return "all of it lies behind the eye or is fully transparent";
  }
  return meets_picture(content, drawing, size)
             ? ""
             : "all of it lies outside the picture; --zoom, --pan and --distance move it";
}

std::string blank_reason(const Content& content, const Drawing& drawing, const Picture& picture,
                         bool on_color, const std::function<Picture()>& empty) {
  const std::string reason = blank_reason(content, drawing, {picture.width, picture.height});
  if (!reason.empty()) return reason;
  if (on_color && !all_one_color(picture)) return {};
  if (picture.pixels != empty().pixels) return {};
  return "what is drawn has the colour of the background, or covers no pixel";
}

}  // namespace kv
