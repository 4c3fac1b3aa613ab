// Draws single triangles of one member: makes corners from points, picks the paint for a colour
// and sends both through the walk.
#pragma once

#include "module/core/call.h"
#include "module/pixels/blends.h"
#include "module/pixels/merge.h"
#include "module/raster/walk.h"
#include "module/triangles/paint.h"
#include "module/triangles/rules.h"
#include "module/triangles/sources.h"
#include "module/triangles/spans.h"

namespace zbuffer::triangles {

/// The rules of a member, looked up once.
template <Member its_member>
struct Pipeline {
  static constexpr Member member = its_member;
  static constexpr Depth_Rule depth = rules::depth(member);
  static constexpr Merge_Rule merge = rules::merge(member);
  static constexpr Alpha_Rules alpha = rules::alpha(member);
  static constexpr Short_Spans short_spans = rules::short_spans(member);

  static auto limits(const Call& call) {
    if constexpr (member.path == Path::clipped) {
      return Hard_Clip(call.display_context().hard_clip, call.renderer.device_origin);
    } else if constexpr (rules::rows(member) == Row_Rule::guarded) {
      return Row_Guard(call.renderer.window_extent.y);
    } else {
      return Trusted{};
    }
  }
  using Limits = decltype(limits(std::declval<const Call&>()));

  static bool merging(const Call& call) {
    return merge != Merge_Rule::never && merge_on(call.renderer, call.rendition);
  }
};

template <class Pipeline, class Bits, class Test>
class Drawer {
 public:
  Drawer(const Call& call, const Bits& bits)
      : renderer_(call.renderer),
        material_(call.material()),
        frame_(call.renderer),
        depth_offset_(call.face().face_depth_offset),
        merging_(Pipeline::merging(call)),
        limits_(Pipeline::limits(call)),
        bits_(bits) {}

  /// A triangle in the rendition's index.
  void flat(const KT_DCI_Point* points) const {
    const Constant_Source<std::uint8_t> source{static_cast<std::uint8_t>(material_.color_index)};
    if (merges<Merge_Rule::all>()) {
      const Mapped_Merge merge(renderer_);
      return walk(points, nullptr, Paint{source, merge, Contrast{merge, contrast_index()}});
    }
    walk(points, nullptr, Paint{source, Replace{}, Contrast{Replace{}, contrast_index()}});
  }

  /// A triangle of one direct colour.
  void colorized(const KT_DCI_Point* points, KT_RGB32 color) const {
    const std::uint32_t word = color.word();
    const Constant_Source<std::uint32_t> source{word};
    const bool opaque = alpha_of(word) == 255;
    if (merges<Merge_Rule::all>() || (merges<Merge_Rule::opaque_triangles>() && opaque)) {
      const Rgb_Merge merge(renderer_);
      return walk(points, nullptr, Paint{source, merge, Contrast{merge, contrast_word()}});
    }
    constexpr Alpha_Rule rule = Pipeline::alpha.ordinary;
    if (rule == Alpha_Rule::store || opaque) {
      return walk(points, nullptr, Paint{source, Replace{}, direct_contrast()});
    }
    walk(points, nullptr, Paint{source, Constant_Blend_255(word, rule), direct_contrast()});
  }

  /// A triangle of one colour, dithered by candidates.
  void dithered(const KT_DCI_Point* points, const Dithered_Color& color) const {
    walk(points, nullptr,
         Paint{Dithered_Source{color}, Replace{}, Contrast{Replace{}, contrast_index()}});
  }

  /// A triangle of one colour, dithered at each pixel.
  void dithered_by_pixel(const KT_DCI_Point* points, KT_RGB32 color) const {
    const Rounded_Dither_Source source(Cube(renderer_.color_cube), color);
    const Contrast contrast{Replace{}, contrast_index()};
    if (merges<Merge_Rule::ordinary>()) {
      return walk(points, nullptr, Paint{source, Mapped_Merge(renderer_), contrast});
    }
    walk(points, nullptr, Paint{source, Replace{}, contrast});
  }

  /// A triangle with a colour a point.
  void gouraud(const KT_DCI_Point* points, const KT_RGB32* colors) const {
    if constexpr (is_mapped(Pipeline::member.variant)) {
      const Gouraud_Dither_Source source{Cube(renderer_.color_cube)};
      walk(points, colors, Paint{source, Replace{}, Contrast{Replace{}, contrast_index()}});
    } else if constexpr (Pipeline::alpha.ordinary == Alpha_Rule::store) {
      walk(points, colors, Paint{Gouraud_Source{}, Replace{}, direct_contrast()});
    } else {
      walk(points, colors,
           Paint{Gouraud_Alpha_Source{}, Source_Blend_255<Pipeline::alpha.ordinary>{},
                 direct_contrast()});
    }
  }

 private:
  template <Merge_Rule rule>
  bool merges() const {
    return Pipeline::merge == rule && merging_;
  }

  std::uint8_t contrast_index() const {
    return static_cast<std::uint8_t>(material_.contrast_index);
  }
  std::uint32_t contrast_word() const { return material_.contrast_color.word(); }
  auto direct_contrast() const {
    return Contrast{Constant_Blend_255(contrast_word(), Pipeline::alpha.contrast), contrast_word()};
  }

  template <class Paint_Type>
  void walk(const KT_DCI_Point* points, const KT_RGB32* colors, const Paint_Type& paint) const {
    using Drawn = Span<Bits, Test, Paint_Type, Pipeline::short_spans>;
    std::array<Vertex<typename Drawn::Values>, 3> corners;
    for (std::size_t i = 0; i < 3; ++i) {
      corners[i] = corner<Drawn>(points[i], colors ? colors + i : nullptr, paint);
    }
    Drawn span(frame_, bits_, paint);
    walk_triangle(sorted(corners), limits_, span);
  }

  template <class Drawn, class Paint_Type>
  auto corner(const KT_DCI_Point& point, const KT_RGB32* color, const Paint_Type& paint) const {
    Vertex<typename Drawn::Values> made;
    made.y = wrapped_difference(point.y, frame_.origin.y);
    made.value[0] = wrapped_difference(point.x, frame_.origin.x);
    if constexpr (Test::tests) made.value[at_depth] = wrapped_sum(point.z, depth_offset_);
    constexpr std::size_t first = Drawn::first_of_paint;
    constexpr std::size_t channels = Paint_Type::Source::Values::count;
    if constexpr (channels > 0) {
      Channels at{color->red, color->green, color->blue};
      if constexpr (is_mapped(Pipeline::member.variant)) at = paint.source.cube.scaled(*color);
      made.value[first] = at.red;
      made.value[first + 1] = at.green;
      made.value[first + 2] = at.blue;
    }
    if constexpr (channels > 3) made.value[first + 3] = color->alpha;
    return made;
  }

  const Software_Z_Buffer& renderer_;
  const KT_Material& material_;
  Frame frame_;
  std::int32_t depth_offset_;
  bool merging_;
  typename Pipeline::Limits limits_;
  const Bits& bits_;
};

}  // namespace zbuffer::triangles
