// Reference model of textured triangles: the way of a call, then edges, spans, texels, stores.
#include "tests/differential/model_textures.h"

#include <optional>

#include "tests/differential/model_lines.h"

namespace model {
namespace {

/// How texels take colour: not at all, times the vertex colours, by light.
enum class Path { plain, modulated, lit };

/// The step of colour and light along a span: shifts round down, divisions to zero.
int span_step(int d, int n) {
  if (n == 2 || n == 4 || n == 8) return d >> (n == 8 ? 3 : n / 2);
  return n < 2 ? d : d / n;
}

struct Vertex {
  int x = 0, y = 0, z = 0;    // x and y in buffer coordinates
  int u = 0, v = 0;           // whole texels
  std::array<int, 4> rgba{};  // scaled in the mapped variants; diffuse light on the lit path
  Light specular{};
  KT_Vector vector;
};

constexpr std::size_t z_at = 1, u_at = 2, v_at = 3, rgba_at = 4;

struct Textured_Edge : Edge<8> {
  Light specular{}, specular_step{};

  /// `full`: a colour of 255 is the whole of 65536.
  Textured_Edge(const Vertex& from, const Vertex& to, int rows, bool full) {
    at = {edge_start(from.x), edge_start_of_depth(from.z), edge_start(from.u), edge_start(from.v)};
    step = {bits(line_step(to.x - from.x, rows)), bits(depth_step(difference(to.z, from.z), rows)),
            bits(line_step(difference(to.u, from.u), rows)),
            bits(line_step(difference(to.v, from.v), rows))};
    for (std::size_t k = 0; k < 4; ++k) {
      const int c = from.rgba[k], d = difference(to.rgba[k], c);
      at[rgba_at + k] = full ? bits(c * 257 + 1) : edge_start(c) >> 8;
      step[rgba_at + k] = bits(full ? line_step(d * 257, rows) >> 16 : line_step(d, rows) >> 8);
    }
    specular = from.specular;
    for (std::size_t k = 0; k < 3; ++k)
      specular_step[k] = (to.specular[k] - from.specular[k]) / static_cast<float>(rows);
  }
  void advance(int rows) {
    Edge::advance(rows);
    for (std::size_t k = 0; k < 3 && rows == 1; ++k) specular[k] += specular_step[k];
  }
  int rgba(std::size_t k) const { return static_cast<int>(at[rgba_at + k]); }
};

/// What a pixel takes from its place on the span.
struct Sample {
  std::uint16_t z = 0;         // the depth that is tested
  std::uint32_t u = 0, v = 0;  // 16 bits each, which the wrap test takes
  std::uint32_t row = 0;       // as v, for the row of the texel
  std::array<int, 4> rgba{};   // factors of the texel's channels
  int halves = 0;              // products are twice as large as they should be
  std::array<int, 3> specular{};
};

struct Model {
  State& state;
  const KT_Rendition& rendition;
  const Texture& texture;
  const Textured_Call& call;
  const KT_Rendition_Data& data = *rendition.get();
  const Face_Pattern pattern{data};
  const std::vector<KT_DCI_Point> points = call.points.whole();
  const bool inside = is_inside(call.points.layer);
  const bool lit = data.material->lighting && call.vectors;
  Events events{};
  Variant variant{};
  Path path{};
  // Of the span at work:
  bool clipped = false, short_form = false, first_half = false, contrast = false;
  std::uint16_t left_z = 0;
  std::uint32_t short_z = 0;
  std::optional<std::uint32_t> running_z{};  // runs through a scan once a span has set it

  Events run() {
    variant = state.variant;
    if (variant == rgb_z && bit(32)) return draw_edges();
    if (variant == rgb_z && bit(8)) variant = rgb_alpha_z;
    if (variant == rgb_alpha_z && inside && bit(32)) return draw_edges();
    if (!is_drawn_here()) {
      const void* p = call.points.floats.empty()
                          ? static_cast<const void*>(call.points.points.data())
                          : static_cast<const void*>(call.points.floats.data());
      events.push_back(line(name_of(action_of(call.points.layer)), call.count, p, call.colors,
                            call.parameters, call.parameter_width, call.extra_floats,
                            call.vectors));
      return events;
    }
    const bool modulates = texture.modulate && (call.colors || variant != rgb_alpha_z || !inside);
    path = lit ? Path::lit : modulates ? Path::modulated : Path::plain;
    if (!inside && path == Path::modulated && variant == rgb_alpha_z && bit(32))
      return draw_edges();
    const bool reads_colors = path == Path::modulated || (path == Path::lit && texture.modulate);
    if (call.count < 2 || (reads_colors && !call.colors)) return events;
    std::vector<Corner> corners;
    for (int i = 0; i < call.count; ++i)
      corners.push_back(
          {points[static_cast<std::size_t>(i)], reads_colors ? call.colors[i] : KT_RGB32{},
           call.parameters[i * call.parameter_width], lit ? call.vectors[i] : KT_Vector{}});
    if (inside)
      scan(corners);
    else
      split_strip(
          data.display_context->hard_clip, corners, [&](Strip run) { scan(run); },
          [&](Strip triangle) {
            clipped = true;
            draw_strip(clip_triangle(triangle));
          });
    return events;
  }

  bool bit(std::uint32_t value) const {
    return (data.misc_attributes->advanced_options.bits & value) != 0;
  }
  Events draw_edges() {
    for (std::string& event : draw_strip_edges(state, rendition, points))
      events.push_back(std::move(event));
    return events;
  }

  /// The tests that send a call to the general routine.
  bool is_drawn_here() {
    if (data.face_attributes->face_pattern > 74 || !data.display_context->depth_enabled)
      return false;
    events.push_back(texture_line());
    if ((data.misc_attributes->texture_options & 1) || texture.standard_only ||
        ((texture.wrap_s | texture.wrap_t) & ~2u))
      return false;
    return !lit || (variant == mapped_z && !call.cut_out && inside &&
                    data.misc_attributes->texture_mode != 3);
  }

  bool direct_alpha() const { return variant == rgb_alpha_z; }
  bool patterned() const { return !clipped && !pattern.solid; }
  int scale(std::size_t k) const {
    return std::array{state.cube.red_scale, state.cube.green_scale, state.cube.blue_scale, 0}[k];
  }

  /// A strip inside the hard clip.
  void scan(Strip strip) {
    clipped = false;
    running_z.reset();
    if (!pattern.empty) draw_strip(strip);
  }

  void draw_strip(Strip s) {
    for (std::size_t i = 0; i + 2 < s.size(); ++i)
      triangle({vertex(s[i]), vertex(s[i + 1]), vertex(s[i + 2])});
  }

  Vertex vertex(const Corner& corner) const {
    const auto& [p, c, parameter, vector] = corner;
    Vertex v{p.x - state.origin.x,
             p.y - state.origin.y,
             sum(p.z, data.face_attributes->face_depth_offset),
             truncated(static_cast<float>(texture.image->width) * parameter.s),
             truncated(static_cast<float>(texture.image->height) * parameter.t),
             {c.red, c.green, c.blue, c.alpha},
             {},
             vector};
    for (std::size_t k = 0; variant == mapped_z && k < 4; ++k) v.rgba[k] *= scale(k);
    return v;
  }

  /// Computes the light of each vertex, diffuse light first.
  void light(std::array<Vertex, 3>& vertices) {
    const auto ask = [&](KT_RGB32 color, const Light& specular_color, const Vertex& v) {
      events.push_back(light_line(color, specular_color, v.vector));
      return call.shade(color, specular_color, v.vector);
    };
    const auto full = [&](std::size_t k) { return static_cast<float>(scale(k)) * 255.0f; };
    for (Vertex& v : vertices) {
      const Light l = ask({255, 255, 255, 255}, {}, v);
      for (std::size_t k = 0; k < 3; ++k)
        v.rgba[k] = truncated((texture.modulate ? static_cast<float>(v.rgba[k]) : full(k)) * l[k]);
    }
    for (Vertex& v : vertices) {
      const Light l = ask({0, 0, 0, 255}, call.specular_color, v);
      for (std::size_t k = 0; k < 3; ++k) v.specular[k] = full(k) * l[k];
    }
  }

  void triangle(std::array<Vertex, 3> v) {
    const Limits limits =
        clipped ? Limits(data.display_context->hard_clip, state.origin) : Limits();
    if (!sort_rows(v, limits)) return;
    if (path == Path::lit) light(v);
    walk_rows(
        v, limits,
        [&](const Vertex& from, const Vertex& to, int rows) {
          return Textured_Edge(from, to, rows, direct_alpha() && !clipped);
        },
        [&](const Span& s, const auto& l, const auto& r, bool before_mid) {
          first_half = before_mid;
          if (s.from < s.to) span(s, l, r);
        });
  }

  void span(const Span& s, const Textured_Edge& l, const Textured_Edge& r) {
    short_form = !patterned() && !clipped && variant != mapped_z && s.length <= 2;
    left_z = static_cast<std::uint16_t>(l.at[z_at] >> 15);
    contrast = patterned() && pattern.bit(s.left, s.y);
    if (short_form && s.length == 2) running_z = (r.at[z_at] >> 1) + (l.at[z_at] >> 1);
    short_z = running_z.value_or(l.at[z_at]);
    for (int x = s.to; x-- > s.from;) pixel(x, s.y, sample(l, r, s.length, x - s.left));
    if (!short_form)
      running_z = bits(depth_on_span(l.at[z_at], r.at[z_at], s.length, s.length - 1, false)) << 15;
  }

  Sample sample(const Textured_Edge& l, const Textured_Edge& r, int n, int i) const {
    const auto texel = [&](std::size_t k) {
      return on_span(l.at[k], r.at[k], n, i, short_form) >> 16;
    };
    const bool mean = short_form && i == 1, left_row = path == Path::plain && first_half;
    Sample s{depth_on_span(l.at[z_at], r.at[z_at], n, i, short_form), texel(u_at), texel(v_at)};
    s.row = mean && left_row ? l.at[v_at] >> 16 : s.v;
    s.halves = mean;
    const auto stepped = [&](int a, int b) {
      return sum(a, product(i, span_step(difference(b, a), n)));
    };
    for (std::size_t k = 0; k < 4; ++k)
      s.rgba[k] = mean ? sum(l.rgba(k), r.rgba(k)) : stepped(l.rgba(k), r.rgba(k));
    for (std::size_t k = 0; k < 3 && path == Path::lit; ++k)
      s.specular[k] = stepped(truncated(l.specular[k]), truncated(r.specular[k]));
    return s;
  }

  void pixel(int x, int y, const Sample& s) {
    auto& depth = state.depth.at<std::uint16_t>(x, y);
    if (s.z > depth) return;
    if (patterned() && contrast) {
      if (!pattern.opaque) return;
      depth = s.z;
      return store_contrast(x, y);
    }
    const KT_Shared_Image_Data& image = *texture.image;
    const std::uint32_t column_mask = bits(image.width - 1), row_mask = bits(image.height - 1);
    if (texture.wrap_t != 2 && (s.v & ~row_mask) != 0) return;
    if (texture.wrap_s != 2 && (s.u & ~column_mask) != 0) return;
    const std::uint8_t* row = image.scan_lines[row_mask - (s.row & row_mask)];
    const KT_RGB32 texel = reinterpret_cast<const KT_RGB32*>(row)[s.u & column_mask];
    if (variant != mapped_z) return store(state.color.at<KT_RGB32>(x, y), depth, texel, s);
    if (call.cut_out && texel.alpha == 0) return;
    depth = s.z;
    state.color.at<std::uint8_t>(x, y) = index(x, y, texel, s);
  }

  std::uint8_t index(int x, int y, KT_RGB32 texel, const Sample& s) const {
    const int channels[3] = {texel.red, texel.green, texel.blue};
    Cube_Position at{};
    for (std::size_t k = 0; k < 3; ++k) {
      const int factor = path == Path::plain ? scale(k) * 65280 + 128 : s.rgba[k];
      at.rgb[k] = sum(product(channels[k], factor), s.specular[k]) >> 8;
    }
    if (path != Path::lit) return dithered(state, at, x, y);
    // Light may go above 1: each channel stays within the cube.
    const int d = threshold(state, x, y);
    const auto step = [&](std::size_t k) { return std::clamp((at.rgb[k] + d) >> 16, 0, scale(k)); };
    return static_cast<std::uint8_t>(state.cube.base_index + step(0) * state.cube.red_stride +
                                     step(1) * state.cube.green_stride + step(2));
  }

  /// Stores into a pixel of direct colour that passed the depth and wrap tests.
  void store(KT_RGB32& pixel, std::uint16_t& depth, KT_RGB32 texel, const Sample& s) const {
    const bool modulated = path == Path::modulated;
    const bool clipped_alpha = direct_alpha() && clipped;
    if (clipped_alpha) depth = s.z;
    const auto times = [&](int channel, std::size_t k) {
      return modulated ? bits(product(channel, s.rgba[k])) >> s.halves >> 16 : bits(channel);
    };
    const std::uint32_t p[3] = {times(texel.red, 0), times(texel.green, 1), times(texel.blue, 2)};
    const std::uint32_t a = direct_alpha() ? times(texel.alpha, 3) : 255;
    if (a == 0) return;
    const auto mixed = [&](std::uint32_t source, std::uint8_t under) {
      const int rest = product(under, 255 - static_cast<int>(a));
      const int total = sum(product(static_cast<std::int16_t>(source), static_cast<int>(a)), rest);
      return static_cast<std::uint8_t>(a == 255 ? static_cast<int>(source) : total / 255);
    };
    pixel = {mixed(p[2], pixel.blue), mixed(p[1], pixel.green), mixed(p[0], pixel.red),
             a == 255 && !modulated ? texel.alpha : std::uint8_t{255}};
    if (!clipped_alpha) depth = stored_depth(s, a);
  }

  /// The depth that goes in for the one that was tested.
  std::uint16_t stored_depth(const Sample& s, std::uint32_t a) const {
    if (!short_form) return s.z;
    const bool plain = path == Path::plain;
    if (variant == rgb_z) return plain && first_half ? left_z : s.z;
    if (plain) return s.z;
    return a == 255 ? left_z : static_cast<std::uint16_t>(short_z >> 15);
  }

  void store_contrast(int x, int y) {
    if (variant == mapped_z) {
      state.color.at<std::uint8_t>(x, y) = static_cast<std::uint8_t>(data.material->contrast_index);
      return;
    }
    auto& pixel = state.color.at<KT_RGB32>(x, y);
    const KT_RGB32 c = data.material->contrast_color;
    if (!direct_alpha() || c.alpha == 255)
      pixel = c;
    else if (c.alpha != 0)
      pixel = blend(pixel, c);
  }
};

}  // namespace

KT_Action action_of(Layer layer) {
  return static_cast<KT_Action>(static_cast<int>(KT_Action::Draw_2D_Textured_Polytriangle) +
                                static_cast<int>(layer));
}

std::string texture_line() {
  return "texture";
}
std::string light_line(KT_RGB32 color, const Light& specular_color, const KT_Vector& vector) {
  return line("light", color, specular_color[0], specular_color[1], specular_color[2], vector);
}

Events draw_textured(State& state, const KT_Rendition& rendition, const Texture& texture,
                     const Textured_Call& call) {
  return Model{state, rendition, texture, call}.run();
}

}  // namespace model
