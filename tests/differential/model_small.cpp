// Reference model of markers, images and polygons, in device coordinates. A call that comes down to
// other calls gives these as events, in order.
#include "tests/differential/model_small.h"

#include <algorithm>
#include <cstring>

namespace model {

Events draw_markers(State& state, const KT_Rendition& rendition,
                    const std::vector<KT_DCI_Point>& points) {
  // With depth and indices there is no marker routine at all.
  if (rendition->marker_attributes->marker_symbol != 0 || state.variant == mapped_z)
    return {call_line(KT_Action::Draw_2DI_Polymarker, rendition, static_cast<int>(points.size()),
                      points.data(), nullptr)};
  const KT_Int_Rectangle& hard = rendition->display_context->hard_clip;
  for (const KT_DCI_Point& p : points)
    if (p.x >= hard.left && p.x <= hard.right && p.y >= hard.bottom && p.y <= hard.top)
      draw_dot(state, state.variant, *rendition, p, nullptr);
  return {};
}

Events draw_image(State& state, const KT_Rendition& rendition, const Image_Call& c) {
  Variant v = state.variant;
  if (c.indices != is_mapped(v))
    return {line(c.indices ? "Draw_DCI_Index8_Image" : "Draw_DCI_RGB32_Image", c.start, c.end,
                 c.stride, static_cast<const void*>(c.bytes.data()))};
  const std::uint32_t advanced = rendition->misc_attributes->advanced_options.bits;
  if ((advanced & 8) != 0) v = with_alpha(v);
  const bool tests_anyway = v == rgb_alpha_z && state.mask;
  if (!rendition->display_context->depth_enabled && !tests_anyway) v = without_depth(v);
  const bool by_alpha = has_alpha(v) && (state.mask || (advanced & 4) == 0);

  const int right = std::min(c.end.x, state.origin.x + state.extent.x - 1);
  if (right < c.start.x) return {};
  std::uint32_t ramp = bits(c.start.z) << 15 | 0x4000;
  const int step = depth_step(difference(c.end.z, c.start.z), c.end.x - c.start.x);
  for (int row = c.start.y; row >= c.end.y; --row) {
    const std::uint8_t* source = c.bytes.data() + std::ptrdiff_t{c.start.y - row} * c.stride;
    const int y = row - state.origin.y;
    for (int column = c.start.x; column <= right; ++column) {
      const int x = column - state.origin.x, i = column - c.start.x;
      const auto z = static_cast<std::uint16_t>(ramp >> 15);
      if (column < right) ramp += bits(step);
      if (state.hidden(x, y)) continue;
      if (has_depth(v) && z > state.depth.at<std::uint16_t>(x, y)) continue;
      if (c.indices) {
        state.color.at<std::uint8_t>(x, y) = source[i];
      } else {
        KT_RGB32 color;
        std::memcpy(&color, source + i * 4, 4);
        if (by_alpha && color.alpha == 0) continue;
        auto& pixel = state.color.at<KT_RGB32>(x, y);
        pixel = by_alpha && color.alpha != 255 ? blend(pixel, color) : color;
      }
      if (has_depth(v)) state.depth.at<std::uint16_t>(x, y) = z;
    }
  }
  return {};
}

Events draw_polygon(const KT_Rendition& callers, const Polygon_Call& c, int rank, int edge_offset) {
  using enum KT_Action;
  Events events;
  const int layer = static_cast<int>(c.action) - static_cast<int>(Draw_2D_Polygon);
  const bool floats = layer < 2;
  const KT_RGB32* color = c.color ? &*c.color : nullptr;
  KT_Rendition rendition = callers;
  // Calls an action of the polygon's layer, or of the float layer for a polygon of whole points.
  const auto call = [&](KT_Action plain, const auto& points, int of_layer, bool single) {
    const int action = static_cast<int>(plain) + of_layer;
    events.push_back(call_line(static_cast<KT_Action>(action), rendition,
                               static_cast<int>(points.size()), points.data(), color, single));
  };
  if (callers->face_attributes->face_pattern >= 75) {
    floats ? call(Draw_2D_Polygon, c.floats, layer, false)
           : call(Draw_2D_Polygon, c.points, layer, false);
    return events;
  }
  const int offset = callers->face_attributes->face_depth_offset;
  if (floats && edge_offset != 0 && edge_offset != offset)
    rendition.edit(&KT_Rendition_Data::face_attributes).face_depth_offset = edge_offset;
  const KT_Action strip = color ? Draw_2D_Colorized_Polytriangle : Draw_2D_Polytriangle;
  std::vector<KT_Point> points = c.floats;
  for (const KT_DCI_Point& p : c.points)
    points.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
  const std::size_t n = points.size();
  if (n < 3) return events;
  if (n == 3 && !floats) {
    call(strip, c.points, layer, false);
    return events;
  }
  const auto call_strip = [&](const std::vector<KT_Point>& corners) {
    call(strip, corners, layer % 2, color != nullptr);
  };
  if (floats && n >= 4 && n <= 64) events.push_back(line("rank", n));
  if (n == 3 || (floats && n <= 64 && rank == 0)) {
    std::vector<KT_Point> corners;
    for (std::size_t i = 0; i < n; ++i)
      corners.push_back(points[i % 2 == 1 ? (i + 1) / 2 : (n - i / 2) % n]);
    call_strip(corners);
    return events;
  }
  KT_Contour_Set contour(static_cast<int>(n), points.data(), false);
  contour.writable().force_projection({0, 0, 1});
  const auto triangle = [](const KT_Point* p, const KT_Point* q, const KT_Point* r, void* adds) {
    (*static_cast<decltype(call_strip)*>(adds))({*p, *q, *r});
  };
  contour->triangulate(triangle, const_cast<void*>(static_cast<const void*>(&call_strip)));
  return events;
}

}  // namespace model
