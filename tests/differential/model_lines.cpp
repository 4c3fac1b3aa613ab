// Reference model of the polyline actions: the road of a call, the pixels that a segment covers,
// and what is done at each of them.
#include "tests/differential/model_lines.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tests/differential/model_small.h"

namespace model {
namespace {

using Points = std::vector<KT_DCI_Point>;
/// Pixels of a segment; z is the distance from its first point along the major axis.
using Steps = std::vector<KT_DCI_Point>;

struct Segment {
  KT_DCI_Point p, q;
  KT_RGB32 p_color, q_color;
  int dx() const { return q.x - p.x; }
  int dy() const { return q.y - p.y; }
  int major() const { return std::max(std::abs(dx()), std::abs(dy())); }
  KT_DCI_Point step_at(int x, int y) const {
    return {x, y, std::abs(dx()) > std::abs(dy()) ? std::abs(x - p.x) : std::abs(y - p.y)};
  }
};

int whole(std::uint32_t position) {
  return static_cast<std::int16_t>(position >> 16);
}

/// The position at which the first row of a segment along x ends: half a step away.
std::uint32_t run_start(const Segment& s, int step) {
  const auto x = static_cast<std::uint32_t>(s.p.x) << 16;
  const auto half = static_cast<std::uint32_t>((s.dx() < 0 ? step + 1 : step) >> 1);
  if (s.dx() < 0) return s.dy() > 0 ? x + half : x - 1 + half;
  return s.dy() > 0 ? (x | 0xFFFF) + half : x + 0x10000 + half;
}

/// The pixels of a segment in order, its far end left out.
Steps steps_of(const Segment& s) {
  Steps steps;
  const int dx = s.dx(), dy = s.dy(), adx = std::abs(dx), ady = std::abs(dy);
  const int sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
  const auto put = [&](int x, int y) { steps.push_back(s.step_at(x, y)); };
  const int step = line_step(dx, ady);
  const auto wrapped = static_cast<std::uint32_t>(step);
  if (dy == 0 || dx == 0 || adx == ady) {
    for (int i = 0; i < s.major(); ++i)
      put(s.p.x + (dx == 0 ? 0 : i * sx), s.p.y + (dy == 0 ? 0 : i * sy));
  } else if (ady > adx) {
    std::uint32_t position = static_cast<std::uint32_t>(s.p.x) << 16 | 0x8000;
    if (dx < 0 && dy < 0) position -= (wrapped * static_cast<std::uint32_t>(ady)) & 0xFFFF;
    for (int i = 0; i < ady; ++i, position += wrapped) put(whole(position), s.p.y + i * sy);
  } else {
    std::uint32_t position = run_start(s, step);
    int x = s.p.x, y = s.p.y;
    for (int row = 0; row < ady; ++row, y += sy, position += wrapped)
      for (; (whole(position) - x) * sx > 0; x += sx) put(x, y);
    for (; (s.q.x - x) * sx > 0; x += sx) put(x, y);
  }
  return steps;
}

/// Where a point lies: 1 left of the rectangle, 2 above, 4 right, 8 below.
int code_of(const KT_Int_Rectangle& r, const KT_DCI_Point& p) {
  return (p.x < r.left) + 2 * (p.y > r.top) + 4 * (p.x > r.right) + 8 * (p.y < r.bottom);
}

/// Row at which a segment meets the right or the left side of the clip.
int row_at_side(const Segment& s, const KT_Int_Rectangle& r, bool right) {
  const int dx = s.dx(), dy = s.dy(), adx = std::abs(dx), ady = std::abs(dy);
  const int sy = dy < 0 ? -1 : 1, step = line_step(dx, ady), side = right ? r.right : r.left;
  const int away = dx > 0 ? side - s.p.x : s.p.x - side;
  const auto sum = [&](int term) {
    return (static_cast<std::uint32_t>(away) << 16) + static_cast<std::uint32_t>(term);
  };
  int rows = away;
  if (adx > ady)
    rows = static_cast<int>(sum((std::abs(step) + sy) >> 1) /
                            static_cast<std::uint32_t>(std::abs(step)));
  else if (adx < ady && dx > 0)
    rows = static_cast<int>(sum(right ? 0x7FFF : -0x8001)) / step + (right ? 0 : 1);
  else if (adx < ady)
    rows = (right ? 1 : 0) - static_cast<int>(sum(right ? -0x8000 : 0x8000)) / step;
  const bool from_below = right == ((dx > 0) == (dy > 0));
  return from_below ? std::min(r.top, s.p.y + sy * rows) : std::max(r.bottom, s.p.y + sy * rows);
}

/// The visible pixels of a segment that starts or ends outside; the codes are those of its ends.
Steps clipped_steps_of(const Segment& s, int c0, int c1, const KT_Int_Rectangle& r) {
  Steps steps;
  const int x0 = s.p.x, y0 = s.p.y, x1 = s.q.x, y1 = s.q.y;
  const int dx = s.dx(), dy = s.dy(), adx = std::abs(dx), ady = std::abs(dy);
  const auto put = [&](int x, int y) { steps.push_back(s.step_at(x, y)); };
  if (dx == 0 || dy == 0) {
    for (const KT_DCI_Point& step : steps_of(s))
      if (code_of(r, step) == 0) steps.push_back(step);
    return steps;
  }
  const auto row_of = [&](int code, int y) {
    if (code == 0) return y;
    if ((code & 1) != 0) return row_at_side(s, r, false);
    if ((code & 4) != 0) return row_at_side(s, r, true);
    return code == 8 ? r.bottom : r.top;
  };
  const int ys = row_of(c0, y0), ye = row_of(c1, y1);
  if (((c1 & 2) != 0 && ys > r.top) || ((c1 & 8) != 0 && ys < r.bottom) ||
      ((c0 & 2) != 0 && ye > r.top) || ((c0 & 8) != 0 && ye < r.bottom))
    return steps;
  const int sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1, k = std::abs(ys - y0);
  const int rows = (ye - ys) * sy;
  const int step = line_step(dx, ady);
  const auto wrapped = static_cast<std::uint32_t>(step);
  if (adx <= ady) {
    std::uint32_t position = static_cast<std::uint32_t>(x0) << 16 | 0x8000;
    position += static_cast<std::uint32_t>(k) * wrapped;
    for (int i = 0; i < rows + (c1 != 0); ++i, position += wrapped)
      put(adx == ady ? x0 + (k + i) * sx : whole(position), ys + i * sy);
    return steps;
  }
  std::uint32_t position = run_start(s, step) + static_cast<std::uint32_t>(k) * wrapped;
  const int entry = whole(position - wrapped);  // where the row before has ended
  int x = c0 == 0 ? x0 : dx > 0 ? std::max(entry, r.left) : std::min(entry, r.right);
  int y = ys;
  for (int row = 0; row < rows; ++row, y += sy, position += wrapped)
    for (; (whole(position) - x) * sx > 0; x += sx) put(x, y);
  const int limit = c1 == 0  ? x1
                    : dx > 0 ? std::min(whole(position), r.right + 1)
                             : std::max(whole(position), r.left - 1);
  for (; (limit - x) * sx > 0; x += sx) put(x, y);
  return steps;
}

int rounded_whole(double v) {
  return static_cast<int>(v >= 0 ? v + 0.5 : v - 0.49999999999);
}

/// Cuts a segment to -4000 to 28760 in x and y; false when nothing is left.
bool clip_to_range(Segment& s, bool with_z, bool with_colors) {
  const Segment whole_one = s;
  const KT_DCI_Point &p = whole_one.p, &q = whole_one.q;
  const KT_RGB32 &p_color = whole_one.p_color, &q_color = whole_one.q_color;
  const double dx = static_cast<double>(q.x) - p.x, dy = static_cast<double>(q.y) - p.y;
  const double dz = static_cast<double>(q.z) - p.z;
  double t0 = 0, t1 = 1;
  int c0 = 0, c1 = 0;
  const auto start = [&](double t, int side) {
    if (t > t0) t0 = t, c0 = side;
  };
  const auto end = [&](double t, int side) {
    if (t1 > t) t1 = t, c1 = side;
  };
  // An end at `v` on one axis, the segment measured from its first point in both cases.
  const auto meet = [](int v, int from, double d, int low, int high, const auto& take) {
    if (v < -4000) take(static_cast<double>(-4000.0F - static_cast<float>(from)) / d, low);
    if (v >= 28761) take(static_cast<double>(28760.0F - static_cast<float>(from)) / d, high);
  };
  meet(p.x, p.x, dx, 1, 4, start);
  meet(p.y, p.y, dy, 8, 2, start);
  if (t0 > 1) return false;
  meet(q.x, p.x, dx, 1, 4, end);
  meet(q.y, p.y, dy, 8, 2, end);
  if (t0 > t1) return false;
  const auto move = [&](KT_DCI_Point& point, KT_RGB32& color, double t, int side) {
    point.x = std::clamp(p.x + rounded_whole(dx * t), -4000, 28760);
    point.y = std::clamp(p.y + rounded_whole(dy * t), -4000, 28760);
    if (side == 1) point.x = -4000;
    if (side == 4) point.x = 28760;
    if (side == 8) point.y = -4000;
    if (side == 2) point.y = 28760;
    point.z = with_z ? rounded_whole(p.z + dz * t) : 0;
    if (!with_colors) return;
    const auto mix = [t](int a, int b) {
      return static_cast<std::uint8_t>(rounded_whole(a + (b - a) * t));
    };
    color = {mix(p_color.blue, q_color.blue), mix(p_color.green, q_color.green),
             mix(p_color.red, q_color.red), color.alpha};
  };
  if (t0 > 0) move(s.p, s.p_color, t0, c0);
  if (t1 < 1) move(s.q, s.q_color, t1, c1);
  return true;
}

/// Which routine is at work.
struct Routine {
  Variant variant{};
  Kind kind{};
  bool masked = false;
  bool reads_settings = false;  ///< of the depth test; else nearer or equal passes and is written
  bool blends = false, merges = false;
};

class Drawer {
 public:
  Drawer(State& state, const KT_Rendition& rendition, std::vector<General_Line>& calls)
      : state_(state), rendition_(rendition), r_(*rendition.get()), calls_(calls) {}

  void draw_2di(Variant v, const Line& line) {
    if (line.points.size() < 2) return;
    const bool flat = line.kind == Kind::flat, gouraud = line.kind == Kind::gouraud;
    const bool direct = flat && !is_mapped(v);
    if (direct && outlined(v, line, false)) return;
    if (thin_only(line, false)) return;
    const bool masks = masked() && v != Variant::mapped_z && (v != Variant::mapped || flat) &&
                       !(has_depth(v) && line.kind == Kind::colorized);
    if (has_depth(v) && !depth_enabled() && !(masks && gouraud))
      return draw_2di(without_depth(v), line);
    if (direct && !has_depth(v) && antialias_bit() && (!masks || v == Variant::rgb_alpha))
      return draw_antialiased_line(state_, rendition_, line.points);
    if (direct && has_depth(v) && masks) return run_logic(v, colored(line), true);
    run_logic(v, line, masks);
  }

  void draw_dci(Variant v, const Line& line) {
    if (line.points.size() < 2) return;
    if (line.kind == Kind::flat && !is_mapped(v)) {
      if (outlined(v, line, true)) return;
      return masked() ? draw_dci_masked(v, colored(line)) : draw_dci(v, colored(line));
    }
    if (has_depth(v) && !depth_enabled()) return draw_dci(without_depth(v), line);
    if (thin_only(line, true)) return;
    draw_inside(v, line, masked() && (v != Variant::mapped || line.kind != Kind::colorized));
  }

 private:
  bool masked() const { return static_cast<bool>(state_.mask); }
  bool depth_enabled() const { return r_.display_context->depth_enabled != 0; }
  bool antialias_bit() const { return (r_.misc_attributes->advanced_options.bits & 2) != 0; }
  KT_RGB32 color(const Line& line, std::size_t segment) const {
    if (line.colors.empty()) return r_.material->color;
    return line.colors[line.single_color ? 0 : segment];
  }
  Line colored(const Line& line) const {
    return {Kind::colorized, line.points, {r_.material->color}, true};
  }

  /// Hands wide and patterned lines over.
  bool thin_only(const Line& line, bool device, bool asks_pattern = true) {
    const KT_Line_Attributes& a = *r_.line_attributes;
    if ((a.line_pattern == 0 || !asks_pattern) && a.line_weight <= 1) return false;
    calls_.push_back({device, line, look_of(rendition_)});
    return true;
  }

  bool outlined(Variant v, const Line& line, bool device) {
    const auto record = r_.material->basic_material;
    const int count = static_cast<int>(line.points.size());
    if (record->classify_points(count, line.points.data()).kind != 7) return false;
    KT_Rendition t = rendition_;
    auto& attributes = t.edit(&KT_Rendition_Data::line_attributes);
    auto& face = t.edit(&KT_Rendition_Data::face_attributes);
    auto& material = t.edit(&KT_Rendition_Data::material);
    auto& misc = t.edit(&KT_Rendition_Data::misc_attributes);
    const int weight = r_.line_attributes->line_weight;
    Drawer pass(state_, t, calls_);
    const auto draw_pass = [&] { device ? pass.draw_dci(v, line) : pass.draw_2di(v, line); };
    material.textured_material = material.basic_material = KT_Basic_Textured_Material();
    attributes.line_corner_style = attributes.line_end_style_a = attributes.line_end_style_b = 2;
    attributes.line_flag_a = attributes.line_flag_b = 1;
    attributes.line_weight = weight < 2 ? record->outline_width * 2 + 2 : weight + 5;
    face.face_pattern = 64;
    material.color = record->outline_color;
    if (material.color.alpha < 255) misc.advanced_options.bits |= 8;
    draw_pass();
    attributes.line_weight = weight;
    material.color = r_.material->color;
    misc.advanced_options.bits &= 0x7F7;
    if (weight > 1) {
      attributes.line_weight = weight + 1;
      if (r_.face_attributes->face_pattern != 24) {
        material.color = record->core_color;
      } else {
        material.contrast_color = blend(material.color, material.contrast_color, false);
        face.face_pattern = 24;
        misc.pattern_options = 1;
        face.face_depth_offset = r_.face_attributes->face_depth_offset - 4;
      }
    }
    draw_pass();
    return true;
  }
  /// Runs of points inside, and segments that leave the clip.
  void run_logic(Variant v, const Line& line, bool masks) {
    const auto draw_run = [&](const Line& run) {
      masks ? draw_dci_masked(v, run) : draw_dci(v, run);
    };
    const KT_Int_Rectangle& hard = r_.display_context->hard_clip;
    const Points& points = line.points;
    const bool gouraud = line.kind == Kind::gouraud, colorized = line.kind == Kind::colorized;
    std::vector<short> codes(points.size() + 2);
    const int count = static_cast<int>(points.size());
    const int inside = KD_Clip(hard, count, points.data(), codes.data());
    if (inside == 0) return;
    if (inside == count) return draw_run(line);
    codes[points.size()] = 4096;
    if (codes[points.size() - 1] == 0 && codes[points.size() - 2] != 0) {
      const KT_RGB32 c = gouraud ? line.colors.back() : color(line, points.size() - 2);
      draw_dot(state_, v, rendition_, points.back(), line.kind == Kind::flat ? nullptr : &c);
    }
    const auto part = [&](std::size_t first, std::size_t last) {
      Line run = line;
      const auto from = [&](auto& list) { return list.begin() + static_cast<long>(first); };
      run.points = {from(points), from(points) + static_cast<long>(last - first) + 1};
      if (gouraud || (colorized && !line.single_color))
        run.colors = {from(line.colors), line.colors.end()};
      return run;
    };
    for (std::size_t i = 0;;) {
      while ((codes[i] & codes[i + 1]) != 0) ++i;
      if (codes[i + 1] == 4096) return;
      if (codes[i] != 0 || codes[i + 1] != 0) {
        const KT_RGB32 c = color(line, i);
        Segment s{points[i], points[i + 1], c, gouraud ? line.colors[i + 1] : c};
        if (clip_to_range(s, has_depth(v) || gouraud, gouraud)) {
          const int c0 = code_of(hard, s.p), c1 = code_of(hard, s.q);
          const bool always_clips = masks && line.kind == Kind::flat;
          if ((c0 | c1) == 0 && !always_clips) {
            Line pair = part(i, i + 1);
            pair.points = {s.p, s.q};
            if (gouraud) pair.colors = {s.p_color, s.q_color};
            draw_run(pair);
          } else if ((c0 & c1) == 0) {
            draw_steps(clipped_routine(v, line.kind, masks), s, clipped_steps_of(s, c0, c1, hard));
          }
        }
        ++i;
      }
      if (codes[i] == 0 && codes[i + 1] == 0) {
        const std::size_t start = i++;
        while (codes[i + 1] == 0) ++i;
        draw_run(part(start, i));
      }
    }
  }

  Routine clipped_routine(Variant v, Kind kind, bool masks) const {
    const bool flat = kind == Kind::flat;
    const bool reads = flat || (kind == Kind::colorized && v != Variant::mapped_z);
    const bool merges = flat && !has_depth(v) && merge_on(state_, rendition_);
    return {v, kind, masks, reads && !masks, has_alpha(v), merges};
  }

  void draw_dci_masked(Variant v, const Line& line) {
    // The plain routines of direct colour are the colorized ones.
    if (line.kind == Kind::flat && !is_mapped(v)) return draw_dci_masked(v, colored(line));
    if (!thin_only(line, true, !has_depth(v))) draw_inside(v, line, true);
  }

  /// A thin line inside the clip.
  void draw_inside(Variant v, const Line& line, bool masks) {
    const bool colorized = line.kind == Kind::colorized, plain = line.kind == Kind::flat;
    const bool direct = colorized && (v == Variant::rgb || v == Variant::rgb_alpha);
    const bool merges = (direct || (plain && v == Variant::mapped)) && merge_on(state_, rendition_);
    if (direct && !merges && antialias_bit()) {
      std::vector<KT_RGB32> colors;
      for (std::size_t j = 0; j + 1 < line.points.size(); ++j) colors.push_back(color(line, j));
      return draw_antialiased_run(state_, rendition_, line.points, colors, true);
    }
    const bool reads = !masks && v != Variant::mapped_z && line.kind != Kind::gouraud;
    const bool blends = masks ? v == Variant::rgb_alpha && colorized : has_alpha(v);
    walk({v, line.kind, masks, reads, blends, merges}, line);
  }

  /// All pixels of a list inside the clip.
  void walk(const Routine& routine, const Line& line) {
    const Points& points = line.points;
    const bool gouraud = line.kind == Kind::gouraud;
    const Variant v = routine.variant;
    const bool short_cut = gouraud && (!has_depth(v) || is_mapped(v));
    const auto near = [](int a, int b) { return std::abs(a - b) <= 3; };
    Segment s;
    for (std::size_t j = 0; j + 1 < points.size(); ++j) {
      const KT_RGB32 a = color(line, j), b = gouraud ? line.colors[j + 1] : a;
      s = {points[j], points[j + 1], a, b};
      if (short_cut && near(a.blue, b.blue) && near(a.green, b.green) && near(a.red, b.red)) {
        const bool shared = routine.masked && v == Variant::rgb_alpha;
        draw_dci(shared ? Variant::rgb : v, {Kind::colorized, {s.p, s.q}, {a}, true});
      } else {
        draw_steps(routine, s, steps_of(s));
      }
    }
    draw_final(routine, s);
  }

  void draw_final(Routine routine, const Segment& s) {
    const int x = s.q.x - state_.origin.x, y = s.q.y - state_.origin.y;
    const bool mapped_z = routine.variant == Variant::mapped_z;
    if (routine.masked && hidden(state_, x, y)) return;
    if (has_depth(routine.variant)) {
      // With indices the depth runs on, one step past the end.
      const int past = s.major() == 0 ? 0 : s.major() + 1;
      const int run_on = depth_at(s, past);
      auto& stored = state_.depth.at<std::uint16_t>(x, y);
      if ((mapped_z && routine.kind == Kind::colorized ? run_on : s.q.z) > stored) return;
      stored = static_cast<std::uint16_t>(mapped_z && routine.kind != Kind::flat ? run_on : s.q.z);
      if (routine.kind == Kind::colorized) routine.blends = false;
    }
    store(routine, {s.q, s.q, s.q_color, s.q_color}, 0, x, y);
  }

  void draw_steps(const Routine& routine, const Segment& s, const Steps& steps) {
    for (const KT_DCI_Point& step : steps) {
      const int x = step.x - state_.origin.x, y = step.y - state_.origin.y;
      if (routine.masked && hidden(state_, x, y)) continue;
      if (has_depth(routine.variant)) {
        const std::uint16_t z = depth_at(s, step.z);
        auto& stored = state_.depth.at<std::uint16_t>(x, y);
        if (!depth_passes(routine.reads_settings ? state_.zbuffer_test : 2, z, stored)) continue;
        if (!routine.reads_settings || state_.zbuffer_write) stored = z;
      }
      store(routine, s, step.z, x, y);
    }
  }

  static std::uint16_t depth_at(const Segment& s, int distance) {
    const auto step = static_cast<std::uint32_t>(depth_step(s.q.z - s.p.z, s.major()));
    const std::uint32_t start = static_cast<std::uint32_t>(s.p.z) << 15 | 0x4000;
    return static_cast<std::uint16_t>((start + static_cast<std::uint32_t>(distance) * step) >> 15);
  }

  /// The colour of a pixel of the segment goes to buffer (x, y).
  void store(const Routine& routine, const Segment& s, int distance, int x, int y) {
    const KT_RGB32 a = s.p_color, b = s.q_color;
    const bool gouraud = routine.kind == Kind::gouraud;
    const auto value = [&](int from, int to) {
      const auto step = static_cast<std::uint32_t>(line_step(to - from, s.major()));
      return static_cast<int>((static_cast<std::uint32_t>(from) << 16 | 0x8000) +
                              static_cast<std::uint32_t>(distance) * step);
    };
    if (is_mapped(routine.variant)) {
      const KT_Color_Cube& cube = state_.cube;
      const auto scaled = [&](int from, int to, int scale) {
        return gouraud ? value(from * scale, to * scale) >> 8 : from * scale << 8;
      };
      const int rgb[3] = {scaled(a.red, b.red, cube.red_scale),
                          scaled(a.green, b.green, cube.green_scale),
                          scaled(a.blue, b.blue, cube.blue_scale)};
      auto index = static_cast<std::uint8_t>(r_.material->color_index);
      if (routine.kind == Kind::colorized)
        index = ordered_index(cube, rgb, threshold(state_, x, y));
      if (gouraud) index = dithered_index(cube, rgb, threshold(state_, x, y));
      auto& pixel = state_.color.at<std::uint8_t>(x, y);
      pixel = routine.merges ? merge_mapped(state_, pixel, index) : index;
      return;
    }
    const auto byte = [&](int from, int to) {
      return static_cast<std::uint8_t>(value(from, to) >> 16);
    };
    KT_RGB32 color = a;
    if (gouraud)
      color = {byte(a.blue, b.blue), byte(a.green, b.green), byte(a.red, b.red),
               routine.blends ? byte(a.alpha, b.alpha) : std::uint8_t{255}};
    auto& pixel = state_.color.at<KT_RGB32>(x, y);
    if (routine.merges)
      pixel = KT_RGB32::from_word(merge_rgb(state_, pixel.word(), color.word()));
    else
      pixel = routine.blends ? blend_256(pixel, color) : color;
  }

  State& state_;
  const KT_Rendition& rendition_;
  const KT_Rendition_Data& r_;
  std::vector<General_Line>& calls_;
};

}  // namespace

std::string look_of(const KT_Rendition& rendition) {
  const KT_Line_Attributes& line = *rendition->line_attributes;
  const KT_Face_Attributes& face = *rendition->face_attributes;
  const KT_Misc_Attributes& misc = *rendition->misc_attributes;
  std::ostringstream out;
  out << "pattern " << line.line_pattern << ", weight " << line.line_weight << ", styles "
      << line.line_end_style_a << line.line_end_style_b << line.line_corner_style << ", flags "
      << +line.line_flag_a << +line.line_flag_b << ", face " << face.face_pattern << ", offset "
      << face.face_depth_offset << ", options " << misc.pattern_options << " " << std::hex
      << misc.advanced_options.bits << ", color " << rendition->material->color.word()
      << ", contrast " << rendition->material->contrast_color.word();
  return out.str();
}

std::vector<General_Line> draw_line(State& state, const KT_Rendition& rendition, bool device,
                                    const Line& line) {
  std::vector<General_Line> calls;
  Drawer drawer(state, rendition, calls);
  device ? drawer.draw_dci(state.variant, line) : drawer.draw_2di(state.variant, line);
  return calls;
}

std::vector<General_Line> draw_strip_edges(State& state, const KT_Rendition& rendition,
                                           const Points& points) {
  std::vector<General_Line> calls;
  KT_Rendition edges = rendition;
  edges.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits &= 0x7DF;
  Drawer drawer(state, edges, calls);
  Points even, odd;
  for (std::size_t i = 0; i < points.size(); ++i) (i % 2 == 0 ? even : odd).push_back(points[i]);
  drawer.draw_2di(Variant::rgb_z, {Kind::flat, points, {}, false});
  drawer.draw_2di(Variant::rgb_z, {Kind::flat, even, {}, false});
  if (points.size() > 3) drawer.draw_2di(Variant::rgb_z, {Kind::flat, odd, {}, false});
  return calls;
}

}  // namespace model
