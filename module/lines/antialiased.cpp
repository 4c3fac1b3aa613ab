// Antialiased lines: traces along the major axis, with a 32.32 position on the minor one.
#include "module/lines/antialiased.h"

#include <algorithm>
#include <cstdlib>

#include "module/core/outcode.h"
#include "module/lines/coverage.h"
#include "module/lines/entry.h"
#include "module/pixels/mask.h"

namespace zbuffer::lines {
namespace {

/// Products and positions wrap; only ends far outside make them.
using Wide = std::uint64_t;

constexpr std::int64_t as_signed(Wide value) {
  return static_cast<std::int64_t>(value);
}
constexpr Wide wide(std::int64_t value) {
  return static_cast<Wide>(value);
}

/// a * b / c, truncated.
constexpr std::int64_t scaled(std::int64_t a, std::int64_t b, std::int64_t c) {
  return as_signed(wide(a) * wide(b)) / c;
}

enum class Axis : std::uint8_t { x, y };

/// Steps along the major axis.
struct Trace {
  Axis major_axis;
  std::int32_t major;
  std::int32_t sign;
  std::int64_t count;
  Wide position;  // on the minor axis, 32.32
  Wide step;

  void skip(std::int64_t steps) {
    major = static_cast<std::int32_t>(major + sign * steps);
    position += wide(steps) * step;
    count -= steps;
  }
};

Trace trace_along(Axis axis, std::int32_t major0, std::int32_t major1, std::int32_t minor0,
                  std::int32_t minor1) {
  const std::int64_t length = std::int64_t{major1} - major0;
  const std::int64_t count = std::abs(length);
  const Wide difference = wide(std::int64_t{minor1} - minor0) << 32;
  return {axis,
          major0,
          length < 0 ? -1 : 1,
          count,
          wide(minor0) << 32,
          count == 0 ? 0 : wide(as_signed(difference) / count)};
}

/// The trace from a point up to, not including, another. Diagonals and single points count as
/// lines along x.
Trace trace_between(const KT_DCI_Point& from, const KT_DCI_Point& to) {
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  if (std::abs(dy) > std::abs(dx)) return trace_along(Axis::y, from.y, to.y, from.x, to.x);
  return trace_along(Axis::x, from.x, to.x, from.y, to.y);
}

/// Columns or rows, both ends included.
struct Range {
  std::int64_t first;
  std::int64_t last;

  bool has(std::int64_t place) const { return place >= first && place <= last; }
};

/// The image, and the hard clip, which side pixels look at.
class Target {
 public:
  explicit Target(const Strip_Call& line)
      : image_(*line.renderer.color_image),
        pixels_(image_.row<std::uint32_t>(0)),
        clip_(line.display_context().hard_clip) {}

  /// The columns or rows of the image, and of the hard clip.
  Range image(Axis axis) const { return {0, (axis == Axis::x ? image_.width : image_.height) - 1}; }
  Range clip(Axis axis) const {
    return axis == Axis::x ? Range{clip_.left, clip_.right} : Range{clip_.bottom, clip_.top};
  }

  /// Elements from a column or row to the next.
  std::ptrdiff_t stride(Axis axis) const {
    return axis == Axis::x ? 1 : -std::ptrdiff_t{image_.row_bytes} / 4;
  }
  /// A pixel by its distance from the one at the bottom left.
  std::uint32_t& at(std::ptrdiff_t offset) const { return pixels_[offset]; }

 private:
  const KT_Shared_Image_Data& image_;
  std::uint32_t* pixels_;
  KT_Int_Rectangle clip_;
};

/// For which middle pixels, by their place on the minor axis, the three pixels of a step are drawn.
struct Step_Ranges {
  Range before, middle, after;

  Step_Ranges(Range clip, Range image)
      : before{std::max(clip.first + 1, image.first + 1), image.last + 1},
        middle(image),
        after{image.first - 1, std::min(clip.last - 1, image.last - 1)} {}
};

struct No_Mask {
  static bool hidden(Axis, std::int32_t, std::int32_t) { return false; }
};

struct Mask {
  const Frame_Buffer_Mask& mask;

  bool hidden(Axis major_axis, std::int32_t major, std::int32_t minor) const {
    const bool along_x = major_axis == Axis::x;
    return offset(row_cursor(mask, along_x ? minor : major), along_x ? major : minor).hidden();
  }
};

/// Leaves out the steps before and after the image.
void trim(Trace& trace, const Target& target) {
  const Range image = target.image(trace.major_axis);
  const bool forwards = trace.sign > 0;
  const std::int64_t before = forwards ? image.first - trace.major : trace.major - image.last;
  if (before >= trace.count) {
    trace.count = 0;
    return;
  }
  if (before > 0) trace.skip(before);
  const std::int64_t left = forwards ? image.last - trace.major + 1 : trace.major - image.first + 1;
  trace.count = std::min(trace.count, left);
}

/// The weights of a line at `position` whose nearest pixel is `nearest`.
Weights weights_at(Wide position, std::int32_t nearest) {
  constexpr std::int64_t whole = std::int64_t{1} << 32;
  const std::int64_t distance = as_signed((wide(nearest) << 32) - position);
  const auto weight = [](std::int64_t d) {
    return std::uint32_t{coverage_table[static_cast<std::size_t>(std::abs(d) >> 24)]};
  };
  return {weight(distance - whole), weight(distance), weight(distance + whole)};
}

template <class Coverage, class Masks, class Weighting>
void step_along(const Target& target, const Masks& mask, const Trace& trace,
                const Coverage& coverage, Weighting weighting) {
  const Axis minor_axis = trace.major_axis == Axis::x ? Axis::y : Axis::x;
  const std::ptrdiff_t major_stride = target.stride(trace.major_axis);
  const std::ptrdiff_t minor_stride = target.stride(minor_axis);
  const Step_Ranges ranges(target.clip(minor_axis), target.image(minor_axis));
  std::int32_t major = trace.major;
  Wide position = trace.position;
  const Wide step = trace.step;
  for (std::int64_t n = trace.count; n > 0; --n) {
    const auto nearest = static_cast<std::int32_t>(as_signed(position + 0x80000000u) >> 32);
    const std::ptrdiff_t at = major * major_stride + nearest * minor_stride;
    const auto put = [&](const Range& range, std::int32_t beside, std::uint32_t weight) {
      if (!range.has(nearest) || mask.hidden(trace.major_axis, major, nearest + beside)) return;
      std::uint32_t& pixel = target.at(at + beside * minor_stride);
      pixel = coverage(pixel, weight);
    };
    const Weights weights = weighting(position, nearest);
    put(ranges.before, -1, weights.before);
    put(ranges.middle, 0, weights.nearest);
    put(ranges.after, 1, weights.after);
    position += step;
    major += trace.sign;
  }
}

template <class Masks>
void draw_trace(const Target& target, const Masks& mask, Trace trace, KT_RGB32 color) {
  trim(trace, target);
  // Horizontal, vertical and diagonal lines have no fraction: their weights are known.
  const bool exact = (trace.step & 0xFFFFFFFFu) == 0;
  const auto step_with = [&](const auto& coverage) {
    if (exact) {
      step_along(target, mask, trace, coverage, [](Wide, std::int32_t) { return exact_weights; });
    } else {
      step_along(target, mask, trace, coverage, weights_at);
    }
  };
  if (color.alpha == 255) {
    step_with(Opaque_Coverage{color.word()});
  } else {
    step_with(Alpha_Coverage(color.word()));
  }
}

enum class Last_Point : std::uint8_t { left_out, drawn };

/// Draws a list of points that lie inside.
template <class Masks>
void draw_run(const Target& target, const Masks& mask, const Strip_Call& run, Last_Point last) {
  for (int i = 0; i + 1 < run.count; ++i) {
    Trace trace = trace_between(run.points[i], run.points[i + 1]);
    if (last == Last_Point::drawn && i + 2 == run.count) ++trace.count;
    draw_trace(target, mask, trace, segment_color(run, i));
  }
}

/// A segment cut by the hard clip in whole numbers.
class Cut_Segment {
 public:
  Cut_Segment(const KT_Int_Rectangle& clip, const KT_DCI_Point* points)
      : clip_(clip),
        start_(points[0]),
        ends_{points[0], points[1]},
        dx_(std::int64_t{points[1].x} - points[0].x),
        dy_(std::int64_t{points[1].y} - points[0].y) {}

  /// The trace of what is inside; without steps when nothing is.
  Trace trace(unsigned code0, unsigned code1) {
    const unsigned codes[2] = {code0, code1};
    if (dx_ == 0 || dy_ == 0) return straight_trace(codes);
    Trace trace = trace_between(ends_[0], ends_[1]);
    for (int i = 0; i < 2; ++i) {
      move_to_side(ends_[i], codes[i]);
      if (!move_to_row(ends_[i])) {
        trace.count = 0;
        return trace;
      }
    }
    const auto along = [&](const KT_DCI_Point& p) {
      return std::int64_t{trace.major_axis == Axis::x ? p.x : p.y};
    };
    const std::int64_t length = std::abs(along(ends_[1]) - along(ends_[0]));
    trace.skip(std::abs(along(ends_[0]) - trace.major));
    trace.count = length;
    visible_ = true;
    return trace;
  }
  bool visible() const { return visible_; }

 private:
  Trace straight_trace(const unsigned (&codes)[2]) {
    const auto limit = [](std::int32_t& value, unsigned code, unsigned low_bit, std::int32_t low,
                          unsigned high_bit, std::int32_t high) {
      if (code & low_bit) value = low;
      if (code & high_bit) value = high;
    };
    visible_ = true;
    for (int i = 0; i < 2; ++i) {
      if (dx_ == 0) {
        limit(ends_[i].y, codes[i], beyond_bottom, clip_.bottom, beyond_top, clip_.top);
      } else {
        limit(ends_[i].x, codes[i], beyond_left, clip_.left, beyond_right, clip_.right);
      }
    }
    if (dx_ == 0) return trace_along(Axis::y, ends_[0].y, ends_[1].y, start_.x, start_.x);
    return trace_along(Axis::x, ends_[0].x, ends_[1].x, start_.y, start_.y);
  }

  void move_to_side(KT_DCI_Point& end, unsigned code) const {
    if (!(code & (beyond_left | beyond_right))) return;
    const std::int32_t x = (code & beyond_left) ? clip_.left : clip_.right;
    end.y = static_cast<std::int32_t>(end.y + scaled(std::int64_t{x} - end.x, dy_, dx_));
    end.x = x;
  }

  // The x is worked out anew from the segment's first point. False when it lies outside.
  bool move_to_row(KT_DCI_Point& end) const {
    const std::int32_t y = std::clamp(end.y, clip_.bottom, clip_.top);
    if (y == end.y) return true;
    const std::int64_t x = start_.x + scaled(std::int64_t{y} - start_.y, dx_, dy_);
    end = {static_cast<std::int32_t>(x), y, end.z};
    return x >= clip_.left && x <= clip_.right;
  }

  const KT_Int_Rectangle& clip_;
  const KT_DCI_Point start_;
  KT_DCI_Point ends_[2];
  std::int64_t dx_, dy_;
  bool visible_ = false;
};

/// The bounds count as inside, but for the right and the top one at the first point of a list.
unsigned first_outcode(const KT_Int_Rectangle& clip, const KT_DCI_Point& p) {
  return (p.x < clip.left ? beyond_left : 0) | (p.x >= clip.right ? beyond_right : 0) |
         (p.y >= clip.top ? beyond_top : 0) | (p.y < clip.bottom ? beyond_bottom : 0);
}

template <class Masks>
void draw_polyline(const Strip_Call& line, const Masks& mask) {
  const Target target(line);
  const KT_RGB32 color = line.material().color;
  const KT_Int_Rectangle& clip = line.display_context().hard_clip;
  const auto part = [&](int from, int count) {
    return line.with_points(count, line.points + from).in_one_color(&color);
  };
  unsigned code = first_outcode(clip, line.points[0]);
  if (line.count == 1) {
    Trace point = trace_between(line.points[0], line.points[0]);
    point.count = 1;
    if (code == 0) draw_trace(target, mask, point, color);
    return;
  }
  int start = 0;  // of the run gathered so far, which ends at the point before
  for (int i = 1; i < line.count; ++i) {
    const KT_DCI_Point* segment = line.points + i - 1;
    const unsigned next = outcode(clip, segment[1].x, segment[1].y);
    if ((code | next) != 0) {
      if ((code & next) == 0) {
        if (i - start > 1) draw_run(target, mask, part(start, i - start), Last_Point::left_out);
        Cut_Segment cut(clip, segment);
        Trace trace = cut.trace(code, next);
        if (next != 0 || i + 1 == line.count) ++trace.count;
        if (cut.visible()) draw_trace(target, mask, trace, color);
      }
      start = i;
    }
    code = next;
  }
  if (line.count - start > 1) {
    draw_run(target, mask, part(start, line.count - start), Last_Point::drawn);
  }
}

/// Calls `draw(mask)` with the mask in force or none.
template <class Draw>
void with_mask(const Strip_Call& line, Masking masking, Draw draw) {
  if (masking == Masking::masked) {
    draw(Mask{*line.renderer.mask_cache->head});
  } else {
    draw(No_Mask{});
  }
}

}  // namespace

void draw_antialiased_polyline(const Strip_Call& line) {
  if (line.count < 1) return;
  const bool masked = mask_in_force(line.renderer, line.rendition);
  with_mask(line, masked ? Masking::masked : Masking::open,
            [&](const auto& mask) { draw_polyline(line, mask); });
}

void draw_antialiased_list(const Strip_Call& line, Masking masking) {
  const Target target(line);
  with_mask(line, masking,
            [&](const auto& mask) { draw_run(target, mask, line, Last_Point::drawn); });
}

}  // namespace zbuffer::lines
