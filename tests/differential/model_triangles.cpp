// Reference model of triangles: the way of a call from its action to the scan, and the pixels.
#include "tests/differential/model_triangles.h"

#include <cstdlib>

#include "tests/differential/model_lines.h"

namespace model {
namespace {

/// Which of the scan routines is at work.
struct Routine {
  Variant variant{};
  Kind kind{};
  bool masked = false, clipped = false;

  bool is(Variant v, Kind k) const { return variant == v && kind == k; }
};

struct Vertex {
  int x = 0, y = 0, z = 0;    // x and y in buffer coordinates
  std::array<int, 4> rgba{};  // of a Gouraud triangle; scaled in the mapped variants
};

/// x, depth, red, green, blue, alpha.
Edge<6> edge_of(const Vertex& from, const Vertex& to, int rows) {
  Edge<6> edge{
      {edge_start(from.x), edge_start_of_depth(from.z)},
      {bits(line_step(to.x - from.x, rows)), bits(depth_step(difference(to.z, from.z), rows))}};
  for (std::size_t k = 0; k < 4; ++k) {
    edge.at[2 + k] = edge_start(from.rgba[k]);
    edge.step[2 + k] = bits(line_step(to.rgba[k] - from.rgba[k], rows));
  }
  return edge;
}

bool near_flat(KT_RGB32 a, KT_RGB32 b) {
  return std::abs(a.red - b.red) <= 3 && std::abs(a.green - b.green) <= 3 &&
         std::abs(a.blue - b.blue) <= 3;
}

struct Model {
  State& state;
  const KT_Rendition& rendition;
  const Strip_Call& call;
  const KT_Display_Context& display = *rendition->display_context;
  const KT_Material& material = *rendition->material;
  const Face_Pattern pattern{*rendition};
  const bool merge_on = state.merge_on(*rendition);
  const bool alpha_bit = (rendition->misc_attributes->advanced_options.bits & 8) != 0;
  Events events{};
  bool single_color = false;
  // Of the triangle at work:
  KT_RGB32 color{};
  bool merging = false, lost_color = false;

  Events run() {
    const Layer layer = call.points.layer;
    Variant v = state.variant;
    Kind kind = call.kind;
    single_color = call.single_color;
    std::vector<KT_RGB32> colors = call.colors;
    if (kind == Kind::flat && !is_mapped(v)) {
      kind = Kind::colorized;
      colors[0] = material.color;
      single_color = true;
      if (layer == Layer::dci && alpha_bit) {
        v = with_alpha(v);
      } else if (v == rgb && merge_on && layer >= Layer::p2di) {
        v = rgb_alpha;
        colors[0].alpha = 255;
      }
    }
    std::vector<Corner> corners;
    for (const KT_DCI_Point& p : call.points.whole())
      corners.push_back({p, colors[single_color ? 0 : corners.size()]});
    enter(layer, v, kind, corners, call.kind == Kind::colorized);
    return std::move(events);
  }

  /// `alpha_first`: the action itself, for which blending comes before edges.
  void enter(Layer layer, Variant v, Kind kind, Strip strip, bool alpha_first) {
    const bool shaded = kind != Kind::flat, colorized = kind == Kind::colorized;
    const bool direct_z = has_depth(v) && !is_mapped(v), whole = layer >= Layer::p2di;
    const bool edge_bit = (rendition->misc_attributes->advanced_options.bits & 32) != 0;
    const bool blends_first =
        alpha_first && alpha_bit && layer == Layer::dci && colorized && v == rgb_z;
    if (shaded && direct_z && whole && edge_bit && !blends_first) {
      events = draw_strip_edges(state, rendition, call.points.whole());
      return;
    }
    const bool reads_alpha = layer == Layer::p2d    ? v == rgb && colorized
                             : layer == Layer::p2di ? v == rgb_z || colorized
                                                    : true;
    if (shaded && reads_alpha && alpha_bit) v = with_alpha(v);
    if (rendition->face_attributes->face_pattern > 74) return general(kind, strip);
    if (!is_inside(layer) && strip.size() < 2) return;
    if (has_depth(v) && !display.depth_enabled)
      return enter(layer, without_depth(v), kind, strip, false);
    if (!whole) return enter(is_inside(layer) ? Layer::dci : Layer::p2di, v, kind, strip, false);
    const bool masked = v != rgb_alpha_z && state.mask;
    if (layer == Layer::p2di) return split({v, kind, masked, false}, strip);
    if (v == rgb && colorized && merge_on) v = rgb_alpha;
    scan({v, kind, masked, false}, strip, single_color);
  }

  void general(Kind kind, Strip strip) {
    std::vector<KT_RGB32> colors;
    for (const Corner& corner : strip) colors.push_back(corner.color);
    const KT_Action action = action_of(kind, call.points.layer);
    const auto add = [&](const auto& points) {
      events.push_back(call_line(action, rendition, call.points.count(), points.data(),
                                 kind == Kind::flat ? nullptr : colors.data(),
                                 kind == Kind::colorized && single_color));
    };
    call.points.floats.empty() ? add(call.points.points) : add(call.points.floats);
  }

  void split(const Routine& routine, Strip strip) {
    const auto run = [&](Strip part) {
      if (part.size() == strip.size() && routine.variant == rgb_z && !state.mask)
        events.push_back(line("through the table", name_of(action_of(routine.kind, Layer::dci))));
      routine.masked ? masked_run(routine, part)
                     : enter(Layer::dci, routine.variant, routine.kind, part, false);
    };
    split_strip(display.hard_clip, strip, run, [&](Strip s) { draw_clipped(routine, s); });
  }

  void masked_run(Routine routine, Strip strip) {
    const bool merges = merge_on && routine.kind == Kind::colorized;
    if (routine.variant == rgb && routine.kind != Kind::flat && (alpha_bit || merges))
      routine.variant = rgb_alpha;
    scan(routine, strip, single_color);
  }

  Vertex vertex(const Routine& routine, const Corner& corner) const {
    const auto& [p, c, parameter, vector] = corner;
    const KT_Color_Cube& cube = state.cube;
    Vertex v{p.x - state.origin.x,
             p.y - state.origin.y,
             sum(p.z, rendition->face_attributes->face_depth_offset),
             {c.red, c.green, c.blue, c.alpha}};
    if (is_mapped(routine.variant))
      v.rgba = {c.red * cube.red_scale, c.green * cube.green_scale, c.blue * cube.blue_scale, 0};
    return v;
  }

  /// The scan routines: a strip inside the hard clip.
  void scan(const Routine& routine, Strip strip, bool single) {
    if (strip.size() < 3 || pattern.empty) return;
    const bool blends = routine.is(rgb_alpha, Kind::colorized);
    merging = merge_on && (blends || routine.is(mapped, Kind::flat));
    if (blends && single && strip[0].color.alpha == 0) return;
    // One colour for the strip is worked out on the first triangle, drawn or not.
    lost_color =
        single && strip[0].point.y == strip[1].point.y && strip[1].point.y == strip[2].point.y;
    for (std::size_t i = 0; i + 2 < strip.size(); ++i) {
      const Strip t = strip.subspan(i, 3);
      if (routine.kind == Kind::gouraud && near_flat(t[0].color, t[1].color) &&
          near_flat(t[0].color, t[2].color)) {
        scan({routine.variant, Kind::colorized, routine.masked, false}, t, true);
        merging = false;
        continue;
      }
      color = t[0].color;
      // Merging takes the first colour as opaque, and only that one.
      if (merging && (i == 0 || single)) color.alpha = 255;
      triangle(routine, t);
    }
  }

  /// The clipped triangle routines.
  void draw_clipped(Routine routine, Strip t) {
    if (pattern.empty) return;
    routine.clipped = true;
    if (routine.kind == Kind::gouraud && near_flat(t[0].color, t[1].color) &&
        near_flat(t[1].color, t[2].color))
      routine.kind = Kind::colorized;
    color = t[0].color;
    lost_color = false;
    merging = merge_on && routine.kind != Kind::gouraud &&
              (routine.variant == mapped || routine.variant == rgb_alpha);
    const std::vector<Corner> list = clip_triangle(t);
    for (std::size_t i = 0; i + 2 < list.size(); ++i) triangle(routine, Strip(list).subspan(i, 3));
  }

  void triangle(const Routine& routine, Strip t) {
    std::array v{vertex(routine, t[0]), vertex(routine, t[1]), vertex(routine, t[2])};
    const Limits limits = routine.clipped ? Limits(display.hard_clip, state.origin) : Limits();
    if (!sort_rows(v, limits)) return;
    // Only the solid scan of one colour with alpha looks at the row.
    const bool guarded = routine.is(rgb_alpha, Kind::colorized) && !routine.masked &&
                         !routine.clipped && pattern.solid;
    walk_rows(v, limits, edge_of, [&](const Span& span, const auto& l, const auto& r, bool) {
      if (guarded && (span.y < 0 || span.y >= state.extent.y)) return;
      for (int x = span.from; x < span.to; ++x) pixel(routine, span, x, l, r);
    });
  }

  void pixel(const Routine& routine, const Span& span, int x, const Edge<6>& l, const Edge<6>& r) {
    const auto [variant, kind, masked, clipped] = routine;
    const int y = span.y, i = x - span.left, n = span.length;
    const bool short_forms = pattern.solid && !clipped && (!masked || is_mapped(variant));
    // Who reads the settings of depth.
    const bool reads = !is_mapped(variant) && kind != Kind::gouraud && !masked;
    std::uint16_t z = 0;
    if (has_depth(variant)) {
      z = depth_on_span(l.at[1], r.at[1], n, i, short_forms);
      const unsigned test = reads && variant == rgb_z ? state.zbuffer_test : 2;
      if (!depth_passes(test, z, state.depth.at<std::uint16_t>(x, y))) return;
    }
    if (masked && state.hidden(x, y)) return;
    const bool contrast = !pattern.solid && pattern.bit(x, y);
    if (contrast && !pattern.opaque) return;
    if (has_depth(variant) && (state.zbuffer_write || !reads || (clipped && !pattern.solid)))
      state.depth.at<std::uint16_t>(x, y) = z;
    const auto channel = [&](std::size_t k, int dropped) {
      return on_span(l.at[2 + k], r.at[2 + k], n, i, short_forms, dropped);
    };
    if (is_mapped(variant)) {
      auto& p = state.color.at<std::uint8_t>(x, y);
      const auto position = [&](std::size_t k) { return static_cast<int>(channel(k, 8)); };
      std::uint8_t index = static_cast<std::uint8_t>(material.contrast_index);
      if (!contrast && kind == Kind::gouraud)
        index = dithered(state, {{position(0), position(1), position(2)}}, x, y);
      else if (!contrast)
        index = index_of(routine, x, y);
      p = merging && (kind == Kind::flat || !contrast) ? merge_mapped(state, p, index) : index;
      return;
    }
    KT_RGB32 source = contrast ? material.contrast_color : color;
    if (kind == Kind::gouraud && !contrast) {
      const auto byte = [&](std::size_t k) {
        return static_cast<std::uint8_t>(channel(k, 0) >> 16);
      };
      source = {byte(2), byte(1), byte(0), has_alpha(variant) ? byte(3) : std::uint8_t{255}};
    }
    store(routine, state.color.at<KT_RGB32>(x, y), source, contrast);
  }

  void store(const Routine& routine, KT_RGB32& p, KT_RGB32 source, bool contrast) {
    const bool gouraud = routine.kind == Kind::gouraud;
    const bool in_scan = !routine.masked && !routine.clipped;
    enum { as_it_is, blended, by_alpha, merged } rule = by_alpha;
    if (!has_alpha(routine.variant))
      rule = as_it_is;
    else if (routine.variant == rgb_alpha_z)
      rule = in_scan && !gouraud ? blended : by_alpha;
    else if (in_scan && gouraud)
      rule = contrast ? as_it_is : by_alpha;
    else if (in_scan && color.alpha != 255)
      rule = contrast ? as_it_is : blended;
    else if (merging)
      rule = merged;
    else if (in_scan)
      rule = as_it_is;
    if (rule == by_alpha && source.alpha == 0) return;
    if (rule == merged)
      p = merge_rgb(state, p, source);
    else if (rule == as_it_is || (rule == by_alpha && source.alpha == 255))
      p = source;
    else
      p = blend(p, source, routine.masked);
  }

  /// The index of a triangle of one colour.
  std::uint8_t index_of(const Routine& routine, int x, int y) const {
    if (routine.kind == Kind::flat) return static_cast<std::uint8_t>(material.color_index);
    Cube_Position at = cube_position(state, color);
    if (!routine.clipped) return lost_color ? std::uint8_t{0} : ordered(state, at, x, y);
    for (int& c : at.rgb) c |= 128;
    return dithered(state, at, x, y);
  }
};

}  // namespace

std::vector<KT_DCI_Point> Strip_Points::whole() const {
  std::vector<KT_DCI_Point> result = points;
  for (const KT_Point& p : floats) result.push_back({rounded(p.x), rounded(p.y), rounded(p.z)});
  return result;
}

KT_Action action_of(Kind kind, Layer layer) {
  // Of each kind there is one action more in the table, for double points.
  return static_cast<KT_Action>(static_cast<int>(KT_Action::Draw_2D_Polytriangle) +
                                5 * static_cast<int>(kind) + static_cast<int>(layer));
}

Events draw_strip(State& state, const KT_Rendition& rendition, const Strip_Call& call) {
  return Model{state, rendition, call}.run();
}

}  // namespace model
