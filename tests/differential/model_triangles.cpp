#include "tests/differential/model_triangles.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>

#include "tests/differential/model_clipper.h"

namespace model {
namespace {

constexpr KT_Int_Rectangle safe_rectangle{-4000, 28760, -4000, 28760};

struct Strip {
  int count = 0;
  const KT_DCI_Point* points = nullptr;
  const KT_RGB32* colors = nullptr;
  bool single_color = false;

  Strip part(int first, int points_taken) const {
    return {points_taken, points + first, colors && !single_color ? colors + first : colors,
            single_color};
  }
};

/// Which of the scan routines is at work.
struct Routine {
  Variant variant{};
  Kind kind{};
  bool masked = false, clipped = false;
};

struct Vertex {
  int x = 0, y = 0, z = 0;    // x and y in buffer coordinates
  std::array<int, 4> rgba{};  // of a Gouraud triangle; scaled in the mapped variants
};

/// An edge on one row: x, depth, red, green, blue, alpha, and what each gains a row.
struct Edge {
  std::array<std::uint32_t, 6> value{}, step{};

  Edge(const Vertex& from, const Vertex& to, int rows, int skipped) {
    const auto shifted = [](int v, int by) { return static_cast<std::uint32_t>(v) << by; };
    value[0] = shifted(from.x, 16) | 0x8000;
    step[0] = static_cast<std::uint32_t>(line_step(difference(to.x, from.x), rows));
    value[1] = shifted(from.z, 15) | 0x4000;
    step[1] = static_cast<std::uint32_t>(depth_step(difference(to.z, from.z), rows));
    for (std::size_t k = 0; k < 4; ++k) {
      value[2 + k] = shifted(from.rgba[k], 16) | 0x8000;
      step[2 + k] = static_cast<std::uint32_t>(line_step(to.rgba[k] - from.rgba[k], rows));
    }
    advance(skipped);
  }
  void advance(int rows) {
    for (std::size_t k = 0; k < value.size(); ++k)
      value[k] += static_cast<std::uint32_t>(rows) * step[k];
  }
  int x() const { return static_cast<int>(value[0]); }
};

class Model {
 public:
  Model(State& state, const KT_Rendition& rendition)
      : state_(state),
        display_(*rendition->display_context),
        material_(*rendition->material),
        face_(*rendition->face_attributes),
        misc_(*rendition->misc_attributes),
        merge_on_(state.force_merge || misc_.drawing_mode == KT_Misc_Attributes::merge_mode),
        opaque_((misc_.pattern_options & 1) != 0),
        inverted_((misc_.pattern_options & 2) != 0),
        patterned_(face_.face_pattern != 64 || inverted_) {}

  Outcome run(const Call& call) {
    outcome_.kind = call.kind;
    Strip strip{call.count(), call.points.data(), call.colors.data(), call.single_color};
    std::vector<KT_DCI_Point> converted;
    for (const KT_Point& p : call.floats)
      converted.push_back({rounded(p.x), rounded(p.y), rounded(p.z)});
    if (!call.floats.empty()) strip.points = converted.data();
    Variant v = state_.variant;
    Kind kind = call.kind;
    KT_RGB32 color = material_.color;
    bool past_edges = kind == Kind::colorized;
    if (kind == Kind::flat && !is_mapped(v)) {
      outcome_.kind = kind = Kind::colorized;
      strip.colors = &color;
      strip.single_color = true;
      if (v == Variant::rgb_z && call.layer == Layer::dci && alpha_bit()) v = Variant::rgb_alpha_z;
      if (v == Variant::rgb && call.layer == Layer::dci && alpha_bit()) {
        v = Variant::rgb_alpha;
      } else if (v == Variant::rgb && merge_on_ &&
                 (call.layer == Layer::dci || call.layer == Layer::p2di)) {
        v = Variant::rgb_alpha;
        color.alpha = 255;
      }
      outcome_.flat_color = color;
    }
    switch (call.layer) {
      case Layer::p2d:
        draw_2d(v, kind, strip);
        break;
      case Layer::dc:
        draw_dc(v, kind, strip);
        break;
      case Layer::p2di:
        draw_2di(v, kind, strip);
        break;
      case Layer::dci:
        draw_dci(v, kind, strip, past_edges);
        break;
    }
    return outcome_;
  }

 private:
  bool alpha_bit() const { return (misc_.advanced_options.bits & 8) != 0; }
  bool edge_bit() const { return (misc_.advanced_options.bits & 32) != 0; }
  /// The standard routine draws.
  bool standard() { return outcome_.standard = face_.face_pattern > 74; }
  bool edges() { return outcome_.edges = edge_bit(); }
  bool masked(Variant v) const { return v != Variant::rgb_alpha_z && state_.mask; }
  void depthless(Variant& v) const {
    if (!display_.depth_enabled) v = without_depth(v);
  }

  void draw_2d(Variant v, Kind kind, const Strip& strip) {
    for (;;) {
      if (v == Variant::rgb && kind == Kind::colorized && alpha_bit()) v = Variant::rgb_alpha;
      if (standard() || strip.count < 2) return;
      if (!has_depth(v) || display_.depth_enabled) return draw_2di(v, kind, strip);
      v = without_depth(v);
    }
  }

  void draw_dc(Variant v, Kind kind, const Strip& strip) {
    for (;;) {
      if (kind != Kind::flat && alpha_bit()) v = with_alpha(v);
      if (standard()) return;
      if (!has_depth(v) || display_.depth_enabled) return draw_dci(v, kind, strip, false);
      v = without_depth(v);
    }
  }

  void draw_2di(Variant v, Kind kind, const Strip& strip) {
    if (kind != Kind::flat) {
      if ((v == Variant::rgb_z || v == Variant::rgb_alpha_z) && edges()) return;
      if ((v == Variant::rgb_z || (v == Variant::rgb && kind == Kind::colorized)) && alpha_bit())
        return draw_2di(with_alpha(v), kind, strip);
    }
    if (standard() || strip.count < 2) return;
    if (has_depth(v) && !display_.depth_enabled) return draw_2di(without_depth(v), kind, strip);
    walk({v, kind, masked(v), false}, strip);
  }

  void walk(Routine routine, const Strip& s) {
    const auto draw_run = [&](const Strip& strip) {
      routine.masked ? draw_masked_dci(routine, strip)
                     : draw_dci(routine.variant, routine.kind, strip, false);
    };
    std::vector<short> codes(static_cast<std::size_t>(s.count));
    const int inside = KD_Clip(display_.hard_clip, s.count, s.points, codes.data());
    if (inside == s.count) {
      outcome_.through_table = routine.variant == Variant::rgb_z && !routine.masked;
      return draw_run(s);
    }
    if (inside == 0 || nothing_to_draw()) return;
    const auto code = [&](int i) { return codes[static_cast<std::size_t>(i)]; };
    const int last = s.count - 2;
    for (int i = 0; i < last;) {
      for (; i < last && (code(i) & code(i + 1) & code(i + 2)); ++i) continue;
      for (; i < last && (code(i) | code(i + 1) | code(i + 2)); ++i)
        draw_clipped(routine, s.part(i, 3));
      const int start = i;
      for (; i < last && code(i + 2) == 0; ++i) continue;
      if (i > start) draw_run(s.part(start, i - start + 2));
    }
  }

  /// `past_edges` for the action itself: of both bits it takes the one for alpha.
  void draw_dci(Variant v, Kind kind, const Strip& strip, bool past_edges) {
    const bool colorized = kind == Kind::colorized;
    if (kind != Kind::flat) {
      if (v == Variant::rgb_z && colorized && alpha_bit()) {
        v = Variant::rgb_alpha_z;
        if (!past_edges && edges()) return;
      } else if ((v == Variant::rgb_z || v == Variant::rgb_alpha_z) && edges()) {
        return;
      }
      if (alpha_bit()) v = with_alpha(v);
    }
    if (standard()) return;
    if (has_depth(v) && !display_.depth_enabled)
      return draw_dci(without_depth(v), kind, strip, false);
    if (v == Variant::rgb && colorized && merge_on_) v = Variant::rgb_alpha;
    scan({v, kind, masked(v), false}, strip);
  }

  void draw_masked_dci(Routine routine, const Strip& strip) {
    if (routine.variant == Variant::rgb && routine.kind != Kind::flat &&
        (alpha_bit() || (merge_on_ && routine.kind == Kind::colorized)))
      routine.variant = Variant::rgb_alpha;
    scan(routine, strip);
  }

  static bool near_flat(KT_RGB32 a, KT_RGB32 b) {
    return std::abs(a.red - b.red) <= 3 && std::abs(a.green - b.green) <= 3 &&
           std::abs(a.blue - b.blue) <= 3;
  }

  bool nothing_to_draw() const {
    return !opaque_ && face_.face_pattern == (inverted_ ? 64 : 0) && patterned_;
  }

  Vertex vertex(const Routine& routine, const KT_DCI_Point& p, KT_RGB32 c) const {
    const auto wrapped = [](int a, int b) {
      return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
    };
    Vertex v{p.x - state_.origin.x,
             p.y - state_.origin.y,
             wrapped(p.z, face_.face_depth_offset),
             {c.red, c.green, c.blue, c.alpha}};
    if (is_mapped(routine.variant)) scale(v.rgba);
    return v;
  }

  void scale(std::array<int, 4>& rgba) const {
    rgba[0] *= state_.cube.red_scale;
    rgba[1] *= state_.cube.green_scale;
    rgba[2] *= state_.cube.blue_scale;
  }

  /// The scan routines: a strip inside the hard clip.
  void scan(const Routine& routine, const Strip& strip) {
    if (strip.count < 3) return;
    bool opaque_first = false;
    merging_ =
        merge_on_ && (routine.variant == Variant::rgb_alpha
                          ? routine.kind == Kind::colorized
                          : routine.variant == Variant::mapped && routine.kind == Kind::flat);
    if (routine.variant == Variant::rgb_alpha && routine.kind == Kind::colorized) {
      if (strip.colors[0].alpha == 0 && strip.single_color) return;
      opaque_first = merging_;
    }
    if (nothing_to_draw()) return;
    bool lost_color = false;
    for (int i = 0; i + 2 < strip.count; ++i) {
      const KT_DCI_Point* p = strip.points + i;
      if (routine.kind == Kind::gouraud) {
        const KT_RGB32* c = strip.colors + i;
        if (near_flat(c[0], c[1]) && near_flat(c[0], c[2])) {
          scan({routine.variant, Kind::colorized, routine.masked, false}, {3, p, c, true});
          merging_ = false;
        } else {
          triangle(routine, {vertex(routine, p[0], c[0]), vertex(routine, p[1], c[1]),
                             vertex(routine, p[2], c[2])});
        }
        continue;
      }
      if (routine.kind == Kind::colorized) {
        color_ = strip.colors[strip.single_color ? 0 : i];
        if (opaque_first && (i == 0 || strip.single_color)) color_.alpha = 255;
        // One colour for the strip is worked out on the first triangle, drawn or not.
        lost_color =
            lost_color || (i == 0 && strip.single_color && p[0].y == p[1].y && p[1].y == p[2].y);
        lost_color_ = lost_color;
      }
      triangle(routine,
               {vertex(routine, p[0], {}), vertex(routine, p[1], {}), vertex(routine, p[2], {})});
    }
  }

  /// The clipped triangle routines.
  void draw_clipped(Routine routine, const Strip& s) {
    routine.clipped = true;
    KT_RGB32 colors[3]{};
    if (routine.kind == Kind::gouraud) {
      std::copy_n(s.colors, 3, colors);
      if (near_flat(colors[0], colors[1]) && near_flat(colors[1], colors[2]))
        routine.kind = Kind::colorized;
    }
    if (routine.kind == Kind::colorized) color_ = s.colors[0];
    lost_color_ = false;
    merging_ = merge_on_ && routine.kind != Kind::gouraud &&
               (routine.variant == Variant::mapped || routine.variant == Variant::rgb_alpha);
    const KT_DCI_Point points[3] = {s.points[0], s.points[1], s.points[2]};
    short codes[3];
    KD_Clip(safe_rectangle, 3, points, codes);
    std::vector<Clipped_Point> list{
        {points[0], colors[0]}, {points[1], colors[1]}, {points[2], colors[2]}};
    if (codes[0] | codes[1] | codes[2]) list = clip_triangle(points, colors, safe_rectangle);
    for (std::size_t i = 0; i + 2 < list.size(); ++i)
      triangle(routine, {vertex(routine, list[i].point, list[i].color),
                         vertex(routine, list[i + 1].point, list[i + 1].color),
                         vertex(routine, list[i + 2].point, list[i + 2].color)});
  }

  void triangle(const Routine& routine, std::array<Vertex, 3> v) {
    std::ranges::stable_sort(v, {}, &Vertex::y);
    const auto& [top, mid, bottom] = v;
    const KT_Int_Rectangle& hard = display_.hard_clip;
    const int first = routine.clipped ? std::max(hard.bottom - state_.origin.y, top.y) : top.y;
    const int end = routine.clipped ? std::min(hard.top - state_.origin.y + 1, bottom.y) : bottom.y;
    if (end - first < 1) return;
    Edge long_edge(top, bottom, bottom.y - top.y, first - top.y);
    const auto part = [&](int from, int to, Edge short_edge, bool short_right) {
      for (int y = from; y < to; ++y) {
        short_right ? span(routine, y, long_edge, short_edge)
                    : span(routine, y, short_edge, long_edge);
        long_edge.advance(1);
        short_edge.advance(1);
      }
    };
    if (mid.y > first) {
      const Edge upper(top, mid, mid.y - top.y, first - top.y);
      part(first, std::min(end, mid.y), upper,
           static_cast<int>(upper.step[0]) > static_cast<int>(long_edge.step[0]));
    }
    const int second = std::max(first, mid.y);
    if (end > second) {
      const Edge lower(mid, bottom, bottom.y - mid.y, second - mid.y);
      part(second, end, lower, lower.x() >= long_edge.x());
    }
  }

  void span(const Routine& routine, int y, const Edge& l, const Edge& r) {
    // Only the solid scan of one colour with alpha looks at the row.
    if (routine.variant == Variant::rgb_alpha && routine.kind == Kind::colorized &&
        !routine.masked && !routine.clipped && !patterned_ && (y < 0 || y >= state_.extent.y))
      return;
    int left = static_cast<int>(l.value[0] >> 16), right = static_cast<int>(r.value[0] >> 16);
    int from = left, to = right;
    if (routine.clipped) {
      left = l.x() >> 16;
      right = r.x() >> 16;
      from = std::max(left, display_.hard_clip.left - state_.origin.x);
      to = std::min(right, display_.hard_clip.right - state_.origin.x + 1);
    }
    for (int x = from; x < to; ++x) pixel(routine, x, y, x - left, right - left, l, r);
  }

  void pixel(const Routine& routine, int x, int y, int i, int n, const Edge& l, const Edge& r) {
    const Variant v = routine.variant;
    const bool gouraud = routine.kind == Kind::gouraud;
    const bool direct_z = v == Variant::rgb_z || v == Variant::rgb_alpha_z;
    const bool short_forms = !patterned_ && !routine.clipped && (!routine.masked || is_mapped(v));
    std::uint16_t z = 0;
    if (has_depth(v)) {
      const bool reads_options = direct_z && !gouraud && !routine.masked;
      const unsigned test = reads_options && v == Variant::rgb_z ? state_.zbuffer_test : 2;
      z = depth_on_span(l.value[1], r.value[1], n, i, short_forms);
      if (!depth_passes(test, z, state_.depth.at<std::uint16_t>(x, y))) return;
    }
    if (routine.masked && (state_.mask->row<std::uint8_t>(y)[x / 8] & (128 >> (x % 8))) != 0)
      return;
    const bool contrast = patterned_ && pattern_bit(x, y);
    if (contrast && !opaque_) return;
    if (has_depth(v)) {
      const bool reads_write =
          direct_z && !gouraud && !routine.masked && !(routine.clipped && patterned_);
      if (state_.zbuffer_write || !reads_write) state_.depth.at<std::uint16_t>(x, y) = z;
    }
    if (is_mapped(v)) {
      auto& p = state_.color.at<std::uint8_t>(x, y);
      const std::uint8_t index = contrast ? static_cast<std::uint8_t>(material_.contrast_index)
                                          : mapped_color(routine, x, y, i, n, l, r);
      const bool merges = merging_ && (routine.kind == Kind::flat || !contrast);
      p = merges ? merge_mapped(state_, p, index) : index;
      return;
    }
    KT_RGB32 source = color_;
    if (gouraud) {
      const auto channel = [&](std::size_t k) {
        return static_cast<std::uint8_t>(
            channel_on_span(l.value[k], r.value[k], n, i, short_forms) >> 16);
      };
      source = {channel(4), channel(3), channel(2), has_alpha(v) ? channel(5) : std::uint8_t{255}};
    }
    auto& p = state_.color.at<KT_RGB32>(x, y);
    store(routine, p, contrast ? material_.contrast_color : source, contrast);
  }

  void store(const Routine& routine, KT_RGB32& p, KT_RGB32 source, bool contrast) {
    const bool gouraud = routine.kind == Kind::gouraud;
    const bool plain_scan = !routine.masked && !routine.clipped;
    enum { word, blended, by_alpha, merged } rule = by_alpha;
    if (!has_alpha(routine.variant)) {
      rule = word;
    } else if (routine.variant == Variant::rgb_alpha_z) {
      if (plain_scan && !gouraud) rule = blended;
    } else if (plain_scan && gouraud) {
      if (contrast) rule = word;
    } else if (plain_scan && color_.alpha != 255) {
      rule = contrast ? word : blended;
    } else if (plain_scan || merging_) {
      rule = merging_ ? merged : word;
    }
    if (rule == by_alpha && source.alpha == 0) return;
    if (rule == merged)
      p = KT_RGB32::from_word(merge_rgb(state_, p.word(), source.word()));
    else if (rule == word || (rule == by_alpha && source.alpha == 255))
      p = source;
    else
      p = blend(p, source, routine.masked);
  }

  std::uint8_t mapped_color(const Routine& routine, int x, int y, int i, int n, const Edge& l,
                            const Edge& r) const {
    if (routine.kind == Kind::flat) return static_cast<std::uint8_t>(material_.color_index);
    const int d = threshold(state_, x, y);
    if (routine.kind == Kind::gouraud) {
      const auto position = [&](std::size_t k) {
        return scaled_on_span(l.value[k], r.value[k], n, i, !patterned_ && !routine.clipped);
      };
      return dithered_index(state_.cube, {position(2), position(3), position(4)}, d);
    }
    if (lost_color_) return 0;
    std::array<int, 4> rgba{color_.red, color_.green, color_.blue, 0};
    scale(rgba);
    const int term = routine.clipped ? 128 : 0;
    const int rgb[3] = {rgba[0] << 8 | term, rgba[1] << 8 | term, rgba[2] << 8 | term};
    return routine.clipped ? dithered_index(state_.cube, rgb, d)
                           : ordered_index(state_.cube, rgb, d);
  }

  bool pattern_bit(int x, int y) const {
    KT_User_Pattern pattern{nullptr, 8, 8, 1};
    if (face_.face_pattern == 74)
      pattern = *face_.user_pattern;
    else
      pattern.pattern_bits = KORVEL.face_pattern_table[face_.face_pattern];
    const auto wrap = [](int value, int size) {
      const int rest = value % size;
      return rest < 0 ? rest + size : rest;
    };
    const int px = wrap(x - misc_.pattern_origin.x, pattern.pattern_width);
    const int py = wrap(y - misc_.pattern_origin.y, pattern.pattern_height);
    const int byte = pattern.pattern_bits[py * pattern.pattern_row_bytes + px / 8];
    return ((byte >> (px % 8) & 1) != 0) != inverted_;
  }

  State& state_;
  const KT_Display_Context& display_;
  const KT_Material& material_;
  const KT_Face_Attributes& face_;
  const KT_Misc_Attributes& misc_;
  const bool merge_on_, opaque_, inverted_, patterned_;
  Outcome outcome_;
  // Of the triangle at work:
  KT_RGB32 color_;
  bool merging_ = false, lost_color_ = false;
};

}  // namespace

Outcome draw(State& state, const KT_Rendition& rendition, const Call& call) {
  return Model(state, rendition).run(call);
}

}  // namespace model
