#include "tests/differential/scene.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>

#include "host/application.h"
#include "tests/differential/model_clipper.h"

namespace fuzz {
namespace {

using model::Kind;
using model::Layer;

KT_RGB32 random_color(Random& random) {
  const auto byte = [&] {
    return static_cast<std::uint8_t>(random.once_in(4) ? random.pick({0, 1, 254, 255})
                                                       : random.range(0, 255));
  };
  const auto alpha = static_cast<std::uint8_t>(
      random.pick({0, 255, 255, random.range(1, 254), random.range(1, 254)}));
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
  cube.base_index = random.range(0, 255);
  for (std::int32_t* stride : {&cube.red_stride, &cube.green_stride, &cube.blue_stride})
    *stride = random.range(-40, 100);
  if (random.once_in(2)) cube.blue_stride = 1;
  for (std::int32_t* scale : {&cube.red_scale, &cube.green_scale, &cube.blue_scale})
    *scale = random.range(0, 128);
  return {colors.data(), 256, random.once_in(4) ? nullptr : &cube};
}

KT_Int_Rectangle grown(const KT_Int_Rectangle& r, int by) {
  return {r.left - by, r.right + by, r.bottom - by, r.top + by};
}

KT_DCI_Point point_in(Random& random, const KT_Int_Rectangle& r) {
  return {random.range(r.left, r.right), random.range(r.bottom, r.top), 0};
}

/// Points of a strip: a mixture of free points, slivers, rows and repeated points.
void random_points(Random& random, model::Call& call, int count, const KT_Int_Rectangle& hard) {
  const bool inside = call.layer == Layer::dc || call.layer == Layer::dci;
  const int reach = inside ? 0 : random.pick({0, 1, 2, 2, 3, 3, 4, 5});
  const bool all_far = reach > 3 && random.once_in(2);
  const int z_base = random.range(0, 65535);
  const int z_spread = random.pick({0, 3, 500, 65535, 65535});
  const bool wild_depth = random.once_in(25);
  for (int i = 0; i < count; ++i) {
    const int farthest = all_far             ? reach
                         : random.once_in(2) ? random.range(0, reach)
                                             : std::min(reach, 2);
    KT_Int_Rectangle area = hard;
    if (farthest == 1) area = grown(hard, 3);
    if (farthest == 2) area = grown(hard, 60);
    if (farthest == 3) area = {-4100, 28800, -4100, 28800};
    if (farthest == 4) area = {-40000, 40000, -40000, 40000};
    if (farthest == 5) area = {-2000000000, 2000000000, -2000000000, 2000000000};
    KT_DCI_Point p = point_in(random, area);
    if (farthest == 4 && random.once_in(2))
      p = {random.pick({-1, 1}) * random.range(29000, 90000),
           random.pick({-1, 1}) * random.range(29000, 90000), 0};
    if (i > 0 && random.once_in(3)) {
      const KT_DCI_Point& before = call.points.back();
      switch (random.range(0, 4)) {
        case 0:
          p = before;
          break;
        case 1:
          p.y = before.y;
          break;
        case 2:
          p.x = before.x;
          break;
        case 3:  // the edge from the point before is cut at -4000 in its very middle
          if (reach > 2) p.x = -8000 - before.x;
          break;
        default:
          p = {before.x + random.range(-2, 2), before.y + random.range(-8, 8), 0};
          if (inside) {
            p.x = std::clamp(p.x, hard.left, hard.right);
            p.y = std::clamp(p.y, hard.bottom, hard.top);
          }
      }
    }
    if (i > 1 && random.once_in(6)) p.y = call.points[static_cast<std::size_t>(i) - 2].y;
    p.z = std::clamp(z_base + random.range(-z_spread, z_spread), 0, 65535);
    if (random.once_in(20)) p.z = random.pick({0, 65535});
    if (wild_depth) p.z = random.range(-2000000000, 2000000000);
    call.points.push_back(p);
  }
}

/// A float that rounds to `value`, as likely as not with a fraction.
float around(Random& random, int value) {
  const float fraction = random.pick({0.0f, 0.0f, 0.25f, -0.5f, 0.49f, -0.49f});
  const float moved = static_cast<float>(value) + fraction;
  return model::rounded(moved) == value ? moved : static_cast<float>(value);
}

void make_floats(Random& random, model::Call& call) {
  for (const KT_DCI_Point& p : call.points)
    call.floats.push_back({around(random, p.x), around(random, p.y), around(random, p.z)});
  if (call.layer == Layer::p2d && random.once_in(10)) {
    KT_Point& p = call.floats[static_cast<std::size_t>(random.range(0, call.count() - 1))];
    p.x = random.pick({3e9f, -3e9f, 1e20f, 2147483648.0f});
    if (random.once_in(2)) p.y = random.pick({3e9f, -1e12f});
  }
  call.points.clear();
}

const char* variant_text(model::Variant v) {
  static const char* const names[] = {"RGB_Alpha", "RGB",         "Mapped",
                                      "Mapped_Z",  "RGB_Alpha_Z", "RGB_Z"};
  return names[static_cast<int>(v)];
}

}  // namespace

Scene::Scene(std::uint64_t number) : seed(number) {
  Random random(seed);
  variant = static_cast<model::Variant>(random.range(0, 5));
  call.kind = static_cast<Kind>(random.range(0, 2));
  call.layer = random.pick(
      {Layer::p2d, Layer::dc, Layer::p2di, Layer::p2di, Layer::p2di, Layer::dci, Layer::dci});
  size = {random.range(1, random.once_in(10) ? 300 : 70), random.range(1, 50)};
  if (random.once_in(3)) window_origin = {random.range(-100, 100), random.range(-100, 100)};
  if (random.once_in(12)) window_origin = {random.range(-3000, 3000), random.range(-3000, 3000)};
  local = random.once_in(8);
  const int pixel_bytes = model::is_mapped(variant) ? 1 : 4;
  if (random.once_in(2)) color_padding = random.range(0, 5) * pixel_bytes;
  if (random.once_in(2)) depth_padding = random.range(0, 5) * 2;
  palette = random_palette(random);
  if (random.once_in(3))
    for (int& channel : merge_key) channel = random.pick({0, 255, 300, random.range(0, 255)});
  if (random.once_in(2)) zbuffer_test = static_cast<unsigned>(random.range(0, 6));
  zbuffer_write = random.once_in(3) ? 0 : static_cast<std::uint8_t>(random.range(1, 255));

  const KT_Int_XY o = origin();
  const KT_Int_Rectangle window{o.x, o.x + size.x - 1, o.y, o.y + size.y - 1};
  rendition = KD_Default_Rendition(window);
  auto& display = rendition.edit(&KT_Rendition_Data::display_context);
  display.hard_clip = window;
  if (random.once_in(3)) {
    const KT_DCI_Point a = point_in(random, window), b = point_in(random, window);
    display.hard_clip = {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y),
                         std::max(a.y, b.y)};
  }
  display.depth_enabled = random.once_in(6) ? 0 : static_cast<std::uint8_t>(random.range(1, 255));

  auto& material = rendition.edit(&KT_Rendition_Data::material);
  material.color = random_color(random);
  material.contrast_color = random_color(random);
  material.color_index = static_cast<std::uint32_t>(random.range(0, 255));
  material.contrast_index = static_cast<std::uint32_t>(random.range(0, 255));

  auto& face = rendition.edit(&KT_Rendition_Data::face_attributes);
  auto& misc = rendition.edit(&KT_Rendition_Data::misc_attributes);
  face.face_depth_offset = random.pick({0, 0, 0, random.range(-100, 100), -70000});
  if (random.once_in(2)) {
    face.face_pattern = random.pick({0, 74, 74, 74, 64, random.range(1, 73), random.range(1, 73)});
    misc.pattern_options = static_cast<std::uint32_t>(random.range(0, 3));
    if (random.once_in(12)) face.face_pattern = random.range(75, 100);
  } else {
    misc.pattern_options = static_cast<std::uint32_t>(random.range(0, 1));
  }
  const int widest = random.pick({8, 8, 16, 23});
  pattern.pattern_width = random.once_in(2) ? widest : random.range(1, widest);
  pattern.pattern_height = random.range(1, 9);
  pattern.pattern_row_bytes = (pattern.pattern_width + 7) / 8 + random.range(0, 1);
  for (int i = pattern.pattern_row_bytes * pattern.pattern_height; i > 0; --i)
    pattern_bytes.push_back(static_cast<std::uint8_t>(random.range(0, 255)));
  pattern.pattern_bits = pattern_bytes.data();
  face.user_pattern = &pattern;
  if (random.once_in(2)) misc.pattern_origin = {random.range(-200, 200), random.range(-200, 200)};
  if (random.once_in(4)) misc.advanced_options.bits = random.pick({2u, 8u, 8u, 8u});
  if (random.once_in(30)) misc.advanced_options.bits = random.pick({32u, 40u, 40u});
  misc.drawing_mode = random.once_in(5) ? 20 : random.range(0, 30);
  force_merge = random.once_in(8);

  use_mask = random.once_in(3);
  if (random.once_in(use_mask ? 1 : 6)) {
    std::vector<KT_Point> contour;
    for (int i = random.range(3, 7); i > 0; --i) {
      const KT_DCI_Point p = point_in(random, grown(window, 10));
      contour.push_back({static_cast<float>(p.x), static_cast<float>(p.y), 0});
    }
    display.complex_clip = KT_Contour_Set(static_cast<int>(contour.size()), contour.data(), false);
    if (random.once_in(5)) (random.once_in(2) ? display.extent_left : display.extent_bottom) = -7;
  }

  const int count = random.once_in(6) ? random.range(2, 70) : random.range(3, 7);
  random_points(random, call, count, display.hard_clip);
  const bool takes_guard = variant == model::Variant::rgb_alpha && call.layer == Layer::dci &&
                           call.kind != Kind::gouraud && face.face_pattern == 64 &&
                           (misc.pattern_options & 2) == 0 && !use_mask;
  if (takes_guard && random.once_in(3))
    for (KT_DCI_Point& p : call.points) p.y += random.range(-9, 9);
  if (call.layer == Layer::p2d || call.layer == Layer::dc) make_floats(random, call);

  const KT_RGB32 base = random_color(random);
  const int closeness = random.pick({0, 2, 3, 4, 255});
  for (int i = 0; i < count; ++i) {
    KT_RGB32 color = random.once_in(5) ? random_color(random) : nearby(random, base, closeness);
    if (random.once_in(4)) color.alpha = random_color(random).alpha;
    call.colors.push_back(color);
  }
  call.single_color = call.kind == Kind::colorized && random.once_in(2);
}

void Scene::fill(const KT_Shared_Image& image) const {
  Random random(seed * 8 + static_cast<unsigned>(image->format));
  std::vector<KT_RGB32> colors = call.colors;
  colors.push_back(rendition->material->color);
  colors.push_back(rendition->material->contrast_color);
  const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
  const KT_RGB32 key{byte(merge_key[2]), byte(merge_key[1]), byte(merge_key[0]), 255};
  const std::uint8_t key_index = byte(palette.closest_match(key, false));
  for (int y = 0; y < image->height; ++y) {
    for (int i = 0; i < image->row_bytes; ++i) image->rows[y][i] = byte(random.range(0, 255));
    for (int x = 0; x < image->width; ++x) {
      if (image->format == KT_Image_Format::depth) {
        const auto last = static_cast<std::size_t>(call.count() - 1);
        const std::size_t i = std::min(last, static_cast<std::size_t>(random.range(0, 9)));
        const int z = call.points.empty() ? static_cast<int>(call.floats[i].z) : call.points[i].z;
        if (random.once_in(2))
          image->row<std::uint16_t>(y)[x] = static_cast<std::uint16_t>(
              random.pick({65535, 65535, z + rendition->face_attributes->face_depth_offset}));
      } else if (image->format == KT_Image_Format::rgb32) {
        if (random.once_in(2))
          image->row<KT_RGB32>(y)[x] = random.pick({key, key,
                                                    colors[static_cast<std::size_t>(random.range(
                                                        0, static_cast<int>(colors.size()) - 1))]});
      } else if (random.once_in(2)) {
        image->rows[y][x] =
            random.pick({key_index, byte(static_cast<int>(rendition->material->color_index))});
      }
    }
  }
}

std::string Scene::action() const {
  static const char* const layers[] = {"2D", "DC", "2DI", "DCI"};
  static const char* const kinds[] = {"", "_Colorized", "_Gouraud"};
  return std::string("Draw_") + layers[static_cast<int>(call.layer)] +
         kinds[static_cast<int>(call.kind)] + "_Polytriangle";
}

std::string Scene::variant_name() const {
  return variant_text(variant);
}

std::string Scene::features() const {
  const KT_Rendition_Data& r = *rendition;
  const std::uint32_t bits = r.misc_attributes->advanced_options.bits;
  const bool patterned =
      r.face_attributes->face_pattern != 64 || (r.misc_attributes->pattern_options & 2) != 0;
  std::string text;
  const auto add = [&](bool used, const char* name) {
    if (used) text += std::string(name) + ",";
  };
  add(!patterned, "solid");
  add(patterned && r.face_attributes->face_pattern < 75, "patterned");
  add(r.face_attributes->face_pattern >= 75, "standard");
  add(use_mask && r.display_context->complex_clip, "masked");
  add(force_merge || r.misc_attributes->drawing_mode == 20, "merge");
  add(model::is_mapped(variant), "mapped");
  add(model::has_alpha(variant) || (bits & 8) != 0, "alpha");
  add((bits & 32) != 0, "edges");
  add(call.kind == Kind::gouraud, "gouraud");
  add(call.layer == Layer::p2d || call.layer == Layer::p2di, "clipped");
  add(call.layer == Layer::p2d || call.layer == Layer::dc, "float");
  return text;
}

std::string Scene::describe() const {
  std::ostringstream out;
  const KT_Rendition_Data& r = *rendition;
  const KT_Int_Rectangle& hard = r.display_context->hard_clip;
  const auto color = [](KT_RGB32 c) {
    std::ostringstream text;
    text << std::hex << c.word();
    return text.str();
  };
  out << "seed " << seed << ": " << variant_name() << " " << action() << " (" << features()
      << ")\n  window " << size.x << "x" << size.y << " at " << window_origin.x << ","
      << window_origin.y << (local ? " local" : "") << ", hard clip x " << hard.left << ".."
      << hard.right << " y " << hard.bottom << ".." << hard.top << ", padding " << color_padding
      << "/" << depth_padding << "\n  depth_enabled " << int{r.display_context->depth_enabled}
      << ", test " << zbuffer_test << ", write " << int{zbuffer_write} << ", offset "
      << r.face_attributes->face_depth_offset << ", advanced "
      << r.misc_attributes->advanced_options.bits << ", drawing mode "
      << r.misc_attributes->drawing_mode << ", force merge " << force_merge << ", key "
      << merge_key[0] << "," << merge_key[1] << "," << merge_key[2] << "\n  face pattern "
      << r.face_attributes->face_pattern << ", options " << r.misc_attributes->pattern_options
      << ", origin " << r.misc_attributes->pattern_origin.x << ","
      << r.misc_attributes->pattern_origin.y << ", user " << pattern.pattern_width << "x"
      << pattern.pattern_height << "/" << pattern.pattern_row_bytes << "\n  color "
      << color(r.material->color) << "/" << r.material->color_index << ", contrast "
      << color(r.material->contrast_color) << "/" << r.material->contrast_index << ", mask "
      << use_mask << ", contour " << static_cast<bool>(r.display_context->complex_clip)
      << ", single " << call.single_color << "\n";
  for (std::size_t i = 0; i < static_cast<std::size_t>(call.count()); ++i) {
    out << "  " << i << ": ";
    if (call.floats.empty())
      out << call.points[i].x << " " << call.points[i].y << " " << call.points[i].z;
    else
      out << call.floats[i].x << " " << call.floats[i].y << " " << call.floats[i].z;
    out << "  " << color(call.colors[i]) << "\n";
  }
  return out.str();
}

}  // namespace fuzz
