#include "tests/differential/model_small.h"

#include <algorithm>
#include <cstring>

namespace model {

bool merge_on(const State& state, const KT_Rendition& rendition) {
  return state.force_merge || rendition->misc_attributes->drawing_mode == 20;
}

bool hidden(const State& state, int x, int y) {
  return state.mask && (state.mask->rows[y][x / 8] & (128 >> (x % 8))) != 0;
}

KT_RGB32 blend_256(KT_RGB32 pixel, KT_RGB32 source) {
  const auto mix = [factor = source.alpha * 256 / 255](int s, int p) {
    return static_cast<std::uint8_t>(p + (((s - p) * factor) >> 8));
  };
  return {mix(source.blue, pixel.blue), mix(source.green, pixel.green), mix(source.red, pixel.red),
          255};
}

std::uint8_t dithered(const State& state, KT_RGB32 c, int x, int y) {
  const KT_Color_Cube& cube = state.cube;
  const int rgb[3] = {(c.red * cube.red_scale) << 8, (c.green * cube.green_scale) << 8,
                      (c.blue * cube.blue_scale) << 8};
  return dithered_index(cube, rgb, threshold(state, x, y));
}

void draw_dot(State& state, Variant v, const KT_Rendition& rendition, const KT_DCI_Point& point,
              const KT_RGB32* color) {
  const int x = point.x - state.origin.x, y = point.y - state.origin.y;
  if (!rendition->display_context->depth_enabled) v = without_depth(v);
  if (has_depth(v)) {
    auto& stored = state.depth.at<std::uint16_t>(x, y);
    const bool fixed = v == Variant::mapped_z;
    const unsigned test = fixed ? 2 : state.zbuffer_test;
    const bool passes = test == 1   ? point.z < stored
                        : test == 5 ? point.z > stored
                                    : point.z <= stored;
    if (!passes) return;
    if (fixed || state.zbuffer_write) stored = static_cast<std::uint16_t>(point.z);
  } else if (hidden(state, x, y)) {
    return;
  }
  const bool merges = !has_depth(v) && merge_on(state, rendition);
  if (is_mapped(v)) {
    auto& pixel = state.color.at<std::uint8_t>(x, y);
    const auto index = static_cast<std::uint8_t>(rendition->material->color_index);
    pixel = color    ? dithered(state, *color, x, y)
            : merges ? merge_mapped(state, pixel, index)
                     : index;
    return;
  }
  auto& pixel = state.color.at<KT_RGB32>(x, y);
  const KT_RGB32 source = color ? *color : rendition->material->color;
  pixel = merges         ? KT_RGB32::from_word(merge_rgb(state, pixel.word(), source.word()))
          : has_alpha(v) ? blend_256(pixel, source)
                         : source;
}

bool draw_markers(State& state, const KT_Rendition& rendition,
                  const std::vector<KT_DCI_Point>& points) {
  // With depth and indices there is no marker routine at all.
  if (rendition->marker_attributes->marker_symbol != 0 || state.variant == Variant::mapped_z)
    return false;
  const KT_Int_Rectangle& hard = rendition->display_context->hard_clip;
  for (const KT_DCI_Point& p : points)
    if (p.x >= hard.left && p.x <= hard.right && p.y >= hard.bottom && p.y <= hard.top)
      draw_dot(state, state.variant, rendition, p, nullptr);
  return true;
}

bool draw_image(State& state, const KT_Rendition& rendition, const Image_Call& c) {
  Variant v = state.variant;
  if (c.indices != is_mapped(v)) return false;
  const std::uint32_t bits = rendition->misc_attributes->advanced_options.bits;
  if ((bits & 8) != 0) v = with_alpha(v);
  const bool masked = static_cast<bool>(state.mask);
  const bool tests_anyway = v == Variant::rgb_alpha_z && masked;
  if (!rendition->display_context->depth_enabled && !tests_anyway) v = without_depth(v);
  const bool by_alpha = has_alpha(v) && (masked || (bits & 4) == 0);

  const int right = std::min(c.end.x, state.origin.x + state.extent.x - 1);
  if (right < c.start.x) return true;
  auto ramp = static_cast<std::uint32_t>(c.start.z) << 15 | 0x4000;
  const auto step =
      static_cast<std::uint32_t>(depth_step(difference(c.end.z, c.start.z), c.end.x - c.start.x));
  for (int row = c.start.y; row >= c.end.y; --row) {
    const std::uint8_t* source = c.bytes.data() + std::ptrdiff_t{c.start.y - row} * c.stride;
    const int y = row - state.origin.y;
    for (int column = c.start.x; column <= right; ++column) {
      const int x = column - state.origin.x, i = column - c.start.x;
      const auto z = static_cast<std::uint16_t>(ramp >> 15);
      if (column < right) ramp += step;
      if (hidden(state, x, y)) continue;
      if (has_depth(v) && z > state.depth.at<std::uint16_t>(x, y)) continue;
      if (c.indices) {
        state.color.at<std::uint8_t>(x, y) = source[i];
      } else {
        KT_RGB32 color;
        std::memcpy(&color, source + i * 4, 4);
        if (by_alpha && color.alpha == 0) continue;
        auto& pixel = state.color.at<KT_RGB32>(x, y);
        pixel = by_alpha && color.alpha != 255 ? blend(pixel, color, false) : color;
      }
      if (has_depth(v)) state.depth.at<std::uint16_t>(x, y) = z;
    }
  }
  return true;
}

std::optional<std::vector<Strip_Call>> draw_polygon(const KT_Rendition& rendition,
                                                    const Polygon_Call& c, int rank,
                                                    int edge_depth_offset) {
  using enum KT_Action;
  const KT_Face_Attributes& face = *rendition->face_attributes;
  if (face.face_pattern >= 75) return std::nullopt;
  const bool device = c.action == Draw_DC_Polygon || c.action == Draw_DCI_Polygon;
  const bool floats = c.action == Draw_2D_Polygon || c.action == Draw_DC_Polygon;
  std::vector<KT_Point> points = c.floats;
  for (const KT_DCI_Point& p : c.points)
    points.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
  const std::size_t count = points.size();

  Strip_Call strip;
  strip.action = c.color  ? device ? Draw_DC_Colorized_Polytriangle : Draw_2D_Colorized_Polytriangle
                 : device ? Draw_DC_Polytriangle
                          : Draw_2D_Polytriangle;
  strip.color = c.color;
  strip.single_color = c.color.has_value();
  const bool shifted =
      floats && edge_depth_offset != 0 && edge_depth_offset != face.face_depth_offset;
  strip.depth_offset = shifted ? edge_depth_offset : face.face_depth_offset;
  strip.same_rendition = !shifted;

  std::vector<Strip_Call> strips;
  const auto add = [&](std::vector<KT_Point_D> corners) {
    strip.points = std::move(corners);
    strips.push_back(strip);
  };
  const auto exact = [](const auto& p) {
    return KT_Point_D{static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
  };
  if (count < 3) return strips;
  if (count == 3 && floats) {
    add({exact(points[0]), exact(points[1]), exact(points[2])});
  } else if (count == 3) {
    strip.action = c.color
                       ? device ? Draw_DCI_Colorized_Polytriangle : Draw_2DI_Colorized_Polytriangle
                   : device ? Draw_DCI_Polytriangle
                            : Draw_2DI_Polytriangle;
    strip.single_color = false;
    add({exact(c.points[0]), exact(c.points[1]), exact(c.points[2])});
  } else if (floats && count <= 64 && rank == 0) {
    std::vector<KT_Point_D> corners{exact(points[0])};
    for (std::size_t low = 1, high = count - 1; low <= high; ++low, --high) {
      corners.push_back(exact(points[low]));
      if (high > low) corners.push_back(exact(points[high]));
    }
    add(corners);
  } else {
    KT_Contour_Set contour(static_cast<int>(count), points.data(), false);
    contour.writable().force_projection({0, 0, 1});
    const auto triangle = [](const KT_Point* p, const KT_Point* q, const KT_Point* r, void* adds) {
      const auto corner = [](const KT_Point* v) { return KT_Point_D{v->x, v->y, v->z}; };
      (*static_cast<decltype(add)*>(adds))({corner(p), corner(q), corner(r)});
    };
    contour->triangulate(triangle, const_cast<void*>(static_cast<const void*>(&add)));
  }
  return strips;
}

}  // namespace model
