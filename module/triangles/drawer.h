// Draws single triangles of one member: makes corners from points, picks the paint for a colour
// and sends both through the walk.
#pragma once

#include "module/pixels/merge.h"
#include "module/triangles/spans.h"
#include "module/triangles/strip.h"

namespace zbuffer {

/// Everything of a call that its triangles share.
struct Call_Context {
  const Software_Z_Buffer& renderer;
  const KT_Material& material;
  Frame frame;
  std::int32_t depth_offset;
  bool merging;

  explicit Call_Context(const Strip& strip, bool merge)
      : renderer(strip.renderer),
        material(strip.material()),
        frame(strip.renderer),
        depth_offset(strip.face().face_depth_offset),
        merging(merge) {}
};

template <Member member, class Limits, class Cover, class Gate>
class Drawer {
 public:
  Drawer(const Call_Context& context, const Limits& limits, const Cover& cover)
      : context_(context), limits_(limits), cover_(cover) {}

  /// A flat triangle of a mapped variant.
  void flat(const KT_DCI_Point* points) const {
    const auto index = static_cast<std::uint8_t>(context_.material.color_index);
    const Constant_Source<std::uint8_t> source{index};
    if (merges<Merge_Rule::all>()) {
      const Mapped_Merge merge(context_.renderer);
      return walk(
          points, nullptr,
          Paint{source, Mapped_Merge_Store{merge}, Mapped_Merge_Contrast{merge, contrast_index()}});
    }
    walk(points, nullptr, Paint{source, Replace{}, Index_Contrast{contrast_index()}});
  }

  /// A triangle of one direct colour.
  void colorized(const KT_DCI_Point* points, KT_RGB32 color) const {
    const std::uint32_t word = color.word();
    const Constant_Source<std::uint32_t> source{word};
    const bool opaque = alpha_of(word) == 255;
    if (merges<Merge_Rule::all>() || (merges<Merge_Rule::opaque_triangles>() && opaque)) {
      const Rgb_Merge merge(context_.renderer);
      return walk(points, nullptr,
                  Paint{source, Merge_Store{merge}, Merge_Contrast{merge, contrast_word()}});
    }
    constexpr Alpha_Rule rule = alpha_rules.ordinary;
    if (rule == Alpha_Rule::store || opaque) {
      return walk(points, nullptr, Paint{source, Replace{}, mixed_contrast()});
    }
    walk(points, nullptr, Paint{source, Mix_Store{Mix(word, rule)}, mixed_contrast()});
  }

  /// A triangle of one colour, dithered by candidates.
  void dithered(const KT_DCI_Point* points, const Dithered_Color& color) const {
    walk(points, nullptr,
         Paint{Dithered_Source{color}, Replace{}, Index_Contrast{contrast_index()}});
  }

  /// A triangle of one colour, dithered at each pixel.
  void dithered_by_pixel(const KT_DCI_Point* points, const Rounded_Dither_Source& source) const {
    if (merges<Merge_Rule::ordinary>()) {
      return walk(points, nullptr,
                  Paint{source, Mapped_Merge_Store{Mapped_Merge(context_.renderer)},
                        Index_Contrast{contrast_index()}});
    }
    walk(points, nullptr, Paint{source, Replace{}, Index_Contrast{contrast_index()}});
  }

  /// A triangle with a colour a point.
  void gouraud(const KT_DCI_Point* points, const KT_RGB32* colors) const {
    if constexpr (is_mapped(member.variant)) {
      const Gouraud_Dither_Source source{Cube(context_.renderer.color_cube)};
      walk(points, colors, Paint{source, Replace{}, Index_Contrast{contrast_index()}});
    } else if constexpr (alpha_rules.ordinary == Alpha_Rule::store) {
      walk(points, colors, Paint{Gouraud_Source{}, Replace{}, mixed_contrast()});
    } else {
      walk(points, colors,
           Paint{Gouraud_Alpha_Source{}, Blend_Source<alpha_rules.ordinary>{}, mixed_contrast()});
    }
  }

 private:
  static constexpr Alpha_Rules alpha_rules = the_rule(rules::alpha_rules, member);
  static constexpr Short_Spans short_spans = the_rule(rules::short_span_rules, member);

  template <Merge_Rule rule>
  bool merges() const {
    if constexpr (the_rule(rules::merge_rules, member) == rule) {
      return context_.merging;
    } else {
      return false;
    }
  }

  std::uint8_t contrast_index() const {
    return static_cast<std::uint8_t>(context_.material.contrast_index);
  }
  std::uint32_t contrast_word() const { return context_.material.contrast_color.word(); }
  Mix_Contrast mixed_contrast() const { return {Mix(contrast_word(), alpha_rules.contrast)}; }

  template <class Paint_Type>
  void walk(const KT_DCI_Point* points, const KT_RGB32* colors, const Paint_Type& paint) const {
    using Drawn = Span<Cover, Gate, Paint_Type, short_spans>;
    using Kinds = typename Drawn::Kinds;
    std::array<Vertex<Kinds>, 3> corners;
    for (std::size_t i = 0; i < 3; ++i) {
      corners[i] = corner<Drawn>(points[i], colors ? colors + i : nullptr, paint);
    }
    Drawn span(context_.frame, cover_, paint);
    walk_triangle(sorted(corners), limits_, span);
  }

  template <class Drawn, class Paint_Type>
  auto corner(const KT_DCI_Point& point, const KT_RGB32* color, const Paint_Type& paint) const {
    Vertex<typename Drawn::Kinds> made;
    const KT_Int_XY origin = context_.frame.origin;
    made.y = wrapped_difference(point.y, origin.y);
    made.value[0] = wrapped_difference(point.x, origin.x);
    if constexpr (Gate::tests) made.value[depth_lane] = wrapped_sum(point.z, context_.depth_offset);
    constexpr std::size_t lane = Drawn::first_paint_lane;
    constexpr std::size_t channels = Paint_Type::Source::Kinds::count;
    if constexpr (channels > 0) {
      Channels at{color->red, color->green, color->blue};
      if constexpr (is_mapped(member.variant)) at = paint.source.cube.scaled(*color);
      made.value[lane] = at.red;
      made.value[lane + 1] = at.green;
      made.value[lane + 2] = at.blue;
    }
    if constexpr (channels > 3) made.value[lane + 3] = color->alpha;
    return made;
  }

  const Call_Context& context_;
  const Limits& limits_;
  const Cover& cover_;
};

}  // namespace zbuffer
