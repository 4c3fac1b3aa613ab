// Triangle strips, plain and textured, and polygons for the gallery.

#include <array>
#include <cmath>
#include <numbers>
#include <type_traits>
#include <vector>

#include "apps/commands/gallery_families.h"

namespace kv {
namespace {

using Points = std::vector<KT_Point>;
using Pixels = std::vector<KT_DCI_Point>;
using Colors = std::vector<KT_RGB32>;

void set_pattern(Brush& brush, int pattern) {
  brush.rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern = pattern;
}

// Five triangles that zigzag across the cell, the last one with a level side.
Points zigzag(const Brush& brush) {
  return {brush.at(0.06f, 0.12f), brush.at(0.14f, 0.90f), brush.at(0.38f, 0.22f),
          brush.at(0.52f, 0.94f), brush.at(0.72f, 0.08f), brush.at(0.90f, 0.80f),
          brush.at(0.94f, 0.08f)};
}

void flat(Brush& brush) {
  const Points points = zigzag(brush);
  brush.call_list<KT_Action::Draw_2D_Polytriangle>(points);
}

void colorized(Brush& brush) {
  const Points points = zigzag(brush);
  const Colors colors = brush.colors(points.size() - 2);
  brush.call_list<KT_Action::Draw_2D_Colorized_Polytriangle>(points, colors.data(), false);
}

void gouraud(Brush& brush) {
  const Points points = zigzag(brush);
  const Colors colors = brush.colors(points.size());
  brush.call_list<KT_Action::Draw_2D_Gouraud_Polytriangle>(points, colors.data());
}

void hatched(Brush& brush) {
  set_pattern(brush, KT_Face_Attributes::first_standard + 5);
  gouraud(brush);
}

void edges(Brush& brush) {
  brush.add_option(KT_Advanced_Options::edge_bit);
  gouraud(brush);
}

constexpr Primitive triangle_list[] = {{"flat", flat},
                                       {"colorized", colorized},
                                       {"Gouraud", gouraud},
                                       {"hatch of the framework", hatched},
                                       {"edges of a strip", edges}};

constexpr int texture_side = 16;

// Squares in two colours with a rim, so that directions can be told apart.
KT_Shared_Image checkered(std::uint8_t alpha) {
  std::vector<KT_RGB32> texels;
  for (int y = 0; y < texture_side; ++y)
    for (int x = 0; x < texture_side; ++x) {
      const bool dark = (x / 4 + y / 4) % 2 != 0;
      KT_RGB32 texel = dark ? KT_RGB32{160, 60, 30, alpha} : KT_RGB32{190, 235, 250, alpha};
      if (y == 0) texel = {0, 0, 230, alpha};
      if (x == 0) texel = {0, 170, 0, alpha};
      texels.push_back(texel);
    }
  return KT_Shared_Image(texture_side, texture_side, KT_Image_Format::rgb32, 4 * texture_side,
                         texels.data(), false);
}

struct Texturing {
  std::uint32_t wrap = KT_Texture_Wrap::tile;
  bool modulate = false;
  bool perspective = false;
  float repeats = 2;
};

void draw_textured(Brush& brush, const Texturing& texturing) {
  const std::array points = {brush.at(0.08f, 0.10f), brush.at(0.16f, 0.92f), brush.at(0.92f, 0.20f),
                             brush.at(0.84f, 0.84f)};
  const float n = texturing.repeats;
  const std::array<KT_Parameter, 4> places = {{{0, 0, 0}, {0, n, 0}, {n, 0, 0}, {n, n, 0}}};
  const float far_w = texturing.perspective ? 4.0f : 1.0f;
  const std::array<float, 4> w = {1, 1, far_w, far_w};
  const Colors colors = brush.colors(points.size());
  brush.rendition.edit(&KT_Rendition_Data::material).basic_material = KD_Textured_Material(
      checkered(colors[0].alpha), texturing.wrap, texturing.wrap, texturing.modulate, false);
  if (texturing.perspective)
    brush.rendition.edit(&KT_Rendition_Data::misc_attributes).texture_options =
        KT_Misc_Attributes::perspective_bit;
  brush.call_list<KT_Action::Draw_2D_Textured_Polytriangle>(
      points, colors.data(), places.data(), 1, w.data(), static_cast<const KT_Vector*>(nullptr));
}

constexpr Primitive texture_list[] = {
    {"tiled", [](Brush& brush) { draw_textured(brush, {}); }},
    {"tiled, modulated", [](Brush& brush) { draw_textured(brush, {.modulate = true}); }},
    {"tiled, in perspective", [](Brush& brush) { draw_textured(brush, {.perspective = true}); }},
    {"nothing beyond the image",
     [](Brush& brush) { draw_textured(brush, {.wrap = KT_Texture_Wrap::none, .repeats = 1.3f}); }},
    {"border goes on",
     [](Brush& brush) { draw_textured(brush, {.wrap = KT_Texture_Wrap::clamp, .repeats = 1.3f}); }},
    {"mirrored", [](Brush& brush) { draw_textured(brush, {.wrap = KT_Texture_Wrap::mirror}); }}};

template <class Point>
std::vector<Point> ring(const Brush& brush, int corners, float inner_radius) {
  std::vector<Point> points;
  for (int i = 0; i < corners; ++i) {
    const float radius = i % 2 == 0 ? 0.45f : inner_radius;
    const float angle =
        2 * std::numbers::pi_v<float> * static_cast<float>(i) / static_cast<float>(corners);
    const float u = 0.5f + radius * std::sin(angle), v = 0.5f + radius * std::cos(angle);
    if constexpr (std::is_same_v<Point, KT_Point>)
      points.push_back(brush.at(u, v));
    else
      points.push_back(brush.pixel_at(u, v));
  }
  return points;
}

constexpr const KT_RGB32* no_color = nullptr;

void convex(Brush& brush) {
  const Points points = ring<KT_Point>(brush, 7, 0.45f);
  brush.call_list<KT_Action::Draw_2D_Polygon>(points, no_color);
}

void star(Brush& brush) {
  const Points points = ring<KT_Point>(brush, 10, 0.18f);
  brush.call_list<KT_Action::Draw_2D_Polygon>(points, no_color);
}

void colored_star(Brush& brush) {
  const Pixels points = ring<KT_DCI_Point>(brush, 14, 0.22f);
  const KT_RGB32 color = brush.color(1);
  brush.call_list<KT_Action::Draw_2DI_Polygon>(points, &color);
}

void many_corners(Brush& brush) {
  const Pixels points = ring<KT_DCI_Point>(brush, 100, 0.36f);
  brush.call_list<KT_Action::Draw_2DI_Polygon>(points, no_color);
}

void hatched_star(Brush& brush) {
  set_pattern(brush, KT_Face_Attributes::first_standard + 2);
  star(brush);
}

constexpr Primitive polygon_list[] = {{"convex", convex},
                                      {"concave", star},
                                      {"concave, whole pixels, coloured", colored_star},
                                      {"a hundred corners", many_corners},
                                      {"hatch of the framework", hatched_star}};

}  // namespace

std::span<const Primitive> triangle_primitives() {
  return triangle_list;
}

std::span<const Primitive> texture_primitives() {
  return texture_list;
}

std::span<const Primitive> polygon_primitives() {
  return polygon_list;
}

void draw_backdrop(Brush& brush, float left, float right, float bottom, float top) {
  constexpr float depth = 32768;
  std::array points = {brush.at(left, bottom), brush.at(left, top), brush.at(right, bottom),
                       brush.at(right, top)};
  for (KT_Point& point : points) point.z = depth;
  brush.call_list<KT_Action::Draw_2D_Polytriangle>(points);
}

}  // namespace kv
