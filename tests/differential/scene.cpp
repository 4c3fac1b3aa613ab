// Random settings and strips. The order of the questions to `Random` makes a call what it is: a
// change of it gives every seed another call.
#include "tests/differential/scene.h"

#include <cstring>

#include "host/application.h"
#include "tests/differential/events.h"
#include "tests/differential/model_clipper.h"

namespace fuzz {
namespace {

using model::Layer;
using model::line;

KT_RGB32 random_color(Random& random) {
  const auto byte = [&] {
    return random.once_in(4) ? random.pick<std::uint8_t>({0, 1, 254, 255}) : random.byte();
  };
  const std::uint8_t alpha =
      random.pick<std::uint8_t>({0, 255, 255, random.byte(1, 254), random.byte(1, 254)});
  return {byte(), byte(), byte(), alpha};
}

/// `color` with red, green and blue moved by up to `most`.
KT_RGB32 nearby(Random& random, KT_RGB32 color, int most) {
  for (std::uint8_t* c : {&color.blue, &color.green, &color.red})
    *c = static_cast<std::uint8_t>(std::clamp(*c + random.range(-most, most), 0, 255));
  return color;
}

KT_Palette random_palette(Random& random) {
  static const KT_Palette standard = KD_Cube_Palette();
  if (!random.once_in(4)) return standard;
  std::array<KT_RGB32, 256> colors;
  for (KT_RGB32& color : colors) color = random_color(random);
  KT_Color_Cube cube({6, 6, 6}, 1.0f, 0);
  cube.base_index = random.byte();
  for (std::int32_t* stride : {&cube.red_stride, &cube.green_stride, &cube.blue_stride})
    *stride = random.range(-40, 100);
  if (random.once_in(2)) cube.blue_stride = 1;
  for (std::int32_t* scale : {&cube.red_scale, &cube.green_scale, &cube.blue_scale})
    *scale = random.range(0, 128);
  return {colors.data(), 256, random.once_in(4) ? nullptr : &cube};
}

/// A float that rounds to `value`, as likely as not with a fraction.
float around(Random& random, int value) {
  const float fraction = random.pick({0.0f, 0.0f, 0.25f, -0.5f, 0.49f, -0.49f});
  const float moved = static_cast<float>(value) + fraction;
  return model::rounded(moved) == value ? moved : static_cast<float>(value);
}

void make_floats(Random& random, model::Strip_Points& strip, bool far) {
  for (const KT_DCI_Point& p : strip.points) {
    const float x = around(random, p.x), y = around(random, p.y);
    strip.floats.push_back({x, y, around(random, p.z)});
  }
  if (far && strip.layer == Layer::p2d && random.once_in(10)) {
    KT_Point& p = strip.floats[static_cast<std::size_t>(random.range(0, strip.count() - 1))];
    p.x = random.pick({3e9f, -3e9f, 1e20f, 2147483648.0f});
    if (random.once_in(2)) p.y = random.pick({3e9f, -1e12f});
  }
  strip.points.clear();
}

}  // namespace

KT_Int_Rectangle grown(const KT_Int_Rectangle& r, int by) {
  return {r.left - by, r.right + by, r.bottom - by, r.top + by};
}

KT_DCI_Point point_in(Random& random, const KT_Int_Rectangle& r) {
  return {random.range(r.left, r.right), random.range(r.bottom, r.top), 0};
}

model::Strip_Points random_strip(Random& random, Layer layer, int count,
                                 const KT_Int_Rectangle& hard, bool far) {
  model::Strip_Points strip{layer, {}, {}};
  const bool inside = model::is_inside(layer);
  const int reach = inside ? 0 : random.pick({0, 1, 2, 2, 3, 3, 4, far ? 5 : 4});
  const bool all_far = reach > 3 && random.once_in(2);
  const int z_base = random.range(0, 65535);
  const int z_spread = random.pick({0, 3, 500, 65535, 65535});
  const bool wild_depth = far && random.once_in(25);
  const KT_Int_Rectangle areas[] = {hard,
                                    grown(hard, 3),
                                    grown(hard, 60),
                                    {-4100, 28800, -4100, 28800},
                                    {-40000, 40000, -40000, 40000},
                                    {-2000000000, 2000000000, -2000000000, 2000000000}};
  for (int i = 0; i < count; ++i) {
    const int farthest = all_far             ? reach
                         : random.once_in(2) ? random.range(0, reach)
                                             : std::min(reach, 2);
    KT_DCI_Point p = point_in(random, areas[farthest]);
    if (farthest == 4 && random.once_in(2))
      p = {random.pick({-1, 1}) * random.range(29000, 90000),
           random.pick({-1, 1}) * random.range(29000, 90000), 0};
    if (i > 0 && random.once_in(3)) {
      const KT_DCI_Point& before = strip.points.back();
      const bool wide = reach > 2;
      const int x = before.x, y = before.y, part = random.pick({12, 20, 50});
      p = random.pick<KT_DCI_Point>(
          {before,
           {p.x, y},
           {x, p.y},
           {wide ? -8000 - x : p.x, p.y},  // the edge is cut at -4000 in its very middle
           {wide && x < -4100 ? std::min(-4000 - (x + 4000) / part, 3000) : p.x, p.y},  // its end
           {x + random.range(-2, 2), y + random.range(-8, 8)}});
      if (inside) p.x = std::clamp(p.x, hard.left, hard.right);
      if (inside) p.y = std::clamp(p.y, hard.bottom, hard.top);
    }
    if (i > 1 && random.once_in(6)) p.y = strip.points[static_cast<std::size_t>(i) - 2].y;
    p.z = std::clamp(z_base + random.range(-z_spread, z_spread), 0, 65535);
    if (random.once_in(20)) p.z = random.pick({0, 65535});
    if (wild_depth) p.z = random.range(-2000000000, 2000000000);
    strip.points.push_back(p);
  }
  if (layer < Layer::p2di) make_floats(random, strip, far);
  return strip;
}

Scene::Scene(std::uint64_t number, Random& random) : seed(number) {
  make_window(random);
  const KT_Int_XY o = origin();
  const KT_Int_Rectangle window{o.x, o.x + size.x - 1, o.y, o.y + size.y - 1};
  rendition = KD_Default_Rendition(window);
  auto& hard = rendition.edit(&KT_Rendition_Data::display_context).hard_clip = window;
  if (random.once_in(3)) {
    const KT_DCI_Point a = point_in(random, window), b = point_in(random, window);
    hard = {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)};
  }
  make_attributes(random);
  make_mask(random, window);
  const KT_RGB32 base = random_color(random);
  const int closeness = random.pick({0, 2, 3, 4, 255});
  for (int i = 0; i < 70; ++i) {
    colors.push_back(random.once_in(5) ? random_color(random) : nearby(random, base, closeness));
    if (random.once_in(4)) colors.back().alpha = random_color(random).alpha;
  }
}

void Scene::make_window(Random& random) {
  variant = static_cast<model::Variant>(random.range(0, 5));
  size.x = random.range(1, random.once_in(10) ? 300 : 70);
  size.y = random.range(1, 50);
  const int reach = random.pick({0, 0, 0, 0, 100, 100, 100, 3000});
  window_origin = {random.range(-reach, reach), random.range(-reach, reach)};
  local = random.once_in(8);
  if (random.once_in(2)) color_padding = random.range(0, 5) * (model::is_mapped(variant) ? 1 : 4);
  if (random.once_in(2)) depth_padding = random.range(0, 5) * 2;
  palette = random_palette(random);
  if (random.once_in(3))
    for (int& channel : merge_key) channel = random.pick({0, 255, 300, random.range(0, 255)});
  if (random.once_in(2)) zbuffer_test = static_cast<unsigned>(random.range(0, 6));
  zbuffer_write = random.once_in(3) ? 0 : random.byte(1);
}

void Scene::make_attributes(Random& random) {
  rendition.edit(&KT_Rendition_Data::display_context).depth_enabled =
      random.once_in(6) ? 0 : random.byte(1);
  auto& material = rendition.edit(&KT_Rendition_Data::material);
  material.color = random_color(random);
  material.contrast_color = random_color(random);
  material.color_index = random.byte();
  if (material.color_index < 24) {
    material.color_index = palette.closest_match(key(), false) & 255;
    material.color = key();
  }
  material.contrast_index = random.byte();

  auto& face = rendition.edit(&KT_Rendition_Data::face_attributes);
  auto& misc = rendition.edit(&KT_Rendition_Data::misc_attributes);
  face.face_depth_offset = random.pick({0, 0, 0, random.range(-100, 100), -70000});
  misc.pattern_options = random.byte(0, 1);
  if (random.once_in(2)) {
    face.face_pattern = random.pick({0, 74, 74, 74, 64, random.range(1, 73), random.range(1, 73)});
    misc.pattern_options = random.byte(0, 3);
    if (random.once_in(12)) face.face_pattern = random.range(75, 100);
  }
  const int widest = random.pick({8, 8, 16, 23});
  pattern.pattern_width = random.once_in(2) ? widest : random.range(1, widest);
  pattern.pattern_height = random.range(1, 9);
  pattern.pattern_row_bytes = (pattern.pattern_width + 7) / 8 + random.range(0, 1);
  for (int i = pattern.pattern_row_bytes * pattern.pattern_height; i > 0; --i)
    pattern_bytes.push_back(random.byte());
  pattern.pattern_bits = pattern_bytes.data();
  face.user_pattern = &pattern;
  if (random.once_in(2)) misc.pattern_origin = {random.range(-200, 200), random.range(-200, 200)};
  if (random.once_in(4)) misc.advanced_options.bits = random.pick({2u, 8u, 8u, 8u});
  if (random.once_in(30)) misc.advanced_options.bits = random.pick({32u, 40u, 40u});
  misc.drawing_mode = random.once_in(5) ? 20 : random.range(0, 30);
  force_merge = random.once_in(8);
}

void Scene::make_mask(Random& random, const KT_Int_Rectangle& window) {
  use_mask = random.once_in(3);
  if (!use_mask && !random.once_in(6)) return;
  std::vector<KT_Point> contour;
  for (int i = random.range(3, 7); i > 0; --i) {
    const KT_DCI_Point p = point_in(random, grown(window, 10));
    contour.push_back({static_cast<float>(p.x), static_cast<float>(p.y), 0});
  }
  auto& display = rendition.edit(&KT_Rendition_Data::display_context);
  display.complex_clip = KT_Contour_Set(static_cast<int>(contour.size()), contour.data(), false);
  if (random.once_in(5)) (random.once_in(2) ? display.extent_left : display.extent_bottom) = -7;
}

KT_RGB32 Scene::key() const {
  const auto byte = [this](int i) { return static_cast<std::uint8_t>(merge_key[i]); };
  return {byte(2), byte(1), byte(0), 255};
}

void Scene::fill(const KT_Shared_Image& image) const {
  Random random(~(seed * 8 + static_cast<unsigned>(image->format)));
  const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
  // Half the pixels hold one of sixteen values that the call may meet.
  std::array<std::uint32_t, 16> values{};
  for (std::uint32_t& value : values) {
    const KT_Material& material = *rendition->material;
    if (image->format == KT_Image_Format::depth)
      value = depths.empty() || random.once_in(2)
                  ? 65535
                  : model::bits(depths[random.word() % depths.size()] +
                                rendition->face_attributes->face_depth_offset);
    else if (image->format == KT_Image_Format::rgb32)
      value = random.once_in(2) ? key().word()
                                : random
                                      .pick({material.color, material.contrast_color,
                                             colors[random.word() % colors.size()]})
                                      .word();
    else
      value = random.once_in(2) ? byte(palette.closest_match(key(), false)) : material.color_index;
  }
  for (int y = 0; y < image->height; ++y) {
    std::uint8_t* row = image->rows[y];
    const auto bytes = static_cast<std::size_t>(image->row_bytes);
    for (std::size_t i = 0; i < bytes; i += 8) {
      const std::uint64_t word = random.word();
      std::memcpy(row + i, &word, std::min<std::size_t>(8, bytes - i));
    }
    const auto step = image->format == KT_Image_Format::rgb32   ? 4u
                      : image->format == KT_Image_Format::depth ? 2u
                                                                : 1u;
    std::uint64_t choice = 0;
    for (std::size_t x = 0; x < static_cast<std::size_t>(image->width); ++x, choice >>= 5) {
      if (x % 12 == 0) choice = random.word();
      if ((choice & 16) != 0) std::memcpy(row + x * step, &values[choice & 15], step);
    }
  }
}

bool Scene::is_solid() const {
  return rendition->face_attributes->face_pattern == 64 &&
         (rendition->misc_attributes->pattern_options & 2) == 0;
}

std::string Scene::variant_name() const {
  static const char* const names[] = {"RGB_Alpha", "RGB",         "Mapped",
                                      "Mapped_Z",  "RGB_Alpha_Z", "RGB_Z"};
  return names[static_cast<int>(variant)];
}

std::string Scene::story() const {
  const KT_Rendition_Data& r = *rendition;
  const KT_Misc_Attributes& misc = *r.misc_attributes;
  return line("window", size, "at", window_origin, "local", local, "hard clip", hard_clip(),
              "padding", color_padding, depth_padding) +
         line("\ndepth enabled", r.display_context->depth_enabled, "test", zbuffer_test, "write",
              zbuffer_write, "drawing mode", misc.drawing_mode, "force merge", force_merge, "key",
              merge_key[0], merge_key[1], merge_key[2], "mask", use_mask, "contour",
              static_cast<bool>(r.display_context->complex_clip)) +
         line("\nindices", r.material->color_index, r.material->contrast_index, "pattern origin",
              misc.pattern_origin, "user pattern", pattern.pattern_width, pattern.pattern_height,
              pattern.pattern_row_bytes) +
         "\n" + model::look_of(rendition) + "\n";
}

}  // namespace fuzz
