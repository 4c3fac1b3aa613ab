#include "tests/differential/model_texels.h"

#include <climits>

#include "tests/differential/model_clipper.h"

namespace model {
namespace {

constexpr KT_Int_Rectangle safe_rectangle{-4000, 28760, -4000, 28760};

std::uint32_t bits(int value) {
  return static_cast<std::uint32_t>(value);
}
int sum(int a, int b) {
  return static_cast<int>(bits(a) + bits(b));
}
int product(int a, int b) {
  return static_cast<int>(bits(a) * bits(b));
}
/// Truncated; beyond the range of int it is the least int.
int whole(float value) {
  return value >= -2147483648.0f && value < 2147483648.0f ? static_cast<int>(value) : INT_MIN;
}

/// The step of colour and light along a span.
int span_step(int d, int n) {
  switch (n) {
    case 0:
    case 1:
      return d;
    case 2:
      return d >> 1;
    case 4:
      return d >> 2;
    case 8:
      return d >> 3;
    default:
      return d / n;
  }
}

struct Vertex {
  int x = 0, y = 0, z = 0;    // x and y in buffer coordinates
  int u = 0, v = 0;           // whole texels
  std::array<int, 4> rgba{};  // scaled in the mapped variants; diffuse light on the lit road
  Light specular{};
  KT_RGB32 color;
  const KT_Vector* vector = nullptr;
};

struct Edge {
  std::uint32_t x, z, u, v;
  std::uint32_t dx, dz, du, dv;
  std::array<int, 4> rgba, step;
  Light specular, specular_step;

  /// `full`: a colour of 255 is the whole of 65536.
  Edge(const Vertex& from, const Vertex& to, int rows, int skipped, bool full)
      : x(bits(from.x) << 16 | 0x8000),
        z(bits(from.z) << 15 | 0x4000),
        u(bits(from.u) << 16 | 0x8000),
        v(bits(from.v) << 16 | 0x8000),
        dx(bits(line_step(difference(to.x, from.x), rows))),
        dz(bits(depth_step(difference(to.z, from.z), rows))),
        du(bits(line_step(difference(to.u, from.u), rows))),
        dv(bits(line_step(difference(to.v, from.v), rows))) {
    for (std::size_t k = 0; k < 4; ++k) {
      const int c = from.rgba[k], d = difference(to.rgba[k], c);
      rgba[k] = full ? c * 257 + 1 : static_cast<int>((bits(c) << 16 | 0x8000) >> 8);
      step[k] = full ? line_step(d * 257, rows) >> 16 : line_step(d, rows) >> 8;
    }
    specular = from.specular;
    for (std::size_t k = 0; k < 3; ++k) {
      specular_step[k] = to.specular[k] - from.specular[k];
      if (rows > 1) specular_step[k] /= static_cast<float>(rows);
    }
    for (; skipped > 0; --skipped) advance();
  }
  void advance() {
    x += dx;
    z += dz;
    u += du;
    v += dv;
    for (std::size_t k = 0; k < 4; ++k) rgba[k] = sum(rgba[k], step[k]);
    for (std::size_t k = 0; k < 3; ++k) specular[k] += specular_step[k];
  }
};

/// What a pixel takes from its place on the span.
struct Sample {
  std::uint16_t z = 0;         // the depth that is tested
  std::uint32_t u = 0, v = 0;  // 16 bits each, which the wrap test takes
  std::uint32_t line = 0;      // as v, for the line of the texel
  std::array<int, 4> rgba{};   // factors of the texel's channels
  int halves = 0;              // products are twice as large as they should be
  std::array<int, 3> specular{};
};

class Scan : Texel_Routine {
 public:
  Scan(const Texel_Routine& routine, bool clipped)
      : Texel_Routine(routine),
        hard_(rendition.display_context->hard_clip),
        material_(*rendition.material),
        face_(*rendition.face_attributes),
        misc_(*rendition.misc_attributes),
        clipped_(clipped),
        opaque_((misc_.pattern_options & 1) != 0),
        inverted_((misc_.pattern_options & 2) != 0),
        patterned_(!clipped && (face_.face_pattern != 64 || inverted_)) {}

  void strip(const Textured_Strip& s) {
    if (patterned_ && !opaque_ && face_.face_pattern == (inverted_ ? 64 : 0)) return;
    for (int i = 0; i + 2 < s.count; ++i)
      triangle({vertex(s, i), vertex(s, i + 1), vertex(s, i + 2)});
  }

 private:
  bool mapped() const { return variant == Variant::mapped_z; }
  bool direct_alpha() const { return variant == Variant::rgb_alpha_z; }
  int scale(std::size_t k) const {
    return std::array{state.cube.red_scale, state.cube.green_scale, state.cube.blue_scale, 0}[k];
  }

  Vertex vertex(const Textured_Strip& s, int i) const {
    const KT_DCI_Point p = s.points[i];
    const KT_Parameter& parameter = s.parameters[i * s.parameter_width];
    Vertex v;
    v.x = p.x - state.origin.x;
    v.y = p.y - state.origin.y;
    v.z = sum(p.z, face_.face_depth_offset);
    v.u = whole(static_cast<float>(texture.image->width) * parameter.s);
    v.v = whole(static_cast<float>(texture.image->height) * parameter.t);
    if (s.colors && road != Road::plain && (road != Road::lit || texture.modulate))
      v.color = s.colors[i];
    v.rgba = {v.color.red, v.color.green, v.color.blue, v.color.alpha};
    for (std::size_t k = 0; mapped() && k < 4; ++k) v.rgba[k] *= scale(k);
    if (road == Road::lit) v.vector = s.vectors + i;
    return v;
  }

  void light(std::array<Vertex, 3>& vertices) {
    const auto ask = [&](KT_RGB32 color, const Light& specular_color, const Vertex& v) {
      light_asked.push_back({color, specular_color, *v.vector});
      return call.shade(color, specular_color, *v.vector);
    };
    for (Vertex& v : vertices) {
      const Light l = ask({255, 255, 255, 255}, {}, v);
      for (std::size_t k = 0; k < 3; ++k)
        v.rgba[k] = texture.modulate ? whole(static_cast<float>(v.rgba[k]) * l[k])
                                     : whole(static_cast<float>(scale(k)) * 255.0f * l[k]);
    }
    for (Vertex& v : vertices) {
      const Light l = ask({0, 0, 0, 255}, call.specular_color, v);
      for (std::size_t k = 0; k < 3; ++k)
        v.specular[k] = static_cast<float>(scale(k)) * 255.0f * l[k];
    }
  }

  void triangle(std::array<Vertex, 3> vertices) {
    std::ranges::stable_sort(vertices, {}, &Vertex::y);
    const auto& [top, mid, bottom] = vertices;
    const int first = clipped_ ? std::max(hard_.bottom - state.origin.y, top.y) : top.y;
    const int end = clipped_ ? std::min(hard_.top - state.origin.y + 1, bottom.y) : bottom.y;
    if (end - first < 1) return;
    if (road == Road::lit) light(vertices);
    const bool full = direct_alpha() && !clipped_;
    Edge long_edge(top, bottom, bottom.y - top.y, first - top.y, full);
    const auto part = [&](int from, int to, Edge short_edge, bool short_right, bool upper) {
      for (int y = from; y < to; ++y) {
        short_right ? span(y, long_edge, short_edge, upper) : span(y, short_edge, long_edge, upper);
        long_edge.advance();
        short_edge.advance();
      }
    };
    if (mid.y > first) {
      const Edge upper(top, mid, mid.y - top.y, first - top.y, full);
      const bool right = static_cast<int>(upper.dx) > static_cast<int>(long_edge.dx);
      part(first, std::min(end, mid.y), upper, right, true);
    }
    const int second = std::max(first, mid.y);
    if (end > second) {
      const Edge lower(mid, bottom, bottom.y - mid.y, second - mid.y, full);
      const bool right = static_cast<int>(lower.x) >= static_cast<int>(long_edge.x);
      part(second, end, lower, right, false);
    }
  }

  void span(int y, const Edge& l, const Edge& r, bool upper) {
    int left = static_cast<int>(l.x >> 16), right = static_cast<int>(r.x >> 16);
    int from = left, to = right;
    if (clipped_) {
      left = static_cast<int>(l.x) >> 16;
      right = static_cast<int>(r.x) >> 16;
      from = std::max(left, hard_.left - state.origin.x);
      to = std::min(right, hard_.right - state.origin.x + 1);
    }
    const int n = right - left;
    if (to - from < 1) return;
    short_form_ = !patterned_ && !clipped_ && !mapped() && n <= 2;
    upper_ = upper;
    left_z_ = static_cast<std::uint16_t>(l.z >> 15);
    if (short_form_ && n == 2) {
      running_z_ = (r.z >> 1) + (l.z >> 1);
      running_set_ = true;
      pixel(left + 1, y, mean(l, r));
    }
    if (short_form_) {
      if (!running_set_) running_z_ = l.z;
      return pixel(left, y, at_edge(l));
    }
    contrast_ = patterned_ && pattern_bit(left, y);
    for (int x = from; x < to; ++x) pixel(x, y, on_span(l, r, n, x - left));
    running_z_ = bits(depth_on_span(l.z, r.z, n, n - 1, false)) << 15;
    running_set_ = true;
  }

  static Sample at_edge(const Edge& l) {
    return {static_cast<std::uint16_t>(l.z >> 15), l.u >> 16, l.v >> 16, l.v >> 16, l.rgba, 0, {}};
  }

  Sample mean(const Edge& l, const Edge& r) const {
    Sample s{static_cast<std::uint16_t>(((r.z >> 1) + (l.z >> 1)) >> 15),
             (r.u + l.u) >> 1 >> 16,
             (r.v + l.v) >> 1 >> 16,
             (r.v + l.v) >> 1 >> 16,
             {},
             1,
             {}};
    if (road == Road::plain && upper_) s.line = l.v >> 16;
    for (std::size_t k = 0; k < 4; ++k) s.rgba[k] = sum(l.rgba[k], r.rgba[k]);
    return s;
  }

  static Sample on_span(const Edge& l, const Edge& r, int n, int i) {
    const auto texel = [&](std::uint32_t a, std::uint32_t b) {
      const int step =
          line_step(difference(static_cast<int>(b >> 16), static_cast<int>(a >> 16)), n);
      return ((a & 0xFFFF0000) + 0x8000 + bits(product(i, step))) >> 16;
    };
    Sample s{depth_on_span(l.z, r.z, n, i, false), texel(l.u, r.u), texel(l.v, r.v), 0, {}, 0, {}};
    s.line = s.v;
    const auto stepped = [&](int a, int b) {
      return sum(a, product(i, span_step(difference(b, a), n)));
    };
    for (std::size_t k = 0; k < 4; ++k) s.rgba[k] = stepped(l.rgba[k], r.rgba[k]);
    for (std::size_t k = 0; k < 3; ++k)
      s.specular[k] = stepped(whole(l.specular[k]), whole(r.specular[k]));
    return s;
  }

  void pixel(int x, int y, const Sample& s) {
    auto& depth = state.depth.at<std::uint16_t>(x, y);
    if (s.z > depth) return;
    if (patterned_ && contrast_) {
      if (!opaque_) return;
      depth = s.z;
      return store_contrast(x, y);
    }
    const KT_Shared_Image_Data& image = *texture.image;
    const std::uint32_t column_mask = bits(image.width - 1), line_mask = bits(image.height - 1);
    if (texture.wrap_t != 2 && (s.v & ~line_mask) != 0) return;
    if (texture.wrap_s != 2 && (s.u & ~column_mask) != 0) return;
    const std::uint8_t* row = image.scan_lines[line_mask - (s.line & line_mask)];
    const KT_RGB32 texel = reinterpret_cast<const KT_RGB32*>(row)[s.u & column_mask];
    if (mapped()) {
      if (call.cut_out && texel.alpha == 0) return;
      depth = s.z;
      state.color.at<std::uint8_t>(x, y) = index(x, y, texel, s);
    } else {
      direct(state.color.at<KT_RGB32>(x, y), depth, texel, s);
    }
  }

  std::uint8_t index(int x, int y, KT_RGB32 texel, const Sample& s) const {
    const int channels[3] = {texel.red, texel.green, texel.blue};
    const int strides[3] = {state.cube.red_stride, state.cube.green_stride, 1};
    int result = state.cube.base_index;
    for (std::size_t k = 0; k < 3; ++k) {
      const int factor = road == Road::plain ? scale(k) * 65280 + 128 : s.rgba[k];
      const int light = sum(product(channels[k], factor), s.specular[k]);
      int q = ((light >> 8) + threshold(state, x, y)) >> 16;
      if (road == Road::lit) q = std::max(0, std::min(q, scale(k)));
      result += q * strides[k];
    }
    return static_cast<std::uint8_t>(result);
  }

  /// Stores into a pixel of direct colour that passed the depth and wrap tests.
  void direct(KT_RGB32& pixel, std::uint16_t& depth, KT_RGB32 texel, const Sample& s) const {
    const bool modulated = road == Road::modulated;
    const bool clipped_alpha = direct_alpha() && clipped_;
    if (clipped_alpha) depth = s.z;
    const auto times = [&](int channel, std::size_t k) {
      return modulated ? bits(product(channel, s.rgba[k])) >> s.halves >> 16 : bits(channel);
    };
    const std::uint32_t p[3] = {times(texel.red, 0), times(texel.green, 1), times(texel.blue, 2)};
    const auto low = [](std::uint32_t value) { return static_cast<std::uint8_t>(value); };
    const std::uint32_t a = direct_alpha() ? times(texel.alpha, 3) : 255;
    if (a == 0) return;
    if (a == 255) {
      pixel = {low(p[2]), low(p[1]), low(p[0]), modulated ? std::uint8_t{255} : texel.alpha};
    } else {
      const auto blended = [&](std::uint32_t source, std::uint8_t under) {
        const int total = sum(product(static_cast<std::int16_t>(source), static_cast<int>(a)),
                              product(under, 255 - static_cast<int>(a)));
        return static_cast<std::uint8_t>(total / 255);
      };
      pixel = {blended(p[2], pixel.blue), blended(p[1], pixel.green), blended(p[0], pixel.red),
               255};
    }
    if (!clipped_alpha) depth = stored_depth(s, a);
  }

  /// The depth that goes in for the one that was tested.
  std::uint16_t stored_depth(const Sample& s, std::uint32_t a) const {
    if (!short_form_) return s.z;
    if (variant == Variant::rgb_z) return road == Road::plain && upper_ ? left_z_ : s.z;
    if (road == Road::plain) return s.z;
    return a == 255 ? left_z_ : static_cast<std::uint16_t>(running_z_ >> 15);
  }

  void store_contrast(int x, int y) {
    if (mapped()) {
      state.color.at<std::uint8_t>(x, y) = static_cast<std::uint8_t>(material_.contrast_index);
      return;
    }
    auto& pixel = state.color.at<KT_RGB32>(x, y);
    const KT_RGB32 c = material_.contrast_color;
    if (!direct_alpha() || c.alpha == 255)
      pixel = c;
    else if (c.alpha != 0)
      pixel = blend(pixel, c, false);
  }

  /// The bit of the pattern under a span's first pixel, which stands for all of the span.
  bool pattern_bit(int x, int y) const {
    KT_User_Pattern pattern{nullptr, 8, 8, 1};
    if (face_.face_pattern == 74)
      pattern = *face_.user_pattern;
    else
      pattern.pattern_bits = KORVEL.face_pattern_table[face_.face_pattern];
    const auto wrap = [](int value, int size) { return (value % size + size) % size; };
    const int px = wrap(x - misc_.pattern_origin.x, pattern.pattern_width);
    const int py = wrap(y - misc_.pattern_origin.y, pattern.pattern_height);
    const int byte = pattern.pattern_bits[py * pattern.pattern_row_bytes + px / 8];
    return ((byte >> (px % 8) & 1) != 0) != inverted_;
  }

  const KT_Int_Rectangle& hard_;
  const KT_Material& material_;
  const KT_Face_Attributes& face_;
  const KT_Misc_Attributes& misc_;
  const bool clipped_, opaque_, inverted_, patterned_;
  // Of the span at work:
  bool short_form_ = false, upper_ = false, contrast_ = false;
  std::uint16_t left_z_ = 0;
  // Runs through the call:
  std::uint32_t running_z_ = 0;
  bool running_set_ = false;
};

}  // namespace

void Texel_Routine::scan(const Textured_Strip& strip) {
  Scan(*this, false).strip(strip);
}

void Texel_Routine::clipped_triangle(const Textured_Strip& strip) {
  Scan scan(*this, true);
  short codes[3];
  KD_Clip(safe_rectangle, 3, strip.points, codes);
  if ((codes[0] | codes[1] | codes[2]) == 0) return scan.strip(strip);
  KT_DCI_Point points[3];
  KT_RGB32 colors[3]{};
  KT_Parameter parameters[3];
  for (int i = 0; i < 3; ++i) {
    points[i] = strip.points[i];
    if (strip.colors) colors[i] = strip.colors[i];
    parameters[i] = strip.parameters[i * strip.parameter_width];
  }
  std::vector<KT_DCI_Point> list;
  std::vector<KT_RGB32> list_colors;
  std::vector<KT_Parameter> list_parameters;
  for (const Clipped_Point& p : clip_triangle(points, colors, safe_rectangle, parameters)) {
    list.push_back(p.point);
    list_colors.push_back(p.color);
    list_parameters.push_back(p.parameter);
  }
  scan.strip({static_cast<int>(list.size()), list.data(), list_colors.data(),
              list_parameters.data(), 1, nullptr});
}

}  // namespace model
