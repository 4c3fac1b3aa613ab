// The primitives of the gallery, by families.
#pragma once

#include <span>
#include <string_view>

#include "apps/commands/gallery_brush.h"

namespace kv {

struct Primitive {
  std::string_view name;
  void (*draw)(Brush& brush);
};

struct Family {
  std::string_view name;  // of its sheet
  std::span<const Primitive> (*primitives)();
};

std::span<const Primitive> triangle_primitives();
std::span<const Primitive> texture_primitives();
std::span<const Primitive> line_primitives();
std::span<const Primitive> marker_primitives();
std::span<const Primitive> polygon_primitives();
std::span<const Primitive> image_primitives();

inline constexpr Family gallery_families[] = {
    {"triangles", triangle_primitives}, {"textures", texture_primitives},
    {"lines", line_primitives},         {"markers", marker_primitives},
    {"polygons", polygon_primitives},   {"images", image_primitives}};

// A rectangle in one colour and depth, farther or nearer than a primitive.
void draw_backdrop(Brush& brush, float left, float right, float bottom, float top);

}  // namespace kv
