// Reference model of the polyline actions: the steps of a call, the pixels that a segment covers,
// and what is done at each of them.
#include "tests/differential/model_lines.h"

#include <algorithm>
#include <cstdlib>

#include "tests/differential/model_clipper.h"

namespace model {
namespace {

struct Segment {
  KT_DCI_Point p, q;
  KT_RGB32 p_color, q_color;
  int dx() const { return q.x - p.x; }
  int dy() const { return q.y - p.y; }
  int major() const { return std::max(std::abs(dx()), std::abs(dy())); }
};

/// Pixels of a segment in device coordinates, with their distance from its first point.
struct Step {
  int x, y, distance;
};

int whole(std::uint32_t position) {
  return static_cast<std::int16_t>(position >> 16);
}

/// Where a point lies: 1 left of the rectangle, 2 above, 4 right, 8 below.
int code_of(const KT_Int_Rectangle& r, int x, int y) {
  return (x < r.left) + 2 * (y > r.top) + 4 * (x > r.right) + 8 * (y < r.bottom);
}

/// The position at which the first row of a segment along x ends: half a step away.
std::uint32_t run_start(const Segment& s, int step) {
  const std::uint32_t x = bits(s.p.x) << 16;
  const std::uint32_t half = bits((s.dx() < 0 ? step + 1 : step) >> 1);
  if (s.dx() < 0) return (s.dy() > 0 ? x : x - 1) + half;
  return (s.dy() > 0 ? x | 0xFFFF : x + 0x10000) + half;
}

/// Row at which a segment meets the right or the left side of the clip.
int row_at_side(const Segment& s, const KT_Int_Rectangle& r, bool right) {
  const int dx = s.dx(), dy = s.dy(), adx = std::abs(dx), ady = std::abs(dy);
  const int sy = dy < 0 ? -1 : 1, step = line_step(dx, ady), side = right ? r.right : r.left;
  const int away = dx > 0 ? side - s.p.x : s.p.x - side;
  const auto moved = [&](int term) { return (bits(away) << 16) + bits(term); };
  int rows = away;
  if (adx > ady)
    rows = static_cast<int>(moved((std::abs(step) + sy) >> 1) / bits(std::abs(step)));
  else if (adx < ady && dx > 0)
    rows = static_cast<int>(moved(right ? 0x7FFF : -0x8001)) / step + (right ? 0 : 1);
  else if (adx < ady)
    rows = (right ? 1 : 0) - static_cast<int>(moved(right ? -0x8000 : 0x8000)) / step;
  const bool from_below = right == ((dx > 0) == (dy > 0));
  return from_below ? std::min(r.top, s.p.y + sy * rows) : std::max(r.bottom, s.p.y + sy * rows);
}

/// The pixels of a segment in order, its far end left out. With a clip and codes
/// of its ends: those inside the clip.
std::vector<Step> steps_of(const Segment& s, const KT_Int_Rectangle* clip = nullptr, int c0 = 0,
                           int c1 = 0) {
  std::vector<Step> steps;
  const int dx = s.dx(), dy = s.dy(), adx = std::abs(dx), ady = std::abs(dy);
  const int sx = (dx > 0) - (dx < 0), sy = (dy > 0) - (dy < 0);
  const bool clipped = clip != nullptr;  // also where both ends lie inside
  const KT_Int_Rectangle r = clipped ? *clip : KT_Int_Rectangle{};
  const auto put = [&](int x, int y) {
    steps.push_back({x, y, adx > ady ? std::abs(x - s.p.x) : std::abs(y - s.p.y)});
  };
  if (dx == 0 || dy == 0) {
    for (int i = 0; i < s.major(); ++i)
      if (!clipped || code_of(r, s.p.x + i * sx, s.p.y + i * sy) == 0)
        put(s.p.x + i * sx, s.p.y + i * sy);
    return steps;
  }
  const auto row_of = [&](int code, int y) {
    if ((code & 5) != 0) return row_at_side(s, r, (code & 1) == 0);
    return code == 0 ? y : code == 8 ? r.bottom : r.top;
  };
  int y = row_of(c0, s.p.y);
  const int end = row_of(c1, s.q.y), k = std::abs(y - s.p.y), rows = (end - y) * sy;
  if (((c1 & 2) != 0 && y > r.top) || ((c1 & 8) != 0 && y < r.bottom) ||
      ((c0 & 2) != 0 && end > r.top) || ((c0 & 8) != 0 && end < r.bottom))
    return steps;
  const int step = line_step(dx, ady);
  if (adx <= ady) {
    std::uint32_t position = (bits(s.p.x) << 16 | 0x8000) + bits(product(k, step));
    // Down to the left a whole segment takes the way of the segment up to the right.
    if (!clipped && dx < 0 && dy < 0) position -= bits(product(step, ady)) & 0xFFFF;
    for (int i = 0; i < rows + (c1 != 0); ++i, position += bits(step), y += sy)
      put(adx == ady ? s.p.x + (k + i) * sx : whole(position), y);
    return steps;
  }
  std::uint32_t position = run_start(s, step) + bits(product(k, step));
  int x = s.p.x;
  if (c0 != 0) {
    x = whole(position - bits(step));  // where the row before has ended
    x = dx > 0 ? std::max(x, r.left) : std::min(x, r.right);
  }
  const auto run_to = [&](int limit) {
    for (; (limit - x) * sx > 0; x += sx) put(x, y);
  };
  for (int row = 0; row < rows; ++row, y += sy, position += bits(step)) run_to(whole(position));
  run_to(c1 == 0  ? s.q.x
         : dx > 0 ? std::min(whole(position), r.right + 1)
                  : std::max(whole(position), r.left - 1));
  return steps;
}

/// Cuts a segment to -4000 to 28760 in x and y; false when nothing is left.
bool clip_to_range(Segment& s, bool with_z, bool with_colors) {
  const Segment a = s;
  const double dx = double(a.q.x) - a.p.x, dy = double(a.q.y) - a.p.y;
  double t[2] = {0, 1};
  int sides[2] = {0, 0};  // as outcodes
  // End `k` lies at `v` on an axis; the segment is measured from its first point in both cases.
  const auto meet = [&](int k, int v, int start, double d, int low, int high) {
    const int side = v < -4000 ? low : v > 28760 ? high : 0;
    if (side == 0) return;
    const double at = to_float((side == low ? -4000 : 28760) - double{to_float(start)}) / d;
    if (k == 0 ? at > t[0] : at < t[1]) t[k] = at, sides[k] = side;
  };
  meet(0, a.p.x, a.p.x, dx, 1, 4);
  meet(0, a.p.y, a.p.y, dy, 8, 2);
  if (t[0] > 1) return false;
  meet(1, a.q.x, a.p.x, dx, 1, 4);
  meet(1, a.q.y, a.p.y, dy, 8, 2);
  if (t[0] > t[1]) return false;
  const auto move = [&](KT_DCI_Point& point, KT_RGB32& color, double part, int side) {
    const auto along = [&](int from, double d) {
      return std::clamp(from + rounded(d * part), -4000, 28760);
    };
    point.x = side == 1 ? -4000 : side == 4 ? 28760 : along(a.p.x, dx);
    point.y = side == 8 ? -4000 : side == 2 ? 28760 : along(a.p.y, dy);
    point.z = with_z ? rounded(a.p.z + (double(a.q.z) - a.p.z) * part) : 0;
    const auto mix = [&](std::uint8_t KT_RGB32::*channel) {
      const int from = a.p_color.*channel, to = a.q_color.*channel;
      return static_cast<std::uint8_t>(rounded(from + (to - from) * part));
    };
    if (with_colors)
      color = {mix(&KT_RGB32::blue), mix(&KT_RGB32::green), mix(&KT_RGB32::red), color.alpha};
  };
  if (t[0] > 0) move(s.p, s.p_color, t[0], sides[0]);
  if (t[1] < 1) move(s.q, s.q_color, t[1], sides[1]);
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

struct Drawer {
  State& state;
  const KT_Rendition& rendition;
  Events& events;
  const KT_Rendition_Data& r = *rendition.get();

  void draw(bool device, Variant v, const Line& line) {
    device ? draw_dci(v, line) : draw_2di(v, line);
  }

  void draw_2di(Variant v, const Line& line) {
    if (line.points.size() < 2) return;
    const bool flat = line.kind == Kind::flat, gouraud = line.kind == Kind::gouraud;
    const bool direct = flat && !is_mapped(v);
    if (direct && outlined(v, line, false)) return;
    if (goes_to_general(line, false)) return;
    const bool masks = state.mask && v != mapped_z && (v != mapped || flat) &&
                       !(has_depth(v) && line.kind == Kind::colorized);
    if (has_depth(v) && !r.display_context->depth_enabled && !(masks && gouraud))
      return draw_2di(without_depth(v), line);
    if (direct && !has_depth(v) && antialiased() && (!masks || v == rgb_alpha))
      return draw_antialiased_line(state, r, line.points);
    draw_runs(v, direct && has_depth(v) && masks ? colored(line) : line, masks);
  }

  void draw_dci(Variant v, const Line& line) {
    if (line.points.size() < 2) return;
    if (line.kind == Kind::flat && !is_mapped(v)) {
      if (outlined(v, line, true)) return;
      return state.mask ? draw_dci_masked(v, colored(line)) : draw_dci(v, colored(line));
    }
    if (has_depth(v) && !r.display_context->depth_enabled) return draw_dci(without_depth(v), line);
    if (goes_to_general(line, true)) return;
    draw_inside(v, line, state.mask && (v != mapped || line.kind != Kind::colorized));
  }

  void draw_dci_masked(Variant v, const Line& line) {
    // The plain routines of direct colour are the colorized ones.
    if (line.kind == Kind::flat && !is_mapped(v)) return draw_dci_masked(v, colored(line));
    if (!goes_to_general(line, true, !has_depth(v))) draw_inside(v, line, true);
  }

  bool antialiased() const { return (r.misc_attributes->advanced_options.bits & 2) != 0; }
  KT_RGB32 color(const Line& line, std::size_t segment) const {
    if (line.colors.empty()) return r.material->color;
    return line.colors[line.single_color ? 0 : segment];
  }
  Line colored(const Line& line) const {
    return {Kind::colorized, line.points, {r.material->color}, true};
  }

  /// Hands wide and patterned lines over.
  bool goes_to_general(const Line& line, bool device, bool reads_pattern = true) {
    const KT_Line_Attributes& a = *r.line_attributes;
    if ((a.line_pattern == 0 || !reads_pattern) && a.line_weight <= 1) return false;
    events.push_back(call_line(
        action_of(line.kind, device), rendition, static_cast<int>(line.points.size()),
        line.points.data(), line.colors.empty() ? nullptr : line.colors.data(), line.single_color));
    return true;
  }

  /// Draws an outlined line in two passes: the outline and what lies between.
  bool outlined(Variant v, const Line& line, bool device) {
    const auto record = r.material->basic_material;
    const int count = static_cast<int>(line.points.size());
    if (record->classify_points(count, line.points.data()).kind != 7) return false;
    KT_Rendition t = rendition;
    auto& attributes = t.edit(&KT_Rendition_Data::line_attributes);
    auto& face = t.edit(&KT_Rendition_Data::face_attributes);
    auto& material = t.edit(&KT_Rendition_Data::material);
    auto& misc = t.edit(&KT_Rendition_Data::misc_attributes);
    const int weight = r.line_attributes->line_weight;
    Drawer pass{state, t, events};
    material.textured_material = material.basic_material = KT_Basic_Textured_Material();
    attributes.line_corner_style = attributes.line_end_style_a = attributes.line_end_style_b = 2;
    attributes.line_flag_a = attributes.line_flag_b = 1;
    attributes.line_weight = weight < 2 ? record->outline_width * 2 + 2 : weight + 5;
    face.face_pattern = 64;
    material.color = record->outline_color;
    if (material.color.alpha < 255) misc.advanced_options.bits |= 8;
    pass.draw(device, v, line);
    attributes.line_weight = weight > 1 ? weight + 1 : weight;
    material.color = r.material->color;
    misc.advanced_options.bits &= 0x7F7;
    if (weight > 1 && r.face_attributes->face_pattern != 24) {
      material.color = record->core_color;
    } else if (weight > 1) {
      material.contrast_color = blend(material.color, material.contrast_color);
      face.face_pattern = 24;
      misc.pattern_options = 1;
      face.face_depth_offset = r.face_attributes->face_depth_offset - 4;
    }
    pass.draw(device, v, line);
    return true;
  }

  /// Runs of points inside, and segments that leave the clip.
  void draw_runs(Variant v, const Line& line, bool masks) {
    const KT_Int_Rectangle& hard = r.display_context->hard_clip;
    const Points& points = line.points;
    const bool gouraud = line.kind == Kind::gouraud, flat = line.kind == Kind::flat;
    std::vector<short> codes(points.size());
    const auto count = static_cast<std::size_t>(
        KD_Clip(hard, static_cast<int>(points.size()), points.data(), codes.data()));
    const auto draw_run = [&](const Line& run) {
      masks ? draw_dci_masked(v, run) : draw_dci(v, run);
    };
    if (count == 0) return;
    if (count == points.size()) return draw_run(line);
    const std::size_t last = points.size() - 1;
    if (codes[last] == 0 && codes[last - 1] != 0) {
      const KT_RGB32 c = gouraud ? line.colors.back() : color(line, last - 1);
      draw_dot(state, v, r, points[last], flat ? nullptr : &c);
    }
    for (std::size_t i = 0; i < last; ++i) {
      if ((codes[i] & codes[i + 1]) != 0) continue;
      Line part{line.kind, {points[i]}, {}, line.single_color};
      if (codes[i] != 0 || codes[i + 1] != 0) {
        const KT_RGB32 c = color(line, i);
        Segment s{points[i], points[i + 1], c, gouraud ? line.colors[i + 1] : c};
        if (!clip_to_range(s, has_depth(v) || gouraud, gouraud)) continue;
        const int c0 = code_of(hard, s.p.x, s.p.y), c1 = code_of(hard, s.q.x, s.q.y);
        if ((c0 | c1) == 0 && !(masks && flat)) {
          part.points = {s.p, s.q};
          if (gouraud) part.colors = {s.p_color, s.q_color};
          if (!gouraud && !line.colors.empty()) part.colors = {c};
          draw_run(part);
        } else if ((c0 & c1) == 0) {
          draw_steps(clipped_routine(v, line.kind, masks), s, steps_of(s, &hard, c0, c1));
        }
        continue;
      }
      const std::size_t start = i;
      for (; i < last && codes[i + 1] == 0; ++i) part.points.push_back(points[i + 1]);
      const auto from = line.colors.begin();
      if (gouraud || !line.single_color)
        part.colors.assign(from + static_cast<long>(flat ? 0 : start),
                           from + static_cast<long>(flat      ? 0
                                                    : gouraud ? i + 1
                                                              : i));
      else
        part.colors = line.colors;
      draw_run(part);
      --i;
    }
  }

  Routine clipped_routine(Variant v, Kind kind, bool masks) const {
    const bool flat = kind == Kind::flat;
    const bool reads = flat || (kind == Kind::colorized && v != mapped_z);
    return {
        v, kind, masks, reads && !masks, has_alpha(v), flat && !has_depth(v) && state.merge_on(r)};
  }

  /// A thin line inside the clip.
  void draw_inside(Variant v, const Line& line, bool masks) {
    const bool colorized = line.kind == Kind::colorized, plain = line.kind == Kind::flat;
    const bool direct = colorized && (v == rgb || v == rgb_alpha);
    const bool merges = (direct || (plain && v == mapped)) && state.merge_on(r);
    if (direct && !merges && antialiased()) {
      std::vector<KT_RGB32> colors;
      for (std::size_t j = 0; j + 1 < line.points.size(); ++j) colors.push_back(color(line, j));
      return draw_antialiased_run(state, r, line.points, colors, true);
    }
    const bool reads = !masks && v != mapped_z && line.kind != Kind::gouraud;
    const bool blends = masks ? v == rgb_alpha && colorized : has_alpha(v);
    walk({v, line.kind, masks, reads, blends, merges}, line);
  }

  /// All pixels of a list inside the clip.
  void walk(const Routine& routine, const Line& line) {
    const bool gouraud = routine.kind == Kind::gouraud;
    const Variant v = routine.variant;
    const bool short_cut = gouraud && (!has_depth(v) || is_mapped(v));
    const auto near = [](int a, int b) { return std::abs(a - b) <= 3; };
    Segment s;
    for (std::size_t j = 0; j + 1 < line.points.size(); ++j) {
      const KT_RGB32 a = color(line, j), b = gouraud ? line.colors[j + 1] : a;
      s = {line.points[j], line.points[j + 1], a, b};
      if (short_cut && near(a.blue, b.blue) && near(a.green, b.green) && near(a.red, b.red))
        draw_dci(routine.masked && v == rgb_alpha ? rgb : v,
                 {Kind::colorized, {s.p, s.q}, {a}, true});
      else
        draw_steps(routine, s, steps_of(s));
    }
    draw_final(routine, s);
  }

  void draw_final(Routine routine, const Segment& s) {
    const int x = s.q.x - state.origin.x, y = s.q.y - state.origin.y;
    if (routine.masked && state.hidden(x, y)) return;
    if (has_depth(routine.variant)) {
      // With indices the depth runs on, one step past the end.
      const bool mapped_too = routine.variant == mapped_z;
      const int run_on = depth_at(s, s.major() == 0 ? 0 : s.major() + 1);
      auto& stored = state.depth.at<std::uint16_t>(x, y);
      if ((mapped_too && routine.kind == Kind::colorized ? run_on : s.q.z) > stored) return;
      stored =
          static_cast<std::uint16_t>(mapped_too && routine.kind != Kind::flat ? run_on : s.q.z);
      if (routine.kind == Kind::colorized) routine.blends = false;
    }
    store(routine, {s.q, s.q, s.q_color, s.q_color}, 0, x, y);
  }

  void draw_steps(const Routine& routine, const Segment& s, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
      const int x = step.x - state.origin.x, y = step.y - state.origin.y;
      if (routine.masked && state.hidden(x, y)) continue;
      if (has_depth(routine.variant)) {
        const std::uint16_t z = depth_at(s, step.distance);
        auto& stored = state.depth.at<std::uint16_t>(x, y);
        if (!depth_passes(routine.reads_settings ? state.zbuffer_test : 2, z, stored)) continue;
        if (!routine.reads_settings || state.zbuffer_write) stored = z;
      }
      store(routine, s, step.distance, x, y);
    }
  }

  static std::uint16_t depth_at(const Segment& s, int distance) {
    const int step = depth_step(difference(s.q.z, s.p.z), s.major());
    return static_cast<std::uint16_t>(
        ((bits(s.p.z) << 15 | 0x4000) + bits(product(distance, step))) >> 15);
  }

  /// The colour of a pixel of the segment goes to buffer (x, y).
  void store(const Routine& routine, const Segment& s, int distance, int x, int y) {
    const bool gouraud = routine.kind == Kind::gouraud;
    const auto value = [&](std::uint8_t KT_RGB32::*channel, int scale) {
      const int from = s.p_color.*channel * scale, to = s.q_color.*channel * scale;
      return sum(from << 16 | 0x8000, product(distance, line_step(to - from, s.major())));
    };
    if (is_mapped(routine.variant)) {
      auto& pixel = state.color.at<std::uint8_t>(x, y);
      auto index = static_cast<std::uint8_t>(r.material->color_index);
      const KT_Color_Cube& cube = state.cube;
      if (routine.kind == Kind::colorized)
        index = ordered(state, cube_position(state, s.p_color), x, y);
      if (gouraud)
        index = dithered(state,
                         {{value(&KT_RGB32::red, cube.red_scale) >> 8,
                           value(&KT_RGB32::green, cube.green_scale) >> 8,
                           value(&KT_RGB32::blue, cube.blue_scale) >> 8}},
                         x, y);
      pixel = routine.merges ? merge_mapped(state, pixel, index) : index;
      return;
    }
    const auto byte = [&](std::uint8_t KT_RGB32::*channel) {
      return static_cast<std::uint8_t>(value(channel, 1) >> 16);
    };
    KT_RGB32 source = s.p_color;
    if (gouraud)
      source = {byte(&KT_RGB32::blue), byte(&KT_RGB32::green), byte(&KT_RGB32::red),
                routine.blends ? byte(&KT_RGB32::alpha) : std::uint8_t{255}};
    auto& pixel = state.color.at<KT_RGB32>(x, y);
    pixel = routine.merges   ? merge_rgb(state, pixel, source)
            : routine.blends ? blend_by(weight_of(source.alpha) * 256, pixel, source)
                             : source;
  }
};

}  // namespace

KT_Action action_of(Kind kind, bool device) {
  // Of each kind there is one action more in the table, for double points.
  return static_cast<KT_Action>(static_cast<int>(KT_Action::Draw_2DI_Polyline) +
                                3 * static_cast<int>(kind) + device);
}

Events draw_line(State& state, const KT_Rendition& rendition, bool device, const Line& line) {
  Events events;
  Drawer{state, rendition, events}.draw(device, state.variant, line);
  return events;
}

Events draw_strip_edges(State& state, const KT_Rendition& rendition, const Points& points) {
  Events events;
  KT_Rendition edges = rendition;
  edges.edit(&KT_Rendition_Data::misc_attributes).advanced_options.bits &= 0x7DF;
  Drawer drawer{state, edges, events};
  Points halves[2];
  for (std::size_t i = 0; i < points.size(); ++i) halves[i % 2].push_back(points[i]);
  drawer.draw(false, rgb_z, {Kind::flat, points});
  drawer.draw(false, rgb_z, {Kind::flat, halves[0]});
  if (points.size() > 3) drawer.draw(false, rgb_z, {Kind::flat, halves[1]});
  return events;
}

}  // namespace model
